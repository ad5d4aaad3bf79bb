// HTML: the encoding that a document names, and its plain text.
#include "fuzz/Units.h"
#include "library/text/CodePoints.h"
#include "library/text/Decoding.h"
#include "library/text/HTMLEncoding.h"
#include "library/text/XMLElement.h"
#include "platform/HTMLText.h"

using kr::fuzz::require;

namespace {

// A document in UTF-8 is read as that where it is valid, else as Latin-1.
void source(std::string_view bytes) {
  const std::string document = "<html><meta charset=utf-8>" + std::string(bytes);
  const auto utf8 = kr::decodedUnicode(kr::UnicodeForm::utf8, document);
  require(kr::decodedHTML(document) == (utf8 ? *utf8 : kr::decodedLatin1(document)),
          "a document is read as it says, else as Latin-1");
  require(!kr::decodedHTML("<html><meta charset=" + std::string(bytes)).empty(),
          "a document has a source text");
}

// White space and what stands for no character aside, every character may be written as a reference.
void references(std::u16string_view text) {
  std::u16string plain, html;
  kr::forEachCodePoint(text, [&](char32_t point) {
    const bool isCharacter = (point > 0x20 && point < 0x7F) || (point > 0xA0 && point < 0xD800) ||
                             (point > 0xE000 && point < 0xFFFE) || point >= 0x10000;
    if (!isCharacter) return;
    kr::appendCodePoint(plain, point);
    const std::string number = std::to_string(std::uint32_t{point});
    html.append(u"&#").append(number.begin(), number.end()).append(u";");
  });
  require(kr::platform::textOfHTML(html) == plain, "references stand for their characters");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  source(kr::fuzz::text(data, size));

  const auto [text, other] = kr::fuzz::twoTexts(data, size);
  references(text);
  const auto plain = kr::platform::textOfHTML(text);
  require(plain.has_value(), "every text can be read as HTML");
  require(plain->find(u'\0') == std::u16string::npos, "no zero is left");
  if (text.find_first_of(u"<&") == std::u16string::npos) {
    require(plain->size() <= text.size(), "without tags and references nothing is added");
  }

  const auto element = kr::xmlElement(text, other);
  const std::u16string start = u"<" + other + u">", end = u"</" + other + u">";
  const std::size_t found = text.find(start);
  const std::size_t ended = found == text.npos ? text.npos : text.find(end, found + start.size());
  require(element.has_value() == (ended != text.npos), "an element has a start and an end");
  if (element) {
    require(*element == text.substr(found + start.size(), ended - found - start.size()),
            "an element is what stands between");
  }
  return 0;
}
