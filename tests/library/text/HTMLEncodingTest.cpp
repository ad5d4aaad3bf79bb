#include "library/text/HTMLEncoding.h"

#include <gmock/gmock.h>

#include "library/text/Decoding.h"
#include "platform/Services.h"
#include "platform/testing/RecordingLog.h"

namespace kr {
namespace {

using namespace std::string_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class HTMLEncoding : public ::testing::Test {
 protected:
  HTMLEncoding() {
    services_.log = &log_;
    scope_.emplace(services_);
  }

  // A document that names the set in a "meta" element, with the bytes behind it.
  static std::u16string decoded(const std::string& meta, const std::string& bytes) {
    const std::string head = "<html>" + meta;
    const std::u16string text = decodedHTML(head + bytes);
    EXPECT_EQ(text.substr(0, head.size()), decodedLatin1(head));
    return text.substr(head.size());
  }

  platform::testing::RecordingLog log_;
  platform::Services services_ = platform::services();
  std::optional<platform::ScopedServices> scope_;
};

TEST_F(HTMLEncoding, IsThatWhichTheDocumentNames) {
  EXPECT_EQ(decoded("<meta http-equiv=x content=\"text/html; charset=utf-8\">", "\xC3\xA9"), u"é");
  EXPECT_EQ(decoded("<META CHARSET=UTF-8>", "\xC3\xA9"), u"é");
  EXPECT_EQ(decoded("<meta charset = \r\n windows-1252>", "\x80"), u"€");
  EXPECT_EQ(decoded("<meta charset=koi8-r", ";\xF0"), u";П");
  EXPECT_EQ(decoded("<meta x><meta charset==utf8>", "\xC3\xA9"), u"é");
  EXPECT_THAT(log_.lines(), IsEmpty());
}

TEST_F(HTMLEncoding, IsLatin1WhereNoneIsNamed) {
  for (const char* meta :
       {"", "charset=utf-8", "charset=utf-8 <meta x>", "<meta>", "<meta charset",
        "<meta charset=", "<meta charset==>", "<meta charset=iso-8859-1>", "<meta charset=latin1>",
        "<meta charset=no-such-set>", "<meta charset=us-ascii>"}) {
    EXPECT_EQ(decoded(meta, "\xC3\xA9"), u"Ã©") << meta;
  }
  EXPECT_THAT(log_.lines(), IsEmpty());
}

TEST_F(HTMLEncoding, ANameEndsBeforeTheFirstOtherCharacter) {
  EXPECT_EQ(decoded("<meta charset=\"utf-8\">", "\xC3\xA9"), u"Ã©") << "quotation marks are not skipped";
  EXPECT_EQ(decoded("<meta charset=shift_jis>", "\x93\xFA"), u"\x93ú") << "\"shift\" is no name";
  EXPECT_EQ(decoded("<meta charset=utf-8;x>", "\xC3\xA9"), u"é");
}

TEST_F(HTMLEncoding, OnlyTheFirstCharsetCounts) {
  EXPECT_EQ(decoded("<meta charset=none><meta charset=utf-8>", "\xC3\xA9"), u"Ã©");
  EXPECT_EQ(decoded("<meta name=charset content=utf-8>", "\xC3\xA9"), u"Ã©")
      << "\" content\" is taken for the name";
}

TEST_F(HTMLEncoding, IsLatin1WhereTheBytesAreNotValid) {
  EXPECT_EQ(decoded("<meta charset=utf-8>", "\xC3("), u"Ã(");
  EXPECT_EQ(decoded("<meta charset=shift-jis>", "\x93"), u"\x93");
}

TEST_F(HTMLEncoding, UTF16IsLookedAtWhereLatin1ShowsNoHTML) {
  EXPECT_EQ(decodedHTML("\xFE\xFF\0<\0H\0T\0M\0l\0>\x20\xAC"s), u"<HTMl>€");
  EXPECT_THAT(log_.lines(), ElementsAre("no HTML in Latin"));
}

TEST_F(HTMLEncoding, WhatIsNoHTMLIsLatin1) {
  EXPECT_EQ(decodedHTML("<p>\xE9"), u"<p>é");
  EXPECT_THAT(log_.lines(), ElementsAre("no HTML in Latin", "no HTML in Unicode"));
  EXPECT_EQ(decodedHTML(""), u"");
}

TEST_F(HTMLEncoding, HTMLIsFoundAnywhereInAnyCase) {
  EXPECT_EQ(decodedHTML("xxHtMlxx"), u"xxHtMlxx");
  EXPECT_THAT(log_.lines(), IsEmpty());
}

TEST_F(HTMLEncoding, TextsMayBeVeryLong) {
  const std::string noHTML(100'000'000, 'h');
  EXPECT_EQ(decodedHTML(noHTML).size(), noHTML.size());
  const std::string named = "<html><meta charset=windows-1252>" + std::string(100'000'000, '\x80');
  EXPECT_EQ(decodedHTML(named).back(), u'€');
}

}  // namespace
}  // namespace kr
