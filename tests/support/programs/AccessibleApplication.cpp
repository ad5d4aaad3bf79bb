// An application of another toolkit that takes part in the desktop's accessibility: a window with a button.
// SIGUSR1 renames the button; SIGUSR2 opens a further window. "-ready N" writes to descriptor N once it shows
// its window.
#include <glib-unix.h>
#include <gtk/gtk.h>
#include <signal.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>

namespace {

GtkWidget* button = nullptr;

GtkWidget* openWindow(const char* title) {
  GtkWidget* window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
  gtk_window_set_title(GTK_WINDOW(window), title);
  return window;
}

gboolean rename(gpointer) {
  static int count = 0;
  char* name = g_strdup_printf("Name %d", ++count);
  gtk_button_set_label(GTK_BUTTON(button), name);
  g_free(name);
  return G_SOURCE_CONTINUE;
}

gboolean openAnother(gpointer) {
  gtk_widget_show_all(openWindow("Another"));
  return G_SOURCE_CONTINUE;
}

gboolean tellReady(GtkWidget*, GdkEvent*, gpointer descriptor) {
  static_cast<void>(::write(GPOINTER_TO_INT(descriptor), "r", 1) == 1);
  return FALSE;
}

}  // namespace

int main(int count, char** words) {
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  gtk_init(&count, &words);
  g_unix_signal_add(SIGUSR1, rename, nullptr);
  g_unix_signal_add(SIGUSR2, openAnother, nullptr);
  GtkWidget* window = openWindow("Accessible");
  button = gtk_button_new_with_label("Name");
  gtk_container_add(GTK_CONTAINER(window), button);
  if (count == 3 && std::strcmp(words[1], "-ready") == 0) {
    g_signal_connect(window, "map-event", G_CALLBACK(tellReady), GINT_TO_POINTER(std::atoi(words[2])));
  }
  gtk_widget_show_all(window);
  gtk_main();
}
