#include "platform/KeyboardLayout.h"

#include <xkbcommon/xkbcommon-x11.h>
#include <xkbcommon/xkbcommon.h>

#include <algorithm>
#include <array>
#include <memory>

#include "platform/UTF8Bytes.h"
#include "platform/linux/MacKeyCodes.h"
#include "platform/linux/X11Connection.h"

namespace kr::platform {
namespace {

constexpr std::array<MacKey, kMacKeys> kKeys = macKeys();

// The X server's codes are the kernel's, moved up.
constexpr std::uint32_t kFirstXCode = 8;
constexpr std::size_t kLongestText = 4;

using Context = std::unique_ptr<xkb_context, decltype(&::xkb_context_unref)>;
using Keymap = std::unique_ptr<xkb_keymap, decltype(&::xkb_keymap_unref)>;
using State = std::unique_ptr<xkb_state, decltype(&::xkb_state_unref)>;

// Accents that wait for the next character, as characters of their own.
struct DeadKey {
  xkb_keysym_t keysym;
  char16_t accent;
};
constexpr std::array<DeadKey, 13> kDeadKeys{{{XKB_KEY_dead_grave, u'`'},
                                             {XKB_KEY_dead_acute, u'´'},
                                             {XKB_KEY_dead_circumflex, u'^'},
                                             {XKB_KEY_dead_tilde, u'~'},
                                             {XKB_KEY_dead_macron, u'¯'},
                                             {XKB_KEY_dead_breve, u'˘'},
                                             {XKB_KEY_dead_abovedot, u'˙'},
                                             {XKB_KEY_dead_diaeresis, u'¨'},
                                             {XKB_KEY_dead_abovering, u'˚'},
                                             {XKB_KEY_dead_doubleacute, u'˝'},
                                             {XKB_KEY_dead_caron, u'ˇ'},
                                             {XKB_KEY_dead_cedilla, u'¸'},
                                             {XKB_KEY_dead_ogonek, u'˛'}}};

// A layout and the state of its modifiers and groups.
struct Layout {
  Keymap keymap;
  State state;
};

// That of the X server's keyboard; null where there is no server.
Layout layoutOfServer(xkb_context* context) {
  Layout layout{{nullptr, &::xkb_keymap_unref}, {nullptr, &::xkb_state_unref}};
  const std::unique_ptr<X11Session> session = X11Session::open();
  if (!session) return layout;
  xcb_connection_t* connection = session->connection();
  if (::xkb_x11_setup_xkb_extension(connection, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
                                    XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, nullptr,
                                    nullptr) == 0) {
    return layout;
  }
  const std::int32_t keyboard = ::xkb_x11_get_core_keyboard_device_id(connection);
  if (keyboard < 0) return layout;
  layout.keymap.reset(
      ::xkb_x11_keymap_new_from_device(context, connection, keyboard, XKB_KEYMAP_COMPILE_NO_FLAGS));
  if (layout.keymap)
    layout.state.reset(::xkb_x11_state_new_from_device(layout.keymap.get(), connection, keyboard));
  return layout;
}

// That of the environment, else the first one that the system has.
Layout defaultLayout(xkb_context* context) {
  Layout layout{{nullptr, &::xkb_keymap_unref}, {nullptr, &::xkb_state_unref}};
  layout.keymap.reset(::xkb_keymap_new_from_names(context, nullptr, XKB_KEYMAP_COMPILE_NO_FLAGS));
  if (layout.keymap) layout.state.reset(::xkb_state_new(layout.keymap.get()));
  return layout;
}

xkb_mod_mask_t maskOf(xkb_keymap* keymap, const char* modifier) {
  const xkb_mod_index_t index = ::xkb_keymap_mod_get_index(keymap, modifier);
  return index == XKB_MOD_INVALID ? 0 : xkb_mod_mask_t{1} << index;
}

// Holds down the modifiers and nothing else. The digits of the keypad are always on.
void setModifiers(const Layout& layout, std::uint32_t modifiers) {
  xkb_keymap* keymap = layout.keymap.get();
  xkb_mod_mask_t held = 0;
  if ((modifiers & kShiftKey) != 0) held |= maskOf(keymap, XKB_MOD_NAME_SHIFT);
  if ((modifiers & kControlKey) != 0) held |= maskOf(keymap, XKB_MOD_NAME_CTRL);
  if ((modifiers & kOptionKey) != 0) held |= maskOf(keymap, "Mod5");
  xkb_mod_mask_t locked = maskOf(keymap, XKB_MOD_NAME_NUM);
  if ((modifiers & kCapsLockKey) != 0) locked |= maskOf(keymap, XKB_MOD_NAME_CAPS);
  const xkb_layout_index_t group =
      ::xkb_state_serialize_layout(layout.state.get(), XKB_STATE_LAYOUT_EFFECTIVE);
  ::xkb_state_update_mask(layout.state.get(), held, 0, locked, 0, 0, group);
}

std::u16string textOf(xkb_state* state, xkb_keycode_t key) {
  const xkb_keysym_t keysym = ::xkb_state_key_get_one_sym(state, key);
  const auto* deadKey = std::find_if(kDeadKeys.begin(), kDeadKeys.end(),
                                     [keysym](const DeadKey& dead) { return dead.keysym == keysym; });
  if (deadKey != kDeadKeys.end()) return {deadKey->accent};
  std::array<char, 32> bytes{};
  const int length = ::xkb_state_key_get_utf8(state, key, bytes.data(), bytes.size());
  if (length <= 0) return {};
  const std::size_t count = std::min(static_cast<std::size_t>(length), bytes.size() - 1);
  return utf16FromBytes({bytes.data(), count}).substr(0, kLongestText);
}

}  // namespace

std::optional<std::u16string> textOfKey(std::uint16_t keyCode, std::uint32_t modifiers) {
  if (keyCode >= kKeys.size()) return std::nullopt;
  const MacKey key = kKeys[keyCode];
  if (key.character != 0) return std::u16string(1, key.character);
  if (key.evdevCode == 0) return std::u16string();

  const Context context(::xkb_context_new(XKB_CONTEXT_NO_FLAGS), &::xkb_context_unref);
  if (!context) return std::nullopt;
  // It would write to the log what the result says.
  ::xkb_context_set_log_level(context.get(), XKB_LOG_LEVEL_CRITICAL);
  Layout layout = layoutOfServer(context.get());
  if (!layout.state) layout = defaultLayout(context.get());
  if (!layout.state) return std::nullopt;
  setModifiers(layout, modifiers);
  return textOf(layout.state.get(), key.evdevCode + kFirstXCode);
}

}  // namespace kr::platform
