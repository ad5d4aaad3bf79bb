// The functions of libpulse, which speaks to the sound server (PulseAudio, or PipeWire in its place). Any
// thread.
#pragma once

#include <pulse/context.h>
#include <pulse/error.h>
#include <pulse/introspect.h>
#include <pulse/operation.h>
#include <pulse/proplist.h>
#include <pulse/stream.h>
#include <pulse/thread-mainloop.h>

#include "platform/linux/SharedLibrary.h"

namespace kr::platform {

struct PulseLibrary {
  // Loads the library on first use; null, and a line in the log, where it is not installed.
  [[nodiscard]] static const PulseLibrary* get() noexcept;

  PulseLibrary() noexcept;

  SharedLibrary library;
// What is declared has the name as it stands. NOLINTNEXTLINE(bugprone-macro-parentheses)
#define KR_PULSE(name) decltype(&::pa_##name) name = library.function<decltype(::pa_##name)>("pa_" #name)
  KR_PULSE(context_connect);
  KR_PULSE(context_disconnect);
  KR_PULSE(context_errno);
  KR_PULSE(context_get_server_info);
  KR_PULSE(context_get_sink_info_by_index);
  KR_PULSE(context_get_sink_info_by_name);
  KR_PULSE(context_get_sink_info_list);
  KR_PULSE(context_get_state);
  KR_PULSE(context_new);
  KR_PULSE(context_set_state_callback);
  KR_PULSE(context_unref);
  KR_PULSE(operation_cancel);
  KR_PULSE(operation_unref);
  KR_PULSE(proplist_free);
  KR_PULSE(proplist_gets);
  KR_PULSE(proplist_new);
  KR_PULSE(proplist_sets);
  KR_PULSE(stream_connect_playback);
  KR_PULSE(stream_disconnect);
  KR_PULSE(stream_drain);
  KR_PULSE(stream_get_state);
  KR_PULSE(stream_new_with_proplist);
  KR_PULSE(stream_set_state_callback);
  KR_PULSE(stream_set_write_callback);
  KR_PULSE(stream_unref);
  KR_PULSE(stream_writable_size);
  KR_PULSE(stream_write);
  KR_PULSE(strerror);
  KR_PULSE(threaded_mainloop_get_api);
  KR_PULSE(threaded_mainloop_lock);
  KR_PULSE(threaded_mainloop_new);
  KR_PULSE(threaded_mainloop_start);
  KR_PULSE(threaded_mainloop_unlock);
#undef KR_PULSE
};

}  // namespace kr::platform
