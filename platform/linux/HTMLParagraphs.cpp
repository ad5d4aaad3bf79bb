#include "platform/linux/HTMLParagraphs.h"

#include <algorithm>
#include <array>

namespace kr::platform {
namespace {

constexpr char16_t kLineSeparator = 0x2028;

// What is shown to nobody, or is no text.
constexpr auto kHidden =
    std::to_array<std::string_view>({"audio", "canvas", "head", "iframe", "noframes", "object", "script",
                                     "select", "style", "svg", "template", "textarea", "title", "video"});

// Elements that begin a line and end one.
constexpr auto kBlocks = std::to_array<std::string_view>(
    {"address", "article", "aside", "blockquote", "caption",  "center",     "dd",     "details", "dialog",
     "dir",     "div",     "dl",    "dt",         "fieldset", "figcaption", "figure", "footer",  "form",
     "h1",      "h2",      "h3",    "h4",         "h5",       "h6",         "header", "hgroup",  "hr",
     "legend",  "li",      "main",  "menu",       "nav",      "ol",         "p",      "pre",     "section",
     "summary", "table",   "td",    "th",         "tr",       "ul"});

// Elements that are one paragraph each.
constexpr auto kParagraphs = std::to_array<std::string_view>({"h1", "h2", "h3", "h4", "h5", "h6", "li", "p"});

// Elements that keep white space as it is.
constexpr auto kPreformatted = std::to_array<std::string_view>({"listing", "plaintext", "pre", "xmp"});

// Marks of lists by how deep they lie in others.
constexpr std::array<char16_t, 3> kBullets{u'•', u'◦', u'▪'};

template <std::size_t count>
bool isOneOf(const std::array<std::string_view, count>& names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

bool isList(std::string_view element) {
  return element == "ul" || element == "ol" || element == "menu" || element == "dir";
}

constexpr bool isSpace(char16_t unit) {
  return unit == u' ' || unit == u'\t' || unit == u'\n' || unit == u'\f' || unit == u'\r';
}

}  // namespace

void HTMLParagraphs::begin(std::string_view element) {
  if (isOneOf(kHidden, element)) ++hidden_;
  if (hidden_ > 0) return;
  if (element == "br") {
    append(paragraphs_ > 0 ? u"\u2028" : u"\n");
    return;
  }
  // What an item begins with stands behind the item's mark, unless it is a list itself.
  const bool isBlock = isOneOf(kBlocks, element) || isOneOf(kPreformatted, element);
  if (isBlock && (!hasOnlyMark_ || isList(element))) endParagraph();
  if (isOneOf(kParagraphs, element)) ++paragraphs_;
  if (isOneOf(kPreformatted, element)) {
    ++preformatted_;
    isPreformattedStart_ = true;
  }
  if (isList(element)) lists_.push_back({element == "ol", 0});
  if (element == "li") beginItem();
}

void HTMLParagraphs::end(std::string_view element) {
  if (isOneOf(kHidden, element)) hidden_ = std::max(hidden_ - 1, 0);
  if (hidden_ > 0) return;
  if (isOneOf(kBlocks, element) || isOneOf(kPreformatted, element)) endParagraph();
  if (isOneOf(kParagraphs, element)) paragraphs_ = std::max(paragraphs_ - 1, 0);
  if (isOneOf(kPreformatted, element)) preformatted_ = std::max(preformatted_ - 1, 0);
  if (isList(element) && !lists_.empty()) lists_.pop_back();
}

void HTMLParagraphs::text(std::u16string_view characters) {
  if (hidden_ > 0) return;
  if (preformatted_ > 0) {
    // The line break behind the tag belongs to the tag.
    if (isPreformattedStart_ && characters.starts_with(u'\n')) characters.remove_prefix(1);
    isPreformattedStart_ = false;
    if (!characters.empty()) append(characters);
    return;
  }
  while (!characters.empty()) {
    const auto* const end = std::find_if(characters.begin(), characters.end(), isSpace);
    if (end != characters.begin())
      append(characters.substr(0, static_cast<std::size_t>(end - characters.begin())));
    const auto* const next = std::find_if_not(end, characters.end(), isSpace);
    if (next != end) hasSpace_ = true;
    characters.remove_prefix(static_cast<std::size_t>(next - characters.begin()));
  }
}

void HTMLParagraphs::closeAll() {
  endParagraph();
  hidden_ = preformatted_ = paragraphs_ = 0;
  lists_.clear();
}

void HTMLParagraphs::endParagraph() {
  hasSpace_ = hasOnlyMark_ = false;
  isLineStart_ = true;
  if (!result_.empty() && result_.back() != u'\n') result_ += u'\n';
}

void HTMLParagraphs::beginItem() {
  result_ += u'\t';
  if (lists_.empty() || !lists_.back().isNumbered) {
    const std::size_t depth = lists_.empty() ? 0 : lists_.size() - 1;
    result_ += kBullets[std::min(depth, kBullets.size() - 1)];
  } else {
    const std::string number = std::to_string(++lists_.back().items);
    result_.append(number.begin(), number.end());
    result_ += u'.';
  }
  result_ += u'\t';
  hasOnlyMark_ = true;
}

// White space before the characters becomes one space, but none at the start of a line.
void HTMLParagraphs::append(std::u16string_view characters) {
  const auto isBreak = [](char16_t unit) { return unit == u'\n' || unit == kLineSeparator; };
  if (hasSpace_ && !isLineStart_ && !isBreak(characters.front())) result_ += u' ';
  hasSpace_ = hasOnlyMark_ = false;
  isLineStart_ = isBreak(characters.back());
  result_ += characters;
}

}  // namespace kr::platform
