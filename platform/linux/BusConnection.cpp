#include "platform/linux/BusConnection.h"

namespace kr::platform {
namespace {

constexpr unsigned kConnectMilliseconds = 2000;

struct FreeContext {
  void operator()(GMainContext* context) const { ::g_main_context_unref(context); }
};
struct FreeSource {
  void operator()(GSource* source) const { ::g_source_unref(source); }
};

struct Attempt {
  bool done = false;
  GDBusConnection* connection = nullptr;
};

}  // namespace

// Waits for the connection in a context of its own, with a limit that the blocking form of the call does not
// have.
glib::Object<GDBusConnection> connectToBus(const std::string& address) {
  const std::unique_ptr<GMainContext, FreeContext> context(::g_main_context_new());
  ::g_main_context_push_thread_default(context.get());
  const glib::Object<GCancellable> cancellable(::g_cancellable_new());
  const std::unique_ptr<GSource, FreeSource> limit(::g_timeout_source_new(kConnectMilliseconds));
  ::g_source_set_callback(
      limit.get(),
      [](gpointer data) -> gboolean {
        ::g_cancellable_cancel(static_cast<GCancellable*>(data));
        return G_SOURCE_REMOVE;
      },
      cancellable.get(), nullptr);
  ::g_source_attach(limit.get(), context.get());
  Attempt attempt;
  ::g_dbus_connection_new_for_address(
      address.c_str(),
      static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                        G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
      nullptr, cancellable.get(),
      [](GObject*, GAsyncResult* result, gpointer data) {
        auto* waiting = static_cast<Attempt*>(data);
        waiting->connection = ::g_dbus_connection_new_for_address_finish(result, nullptr);
        waiting->done = true;
      },
      &attempt);
  while (!attempt.done) ::g_main_context_iteration(context.get(), TRUE);
  ::g_source_destroy(limit.get());
  ::g_main_context_pop_thread_default(context.get());
  return glib::Object<GDBusConnection>(attempt.connection);
}

}  // namespace kr::platform
