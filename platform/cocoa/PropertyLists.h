// Property lists and information dictionaries of bundles, in every layout and format that products come in.
// Cocoa's own bundle class reads one layout only, and not the same one on both systems. Any thread.
#pragma once

#import <Foundation/Foundation.h>

#include <string>
#include <string_view>

namespace kr {

// The dictionary at the root of a serialised property list (XML, binary or plain text); nil when the bytes
// are none.
[[nodiscard]] NSDictionary* propertyListDictionary(std::string_view bytes);

// The information dictionary of the bundle at the path: the first that can be read of "Contents/Info.plist",
// "Resources/Info-gnustep.plist", "Resources/Info.plist" and "Info.plist"; nil when there is none. What
// Info-gnustep.plist says takes precedence over an Info.plist beside it, which fills in the keys it lacks.
[[nodiscard]] NSDictionary* bundleInfoDictionary(const std::string& bundlePath);

// Path of the named resource in the bundle at the path, in either layout; `type` is an extension, or empty
// for none. The empty text when there is none.
[[nodiscard]] std::string bundleResourcePath(const std::string& bundlePath, std::string_view name,
                                             std::string_view type);

}  // namespace kr
