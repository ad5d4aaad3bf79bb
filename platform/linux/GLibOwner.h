// Owns GLib's errors, strings, values and objects.
#pragma once

#include <gio/gio.h>

#include <memory>

namespace kr::glib {

struct FreeString {
  void operator()(char* string) const { g_free(string); }
};
struct FreeStrings {
  void operator()(char** strings) const { g_strfreev(strings); }
};
struct FreeError {
  void operator()(GError* error) const { g_error_free(error); }
};
struct FreeKeyFile {
  void operator()(GKeyFile* file) const { g_key_file_free(file); }
};
struct FreeVariant {
  void operator()(GVariant* variant) const { g_variant_unref(variant); }
};
struct Unref {
  void operator()(void* object) const { g_object_unref(object); }
};

using String = std::unique_ptr<char, FreeString>;
using Strings = std::unique_ptr<char*, FreeStrings>;
using Error = std::unique_ptr<GError, FreeError>;
using Variant = std::unique_ptr<GVariant, FreeVariant>;
using KeyFile = std::unique_ptr<GKeyFile, FreeKeyFile>;
template <class Type>
using Object = std::unique_ptr<Type, Unref>;

}  // namespace kr::glib
