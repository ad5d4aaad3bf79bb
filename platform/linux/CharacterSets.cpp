#include "platform/CharacterSets.h"

#include <unicode/ucnv.h>

#include <memory>

namespace kr::platform {
namespace {

using Converter = std::unique_ptr<UConverter, decltype(&::ucnv_close)>;

// One that stops at the first byte that stands for nothing; null for a set that is not known.
Converter strictConverter(const std::string& name) {
  UErrorCode error = U_ZERO_ERROR;
  // An empty name would be the locale's own set.
  Converter converter(name.empty() ? nullptr : ::ucnv_open(name.c_str(), &error), &::ucnv_close);
  if (converter) {
    ::ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &error);
  }
  return U_SUCCESS(error) ? std::move(converter) : Converter(nullptr, &::ucnv_close);
}

}  // namespace

std::optional<std::string> characterSetNamed(std::string_view name) {
  const std::string wanted(name);
  if (!strictConverter(wanted)) return std::nullopt;
  for (const char* registry : {"MIME", "IANA"}) {
    UErrorCode error = U_ZERO_ERROR;
    const char* standard = ::ucnv_getStandardName(wanted.c_str(), registry, &error);
    if (standard != nullptr) return standard;
  }
  return wanted;
}

std::optional<std::u16string> decodedFrom(std::string_view name, std::string_view bytes) {
  const Converter converter = strictConverter(std::string(name));
  if (!converter) return std::nullopt;
  // Most sets have a byte or more for each unit.
  std::u16string text(bytes.size() + 16, u'\0');
  const char* source = bytes.data();
  const char* const end = source + bytes.size();
  std::size_t length = 0;
  for (;;) {
    UErrorCode error = U_ZERO_ERROR;
    char16_t* target = text.data() + length;
    ::ucnv_toUnicode(converter.get(), &target, text.data() + text.size(), &source, end, nullptr, 1, &error);
    length = static_cast<std::size_t>(target - text.data());
    if (error == U_BUFFER_OVERFLOW_ERROR) {
      text.resize(text.size() * 2);
      continue;
    }
    if (U_FAILURE(error)) return std::nullopt;
    text.resize(length);
    return text;
  }
}

}  // namespace kr::platform
