#import "platform/gnustep/UserLanguages.h"

#import <Foundation/Foundation.h>
#include <stdlib.h>
#include <unicode/uloc.h>

#include <algorithm>

#include "platform/Paths.h"
#import "platform/cocoa/Bridging.h"
#include "platform/gnustep/LanguageChoice.h"
#include "platform/posix/Files.h"

namespace kr::platform {
namespace {

using Languages = std::vector<std::string>;

std::string gLanguage = "en";

Languages languagesOfBundle() {
  constexpr std::string_view kSuffix = ".lproj";
  Languages found;
  const std::string folder = toBytes([[NSBundle mainBundle] resourcePath]);
  for (const std::string& name : files::entries(folder).value_or(Languages{})) {
    if (name.ends_with(kSuffix)) found.push_back(name.substr(0, name.size() - kSuffix.size()));
  }
  std::sort(found.begin(), found.end());
  return found;
}

Languages listIn(NSDictionary* domain, NSString* key) {
  id list = [domain objectForKey:key];
  return [list isKindOfClass:[NSArray class]] ? toByteStrings(list) : Languages{};
}

// Only what the user has set: the toolkit puts the languages of the locale under the same key.
Languages languagesOfDefaults() {
  NSUserDefaults* defaults = [NSUserDefaults standardUserDefaults];
  NSDictionary* words = [defaults volatileDomainForName:NSArgumentDomain];
  const Languages lists[] = {
      listIn(words, @"AppleLanguages"), listIn(words, @"NSLanguages"),
      listIn([defaults persistentDomainForName:[[NSProcessInfo processInfo] processName]], @"NSLanguages"),
      listIn([defaults persistentDomainForName:NSGlobalDomain], @"NSLanguages")};
  for (const Languages& list : lists) {
    if (!list.empty()) return list;
  }
  return {};
}

std::string variable(const char* name) {
  const char* value = ::getenv(name);
  return value == nullptr ? std::string() : value;
}

}  // namespace

void useUserLanguages() {
  Languages wanted = languagesOfDefaults();
  if (wanted.empty()) {
    wanted = languagesOfEnvironment(variable("LANGUAGE"),
                                    {variable("LC_ALL"), variable("LC_MESSAGES"), variable("LANG")});
  }
  const Languages chosen = chooseLanguages(wanted, languagesOfBundle());
  if (chosen.empty()) return;
  gLanguage = chosen.front();
  NSMutableArray* names = [NSMutableArray array];
  for (const std::string& name : chosen) [names addObject:toNSString(name)];
  [NSUserDefaults setUserLanguages:names];
}

const std::string& interfaceLanguage() {
  return gLanguage;
}

bool interfaceIsRightToLeft() {
  return ::uloc_isRightToLeft(gLanguage.c_str());
}

}  // namespace kr::platform
