// Puts the plain text of a document together out of what a parser reports: white space collapsed, paragraphs,
// lists and preformatted text as platform/HTMLText.h says. One thread at a time.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kr::platform {

class HTMLParagraphs {
 public:
  // An element begins or ends; the names are in lower case.
  void begin(std::string_view element);
  void end(std::string_view element);

  // Text between tags, in any number of pieces.
  void text(std::u16string_view characters);

  // Everything that is open is closed: what follows stands outside all elements.
  void closeAll();

  // The text so far.
  [[nodiscard]] const std::u16string& result() const { return result_; }

 private:
  struct List {
    bool isNumbered;
    int items;
  };

  void endParagraph();
  void beginItem();
  void append(std::u16string_view characters);

  std::u16string result_;
  bool hasSpace_ = false;     // white space that counts only when something follows in the paragraph
  bool isLineStart_ = true;   // nothing stands in the line yet
  bool hasOnlyMark_ = false;  // nothing but the mark of an item
  int hidden_ = 0;            // elements within which nothing is shown
  int preformatted_ = 0;      // elements that keep white space
  bool isPreformattedStart_ = false;
  std::vector<List> lists_;
  int paragraphs_ = 0;  // elements that are one paragraph, in which a break is no end
};

}  // namespace kr::platform
