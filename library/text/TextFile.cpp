#include "library/text/TextFile.h"

#include <array>
#include <limits>
#include <string_view>
#include <utility>

#include "library/text/ByteOrderMark.h"
#include "library/text/Decoding.h"
#include "library/text/Plausibility.h"
#include "platform/EncodingDetection.h"
#include "platform/posix/Files.h"

namespace kr {
namespace {

using Decode = std::optional<std::u16string> (*)(std::string_view bytes);

// Bytes that end within a unit are not taken for UTF-16.
std::optional<std::u16string> decodedAsUTF16(std::string_view bytes) {
  if (bytes.size() % 2 != 0) return std::nullopt;
  return decodedUTF16(bytes);
}

// In this order: of two texts with one score the earlier is kept.
constexpr std::array<Decode, 4> kCandidates{
    decodedAsUTF16, [](std::string_view bytes) { return std::optional(decodedMacRoman(bytes)); },
    [](std::string_view bytes) { return std::optional(decodedLatin1(bytes)); },
    [](std::string_view bytes) { return decodedUnicode(UnicodeForm::utf8, bytes); }};

constexpr float kLowestScore = -1e6F;

}  // namespace

std::optional<std::u16string> textOfFile(const std::string& path) {
  const std::optional<std::string> bytes = files::contents(path, std::numeric_limits<std::size_t>::max() - 1);
  if (!bytes) return std::nullopt;
  if (const std::optional<ByteOrderMark> mark = byteOrderMark(*bytes)) {
    const std::string_view rest = std::string_view(*bytes).substr(mark->length);
    if (std::optional<std::u16string> text = decodedUnicode(mark->form, rest)) return text;
  }
  if (std::optional<std::u16string> text = platform::detectedText(path, *bytes)) return text;

  std::optional<std::u16string> best;
  float bestScore = kLowestScore;
  for (const Decode decode : kCandidates) {
    std::optional<std::u16string> text = decode(*bytes);
    if (!text) continue;
    const float score = plausibility(*text);
    if (score > bestScore) {
      best = std::move(text);
      bestScore = score;
    }
  }
  return best;
}

}  // namespace kr
