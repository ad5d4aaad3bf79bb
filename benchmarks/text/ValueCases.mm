#include <fnmatch.h>
#include <openssl/evp.h>
#include <unicode/ucol.h>
#include <unicode/ustring.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

#include "benchmarks/text/Cases.h"
#include "benchmarks/text/Comparison.h"
#import "library/text/StringExtensions.h"
#include "library/text/Wildcards.h"
#include "platform/UTF8Bytes.h"
#import "platform/cocoa/Bridging.h"

namespace kr::bench {
namespace {

void compareOrder(std::string_view name, const std::u16string& one, const std::u16string& other) {
  NSString* string = toNSString(one);
  NSString* second = toNSString(other);
  require([string numericCompare:second] == [string compare:second options:NSNumericSearch], name);
  compare(name, {{"ours", [=] { [string numericCompare:second]; }},
                 {"foundation", [=] { [string compare:second options:NSNumericSearch]; }}});
}

// A list of file names, sorted.
void compareSorting() {
  NSMutableArray* names = [NSMutableArray array];
  for (unsigned count = 0; count < 5000; ++count) {
    [names
        addObject:[NSString stringWithFormat:@"Photo %u-%u.jpg", count * 7919 % 1000, count * 104729 % 5000]];
  }
  compare("order.sort", {{"ours", [=] { [names sortedArrayUsingSelector:@selector(numericCompare:)]; }},
                         {"foundation", [=] {
                            [names sortedArrayUsingComparator:^NSComparisonResult(id one, id other) {
                              return [one compare:other options:NSNumericSearch];
                            }];
                          }}});
  UErrorCode error = U_ZERO_ERROR;
  UCollator* collator = ::ucol_open("", &error);
  ::ucol_setAttribute(collator, UCOL_NUMERIC_COLLATION, UCOL_ON, &error);
  compare("order.sort.nocase",
          {{"ours", [=] { [names sortedArrayUsingSelector:@selector(caseInsensitiveNumericCompare:)]; }},
           {"icu",
            [=] {
              [names sortedArrayUsingComparator:^NSComparisonResult(id one, id other) {
                const UTF16Text first(one);
                const UTF16Text second(other);
                return static_cast<NSComparisonResult>(::ucol_strcoll(
                    collator, first.view().data(), static_cast<std::int32_t>(first.view().size()),
                    second.view().data(), static_cast<std::int32_t>(second.view().size())));
              }];
            }},
           {"foundation", [=] {
              [names sortedArrayUsingComparator:^NSComparisonResult(id one, id other) {
                return [[one lowercaseString] compare:[other lowercaseString] options:NSNumericSearch];
              }];
            }}});
  ::ucol_close(collator);
}

void compareWildcards(std::string_view name, const std::string& text, const std::string& pattern) {
  const std::u16string units = platform::utf16FromBytes(text);
  const std::u16string patternUnits = platform::utf16FromBytes(pattern);
  require(matchesWildcards(units, patternUnits) == (::fnmatch(pattern.c_str(), text.c_str(), 0) == 0), name);
  NSString* string = toNSString(units);
  NSString* wildcards = toNSString(patternUnits);
  compare(name,
          {{"ours", [&] { [string matchesWildcardPattern:wildcards]; }},
           {"fnmatch", [&] { require(::fnmatch(pattern.c_str(), text.c_str(), 0) <= FNM_NOMATCH, name); }}});
}

void compareStars() {
  NSString* text = toNSString(std::u16string(1 << 20, u'a'));
  std::u16string stars;
  for (int count = 0; count < 1000; ++count) stars += u"*a";
  NSString* pattern = toNSString(stars + u"b");
  compare("wildcards.thousand",
          {{"ours", [=] { require(![text matchesWildcardPattern:pattern], "stars"); }}});
}

std::array<unsigned char, 16> digest(const void* bytes, std::size_t length) {
  std::array<unsigned char, 16> result{};
  ::EVP_Digest(bytes, length, result.data(), nullptr, ::EVP_md5(), nullptr);
  return result;
}

NSString* hexadecimal(const std::array<unsigned char, 16>& digest) {
  NSMutableString* text = [NSMutableString string];
  for (const unsigned char byte : digest) [text appendFormat:@"%02x", byte];
  return text;
}

// What the digest of the bytes alone takes is printed beside the ways from text to text.
void compareDigest(std::string_view name, const std::u16string& text) {
  NSString* string = toNSString(text);
  const std::string bytes = platform::bytesFromUTF16(text);
  require([[string MD5String] isEqual:hexadecimal(digest(bytes.data(), bytes.size()))], name);
  compare(name, {{"ours", [=] { [string MD5String]; }},
                 {"foundation",
                  [=] {
                    NSData* data = [string dataUsingEncoding:NSUTF8StringEncoding];
                    hexadecimal(digest([data bytes], [data length]));
                  }},
                 {"icu", [=] {
                    const UTF16Text units(string);
                    const auto length = static_cast<std::int32_t>(units.view().size());
                    std::string room(units.view().size() * 3, '\0');
                    std::int32_t used = 0;
                    UErrorCode error = U_ZERO_ERROR;
                    ::u_strToUTF8(room.data(), static_cast<std::int32_t>(room.size()), &used,
                                  units.view().data(), length, &error);
                    hexadecimal(digest(room.data(), static_cast<std::size_t>(used)));
                  }}});
  compare(std::string(name) + ".bytes", {{"libcrypto", [&] { digest(bytes.data(), bytes.size()); }}});
}

// The program's own time counts, from the file system's memory.
void compareWithProgram() {
  const std::u16string text = words(u"é", 10, 10'000'000);
  NSString* string = toNSString(text);
  std::array<char, 32> path{"/tmp/text_bench.XXXXXX"};
  const int file = ::mkstemp(path.data());
  ::close(file);
  require([string appendToFile:toNSString(std::string_view(path.data())) encoding:NSUTF8StringEncoding],
          "md5.program");
  const std::string command = "md5sum " + std::string(path.data()) + " >/dev/null";
  compare("md5.program", {{"ours", [=] { [string MD5String]; }},
                          {"md5sum", [&] { require(std::system(command.c_str()) == 0, "md5sum"); }}});
  ::unlink(path.data());
}

}  // namespace

void compareValues() {
  compareOrder("order.short", u"Photo 9.jpg", u"Photo 10.jpg");
  compareOrder("order.long", words(u"\n", 10) + u"9", words(u"\n", 10) + u"10");
  compareOrder("order.long.unicode", words(u"é", 10) + u"9", words(u"é", 10) + u"10");
  compareOrder("order.early", u"1" + words(u"\n", 10), u"2" + words(u"\n", 10));
  compareSorting();
  compareWildcards("wildcards.name", "Velmora Notes 2.1.app", "Velmora*.app");
  compareWildcards("wildcards.text", platform::bytesFromUTF16(words(u"\n", 10)), "the*lazy*zebra*fox*");
  compareStars();
  compareDigest("md5.short", u"id:com.velmora.notes");
  compareDigest("md5.ascii", words(u"\n", 10));
  compareDigest("md5.unicode", words(u"日本", 4));
  compareWithProgram();
}

}  // namespace kr::bench
