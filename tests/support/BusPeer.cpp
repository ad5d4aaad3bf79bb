#include "tests/support/BusPeer.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include "platform/linux/AppleEventBus.h"
#include "platform/posix/FileDescriptor.h"

namespace kr::testing {

namespace applebus = platform::applebus;

namespace {

std::string busAddress() {
  const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
  return address != nullptr ? address : "";
}

glib::Object<GDBusConnection> connect() {
  glib::Object<GDBusConnection> connection(::g_dbus_connection_new_for_address_sync(
      busAddress().c_str(),
      static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                        G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
      nullptr, nullptr, nullptr));
  if (!connection) throw std::runtime_error("no session bus");
  return connection;
}

glib::Object<GDBusMessage> message(const std::string& name, const std::string& path,
                                   const std::string& interface, const std::string& method, GVariant* body) {
  glib::Object<GDBusMessage> made(
      ::g_dbus_message_new_method_call(name.c_str(), path.c_str(), interface.c_str(), method.c_str()));
  ::g_dbus_message_set_body(made.get(), body);
  return made;
}

std::string bytes(GDBusMessage* message) {
  gsize size = 0;
  guchar* blob = ::g_dbus_message_to_blob(message, &size, G_DBUS_CAPABILITY_FLAGS_NONE, nullptr);
  std::string text(reinterpret_cast<const char*>(blob), size);
  ::g_free(blob);
  return text;
}

void write(int socket, const std::string& text) {
  if (::send(socket, text.data(), text.size(), MSG_NOSIGNAL) != static_cast<ssize_t>(text.size())) {
    throw std::runtime_error("the bus does not take it");
  }
}

// A connection of plain bytes, past the greeting of the bus.
posix::FileDescriptor plainConnection() {
  const std::string address = busAddress();
  const std::size_t start = address.find("unix:path=") + std::strlen("unix:path=");
  const std::string path = address.substr(start, address.find_first_of(",;", start) - start);
  posix::FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  sockaddr_un place{};
  place.sun_family = AF_UNIX;
  std::strncpy(place.sun_path, path.c_str(), sizeof place.sun_path - 1);
  if (::connect(socket.get(), reinterpret_cast<const sockaddr*>(&place), sizeof place) != 0) {
    throw std::runtime_error("no session bus at " + path);
  }
  std::string user;
  for (const char digit : std::to_string(::geteuid())) user += std::string("3") + digit;
  write(socket.get(), std::string(1, '\0') + "AUTH EXTERNAL " + user + "\r\n");
  char answer[256];
  if (::recv(socket.get(), answer, sizeof answer, 0) < 2 || std::memcmp(answer, "OK", 2) != 0) {
    throw std::runtime_error("the bus refuses");
  }
  write(socket.get(), "BEGIN\r\n");
  const auto hello = message("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "Hello",
                             ::g_variant_new("()"));
  ::g_dbus_message_set_serial(hello.get(), 1);
  write(socket.get(), bytes(hello.get()));
  return socket;
}

}  // namespace

BusPeer::BusPeer() : connection_(connect()) {}

BusPeer::~BusPeer() {
  ::g_dbus_connection_close_sync(connection_.get(), nullptr, nullptr);
}

std::string BusPeer::send(platform::SerialNumber receiver, GVariant* body) {
  return sendTo(applebus::kObjectPath, applebus::kInterface, applebus::kMethod, receiver, body);
}

std::string BusPeer::sendTo(const std::string& path, const std::string& interface, const std::string& method,
                            platform::SerialNumber receiver, GVariant* body) {
  GError* raw = nullptr;
  GVariant* reply = ::g_dbus_connection_call_sync(
      connection_.get(), applebus::busName(receiver).c_str(), path.c_str(), interface.c_str(), method.c_str(),
      body, nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START, 10'000, nullptr, &raw);
  const glib::Error error(raw);
  if (reply != nullptr) ::g_variant_unref(reply);
  if (!error) return {};
  const glib::String name(::g_dbus_error_get_remote_error(error.get()));
  return name ? name.get() : error->message;
}

GVariant* BusPeer::event(std::uint32_t eventClass, std::uint32_t eventID,
                         const std::vector<std::string>& texts) {
  GVariantBuilder list;
  ::g_variant_builder_init(&list, G_VARIANT_TYPE("as"));
  for (const std::string& text : texts) ::g_variant_builder_add(&list, "s", text.c_str());
  return ::g_variant_new("(uuas)", eventClass, eventID, &list);
}

void BusPeer::flood(platform::SerialNumber receiver, GVariant* body, int count) {
  ::g_variant_ref_sink(body);
  for (int sent = 0; sent < count; ++sent) {
    ::g_dbus_connection_call(connection_.get(), applebus::busName(receiver).c_str(), applebus::kObjectPath,
                             applebus::kInterface, applebus::kMethod, body, nullptr,
                             G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, nullptr, nullptr, nullptr);
  }
  ::g_dbus_connection_flush_sync(connection_.get(), nullptr, nullptr);
  ::g_variant_unref(body);
}

bool BusPeer::sendInvalidText(platform::SerialNumber receiver, GVariant* body) {
  const auto event = message(applebus::busName(receiver), applebus::kObjectPath, applebus::kInterface,
                             applebus::kMethod, body);
  ::g_dbus_message_set_serial(event.get(), 2);
  std::string text = bytes(event.get());
  std::replace(text.begin(), text.end(), 'X', '\xFF');
  const posix::FileDescriptor socket = plainConnection();
  write(socket.get(), text);
  timeval limit{.tv_sec = 5, .tv_usec = 0};
  ::setsockopt(socket.get(), SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
  char answer[4096];
  ssize_t size = 0;
  while ((size = ::recv(socket.get(), answer, sizeof answer, 0)) > 0) {
  }
  return size == 0;
}

bool receivesEvents(platform::SerialNumber process) {
  const auto connection = connect();
  GVariant* answer = ::g_dbus_connection_call_sync(
      connection.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
      "NameHasOwner", ::g_variant_new("(s)", applebus::busName(process).c_str()), G_VARIANT_TYPE("(b)"),
      G_DBUS_CALL_FLAGS_NONE, 1000, nullptr, nullptr);
  gboolean has = FALSE;
  if (answer != nullptr) {
    ::g_variant_get(answer, "(b)", &has);
    ::g_variant_unref(answer);
  }
  ::g_dbus_connection_close_sync(connection.get(), nullptr, nullptr);
  return has != FALSE;
}

}  // namespace kr::testing
