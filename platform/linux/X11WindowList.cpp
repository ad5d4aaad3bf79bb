#include "platform/linux/X11WindowList.h"

#include <xcb/res.h>

#include <algorithm>
#include <cstring>
#include <map>

namespace kr::platform::x11 {
namespace {

constexpr std::uint32_t kIconicState = 3;  // of the property WM_STATE

std::vector<xcb_window_t> list(X11Session& session, xcb_get_property_cookie_t cookie) {
  xcb_ewmh_get_windows_reply_t reply{};
  if (::xcb_ewmh_get_windows_reply(session.ewmh(), cookie, &reply, nullptr) == 0) return {};
  std::vector<xcb_window_t> windows(reply.windows, reply.windows + reply.windows_len);
  ::xcb_ewmh_get_windows_reply_wipe(&reply);
  return windows;
}

// The process of each client of the server that owns one of the windows, by the client's part of resource
// IDs.
std::map<std::uint32_t, pid_t> clientProcesses(X11Session& session, const std::vector<xcb_window_t>& windows,
                                               std::uint32_t clientMask) {
  std::map<std::uint32_t, pid_t> result;
  std::vector<xcb_res_client_id_spec_t> clients;
  for (const xcb_window_t window : windows) {
    if (!result.emplace(window & clientMask, 0).second) continue;
    clients.push_back({window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID});
  }
  const auto cookie = ::xcb_res_query_client_ids(session.connection(),
                                                 static_cast<std::uint32_t>(clients.size()), clients.data());
  const X11Reply<xcb_res_query_client_ids_reply_t> reply(
      ::xcb_res_query_client_ids_reply(session.connection(), cookie, nullptr));
  if (!reply) return result;
  for (auto at = ::xcb_res_query_client_ids_ids_iterator(reply.get()); at.rem > 0;
       ::xcb_res_client_id_value_next(&at)) {
    if ((at.data->spec.mask & XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID) == 0) continue;
    if (::xcb_res_client_id_value_value_length(at.data) < 1) continue;
    result[at.data->spec.client & clientMask] = static_cast<pid_t>(*::xcb_res_client_id_value_value(at.data));
  }
  return result;
}

// The first `count` 32-bit values of a property.
std::vector<std::uint32_t> values(X11Session& session, xcb_get_property_cookie_t cookie) {
  const X11Reply<xcb_get_property_reply_t> reply(
      ::xcb_get_property_reply(session.connection(), cookie, nullptr));
  if (!reply || reply->format != 32) return {};
  std::vector<std::uint32_t> result(static_cast<std::size_t>(::xcb_get_property_value_length(reply.get())) /
                                    sizeof(std::uint32_t));
  if (!result.empty()) {
    std::memcpy(result.data(), ::xcb_get_property_value(reply.get()), result.size() * sizeof(std::uint32_t));
  }
  return result;
}

// The values of one property of every window. All requests go out before the first reply is waited for.
std::vector<std::vector<std::uint32_t>> properties(X11Session& session,
                                                   const std::vector<xcb_window_t>& windows,
                                                   xcb_atom_t name) {
  constexpr std::uint32_t kMostValues = 32;
  std::vector<xcb_get_property_cookie_t> cookies;
  cookies.reserve(windows.size());
  for (const xcb_window_t window : windows) {
    cookies.push_back(
        ::xcb_get_property(session.connection(), 0, window, name, XCB_GET_PROPERTY_TYPE_ANY, 0, kMostValues));
  }
  std::vector<std::vector<std::uint32_t>> result;
  result.reserve(windows.size());
  for (const xcb_get_property_cookie_t cookie : cookies) result.push_back(values(session, cookie));
  return result;
}

}  // namespace

std::vector<xcb_window_t> clientList(X11Session& session) {
  return list(session, ::xcb_ewmh_get_client_list(session.ewmh(), session.screen()));
}

std::vector<xcb_window_t> stackingList(X11Session& session) {
  return list(session, ::xcb_ewmh_get_client_list_stacking(session.ewmh(), session.screen()));
}

std::optional<xcb_window_t> activeWindow(X11Session& session) {
  xcb_window_t window = XCB_NONE;
  const auto cookie = ::xcb_ewmh_get_active_window(session.ewmh(), session.screen());
  if (::xcb_ewmh_get_active_window_reply(session.ewmh(), cookie, &window, nullptr) == 0) return std::nullopt;
  return window != XCB_NONE ? std::optional(window) : std::nullopt;
}

bool isFullScreen(X11Session& session, xcb_window_t window) {
  const xcb_ewmh_connection_t& names = *session.ewmh();
  const std::vector<std::uint32_t> states = properties(session, {window}, names._NET_WM_STATE).front();
  return std::find(states.begin(), states.end(), names._NET_WM_STATE_FULLSCREEN) != states.end();
}

std::vector<pid_t> owners(X11Session& session, const std::vector<xcb_window_t>& windows) {
  const std::uint32_t clientMask = ~::xcb_get_setup(session.connection())->resource_id_mask;
  std::map<std::uint32_t, pid_t> processes;
  if (session.knowsProcesses() && !windows.empty()) processes = clientProcesses(session, windows, clientMask);
  std::vector<pid_t> result;
  result.reserve(windows.size());
  std::vector<std::size_t> unknown;
  std::vector<xcb_window_t> asked;
  for (const xcb_window_t window : windows) {
    result.push_back(processes[window & clientMask]);
    if (result.back() != 0) continue;
    unknown.push_back(result.size() - 1);
    asked.push_back(window);
  }
  const auto ownWords = properties(session, asked, session.ewmh()->_NET_WM_PID);
  for (std::size_t index = 0; index < unknown.size(); ++index) {
    if (!ownWords[index].empty()) result[unknown[index]] = static_cast<pid_t>(ownWords[index].front());
  }
  return result;
}

std::vector<bool> iconified(X11Session& session, const std::vector<xcb_window_t>& windows) {
  std::vector<bool> result;
  for (const auto& state : properties(session, windows, session.windowState())) {
    result.push_back(!state.empty() && state.front() == kIconicState);
  }
  return result;
}

std::vector<bool> ordinary(X11Session& session, const std::vector<xcb_window_t>& windows) {
  const xcb_ewmh_connection_t& names = *session.ewmh();
  const std::uint32_t others[] = {names._NET_WM_WINDOW_TYPE_DESKTOP, names._NET_WM_WINDOW_TYPE_DOCK,
                                  names._NET_WM_WINDOW_TYPE_MENU, names._NET_WM_WINDOW_TYPE_POPUP_MENU};
  std::vector<bool> result;
  for (const auto& types : properties(session, windows, names._NET_WM_WINDOW_TYPE)) {
    // A window lists its types from the most fitting one down.
    result.push_back(types.empty() ||
                     std::find(std::begin(others), std::end(others), types.front()) == std::end(others));
  }
  return result;
}

}  // namespace kr::platform::x11
