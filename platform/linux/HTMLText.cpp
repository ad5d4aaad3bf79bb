#include "platform/HTMLText.h"

#include <libxml/HTMLparser.h>

#include <algorithm>
#include <memory>

#include "platform/UTF8Bytes.h"
#include "platform/linux/HTMLParagraphs.h"
#include "platform/linux/HTMLReferences.h"

namespace kr::platform {
namespace {

std::string_view viewOf(const xmlChar* name) {
  return reinterpret_cast<const char*>(name);
}

// What the parser reports goes to the paragraphs.
HTMLParagraphs& paragraphs(void* context) {
  return *static_cast<HTMLParagraphs*>(context);
}

htmlSAXHandler handler() {
  htmlSAXHandler handler{};
  handler.startElement = [](void* context, const xmlChar* name, const xmlChar**) {
    paragraphs(context).begin(viewOf(name));
  };
  handler.endElement = [](void* context, const xmlChar* name) { paragraphs(context).end(viewOf(name)); };
  handler.characters = [](void* context, const xmlChar* characters, int length) {
    paragraphs(context).text(
        utf16FromBytes({reinterpret_cast<const char*>(characters), static_cast<std::size_t>(length)}));
  };
  handler.ignorableWhitespace = handler.characters;
  return handler;
}

using Parser = std::unique_ptr<htmlParserCtxt, decltype(&::htmlFreeParserCtxt)>;

// All text stands in a body: the parser would take what stands outside for a paragraph.
constexpr std::string_view kStart = "<html><body>";

Parser makeParser(HTMLParagraphs& result) {
  htmlSAXHandler sax = handler();
  Parser parser(::htmlCreatePushParserCtxt(&sax, &result, nullptr, 0, nullptr, XML_CHAR_ENCODING_UTF8),
                &::htmlFreeParserCtxt);
  // The encoding is known, whatever the document says of it.
  if (parser)
    ::htmlCtxtUseOptions(
        parser.get(), HTML_PARSE_IGNORE_ENC | HTML_PARSE_NONET | HTML_PARSE_NOERROR | HTML_PARSE_NOWARNING);
  if (parser) ::htmlParseChunk(parser.get(), kStart.data(), static_cast<int>(kStart.size()), 0);
  return parser;
}

// Elements within each other beyond this are taken out of each other, as browsers do: the parser looks
// through all of them for every tag that ends none, which would take forever.
constexpr int kDeepest = 256;

// The bytes that the parser has been given but has not read.
std::string unread(const htmlParserCtxt& parser) {
  const xmlParserInput* input = parser.input;
  if (input == nullptr || input->cur == nullptr) return {};
  return {reinterpret_cast<const char*>(input->cur), static_cast<std::size_t>(input->end - input->cur)};
}

}  // namespace

std::optional<std::u16string> textOfHTML(std::u16string_view html) {
  HTMLParagraphs result;
  Parser parser = makeParser(result);
  std::u16string source = withPlainReferences(withoutLoneSurrogates(html));
  // A zero ends the document for the parser.
  std::erase(source, u'\0');
  forEachUTF8Part(source, [&parser, &result](std::string_view part) {
    if (!parser) return;
    ::htmlParseChunk(parser.get(), part.data(), static_cast<int>(part.size()), 0);
    if (parser->nameNr <= kDeepest) return;
    const std::string rest = unread(*parser);
    result.closeAll();
    parser = makeParser(result);
    if (parser) ::htmlParseChunk(parser.get(), rest.data(), static_cast<int>(rest.size()), 0);
  });
  if (!parser) return std::nullopt;
  ::htmlParseChunk(parser.get(), nullptr, 0, 1);
  return result.result();
}

}  // namespace kr::platform
