#include "library/utilities/SafeAddress.h"

namespace kr {
namespace {

constexpr std::int64_t kFirstSystem = 101300;
constexpr std::int64_t kLowestSetting = 100000;
constexpr std::int64_t kBeyondSettings = 110000;
constexpr std::u16string_view kSecure = u"https:";

}  // namespace

std::int64_t firstSystemWithSecureHTTP(std::optional<std::int64_t> setting) {
  return setting && *setting >= kLowestSetting && *setting < kBeyondSettings ? *setting : kFirstSystem;
}

std::optional<std::u16string> addressWithoutSecureHTTP(std::u16string_view address, std::uint32_t system,
                                                       std::int64_t firstSystem) {
  if (system >= firstSystem || !address.starts_with(kSecure)) return std::nullopt;
  return u"http" + std::u16string(address.substr(kSecure.size() - 1));
}

}  // namespace kr
