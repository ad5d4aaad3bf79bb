// Makes the X server end the connection of one of its clients after the other, as it does with one that
// misbehaves:
//
//   x-disconnect but NAME    all clients but this program and those of processes with the name
#include <unistd.h>
#include <xcb/res.h>
#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>

namespace {

template <class Type>
std::unique_ptr<Type, decltype(&std::free)> owned(Type* reply) {
  return {reply, &std::free};
}

std::string nameOf(pid_t pid) {
  std::ifstream file("/proc/" + std::to_string(pid) + "/comm");
  std::string name;
  std::getline(file, name);
  return name;
}

pid_t processOf(xcb_connection_t* connection, std::uint32_t client) {
  const xcb_res_client_id_spec_t wanted{client, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
  const auto reply = owned(::xcb_res_query_client_ids_reply(
      connection, ::xcb_res_query_client_ids(connection, 1, &wanted), nullptr));
  if (!reply) return 0;
  const auto ids = ::xcb_res_query_client_ids_ids_iterator(reply.get());
  if (ids.rem == 0 || ::xcb_res_client_id_value_value_length(ids.data) < 1) return 0;
  return static_cast<pid_t>(*::xcb_res_client_id_value_value(ids.data));
}

}  // namespace

int main(int count, char** words) {
  if (count != 3 || std::strcmp(words[1], "but") != 0) return 2;
  xcb_connection_t* connection = ::xcb_connect(nullptr, nullptr);
  if (::xcb_connection_has_error(connection) != 0) return 3;
  ::xcb_res_query_version(connection, 1, 2);
  const auto clients =
      owned(::xcb_res_query_clients_reply(connection, ::xcb_res_query_clients(connection), nullptr));
  if (!clients) return 4;
  int ended = 0;
  for (auto at = ::xcb_res_query_clients_clients_iterator(clients.get()); at.rem > 0;
       ::xcb_res_client_next(&at)) {
    const pid_t process = processOf(connection, at.data->resource_base);
    if (process == 0 || process == ::getpid() || nameOf(process) == words[2]) continue;
    ::xcb_kill_client(connection, at.data->resource_base);
    ++ended;
  }
  ::free(::xcb_get_input_focus_reply(connection, ::xcb_get_input_focus(connection), nullptr));
  return ended > 0 ? 0 : 1;
}
