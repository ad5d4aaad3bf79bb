// Text in every encoding that files may have.
#include "fuzz/Units.h"
#include "library/text/ByteOrderMark.h"
#include "library/text/Decoding.h"
#include "library/text/Plausibility.h"
#include "platform/CharacterSets.h"

using kr::UnicodeForm;
using kr::fuzz::require;
using kr::platform::decodedFrom;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes = kr::fuzz::text(data, size);
  require(kr::decodedUnicode(UnicodeForm::utf8, bytes) == decodedFrom("UTF-8", bytes),
          "UTF-8 is as ICU reads it");
  require(kr::decodedUnicode(UnicodeForm::utf32BigEndian, bytes) == decodedFrom("UTF-32BE", bytes),
          "UTF-32 is as ICU reads it");
  require(kr::decodedUnicode(UnicodeForm::utf32LittleEndian, bytes) == decodedFrom("UTF-32LE", bytes),
          "UTF-32 is as ICU reads it");
  require(kr::decodedLatin1(bytes) == decodedFrom("ISO-8859-1", bytes), "Latin-1 is as ICU reads it");
  require(kr::decodedMacRoman(bytes) == decodedFrom("macos-0_2-10.2", bytes), "Mac Roman is as ICU reads it");
  for (const auto& [form, name] : {std::pair(UnicodeForm::utf16BigEndian, "UTF-16BE"),
                                   std::pair(UnicodeForm::utf16LittleEndian, "UTF-16LE")}) {
    const auto utf16 = decodedFrom(name, bytes);
    require(!utf16 || kr::decodedUnicode(form, bytes) == utf16, "UTF-16 is as ICU reads it");
  }
  require(kr::decodedUTF16(bytes).size() <= size / 2, "two bytes make one unit");

  const auto mark = kr::byteOrderMark(bytes.substr(0, 4));
  require(mark == kr::byteOrderMark(bytes), "four bytes tell the mark");
  require(!mark || mark->length <= size, "a mark lies within the file");

  const float score = kr::plausibility(kr::decodedMacRoman(bytes));
  require(size == 0 || (score <= 1 && score >= -10), "a score lies between its limits");

  for (const char* name : {"shift_jis", "gb18030", "iso-2022-jp", "windows-1252", "euc-kr", "utf-7"}) {
    const auto text = decodedFrom(name, bytes);
    require(!text || text->size() <= 2 * size, "no character has more units than twice its bytes");
  }
  if (const auto name = kr::platform::characterSetNamed(bytes.substr(0, bytes.find('\0')))) {
    require(kr::platform::characterSetNamed(*name) == name, "the first name of a set names it, too");
    require(decodedFrom(*name, "").has_value(), "a set that is known can be decoded");
  }
  return 0;
}
