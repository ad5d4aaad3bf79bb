// Bytes of file names, arguments and signatures, to UTF-16 and back.
#include <unicode/ustring.h>

#include <cstring>

#include "fuzz/Fuzz.h"
#include "platform/FourCharacterCode.h"
#include "platform/UTF8Bytes.h"

using kr::fuzz::require;
using kr::platform::bytesFromUTF16;
using kr::platform::utf16FromBytes;
using kr::platform::withoutLoneSurrogates;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes = kr::fuzz::text(data, size);
  require(bytesFromUTF16(utf16FromBytes(bytes)) == bytes, "any bytes come back as they were");

  std::u16string units(size / sizeof(char16_t), u'\0');
  if (!units.empty()) std::memcpy(units.data(), data, units.size() * sizeof(char16_t));
  const std::u16string text = withoutLoneSurrogates(units);
  require(utf16FromBytes(bytesFromUTF16(text)) == text, "any text comes back as it was");
  std::string icu(text.size() * 3, '\0');
  std::int32_t length = 0;
  UErrorCode error = U_ZERO_ERROR;
  ::u_strToUTF8(icu.data(), static_cast<std::int32_t>(icu.size()), &length, text.data(),
                static_cast<std::int32_t>(text.size()), &error);
  require(bytesFromUTF16(text) == icu.substr(0, static_cast<std::size_t>(length)),
          "a text is encoded as ICU does it");
  require(text.size() == units.size(), "a lone surrogate becomes one other character");

  if (const auto code = kr::codeFromText(bytes)) {
    require(bytes.starts_with(kr::textFromCode(*code)), "a code prints as the text that it was read from");
  }
  std::uint32_t code = 0;
  std::memcpy(&code, data, std::min(size, sizeof code));
  require(kr::codeFromText(kr::textFromCode(code)) == code, "every code can be written and read again");
  return 0;
}
