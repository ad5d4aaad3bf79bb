// What AppKit has for colours and GNUstep lacks.
#import <AppKit/AppKit.h>
#include <objc/runtime.h>

#include <array>
#include <cstdlib>
#include <string_view>

namespace {

// How far a colour goes towards black or white under an effect, and what is left of its alpha.
struct Effect {
  CGFloat shadow;
  CGFloat highlight;
  CGFloat alpha;
};

constexpr std::array<Effect, 5> kEffects{{{0, 0, 1},       // none
                                          {0.15, 0, 1},    // pressed
                                          {0.3, 0, 1},     // deeply pressed
                                          {0, 0, 0.5},     // disabled
                                          {0, 0.15, 1}}};  // under the mouse

bool isOfTheToolkit(Class type) {
  const std::string_view name = class_getName(type);
  return name.starts_with("NS") || name.starts_with("GS");
}

using InitWithCoder = id (*)(id, SEL, NSCoder*);

// GNUstep's own, which a category hides but does not take away.
InitWithCoder hiddenInitWithCoder() {
  const SEL selector = @selector(initWithCoder:);
  const IMP visible = class_getMethodImplementation([NSColor class], selector);
  IMP hidden = visible;
  unsigned count = 0;
  Method* methods = class_copyMethodList([NSColor class], &count);
  for (unsigned i = 0; i < count; ++i) {
    if (!sel_isEqual(method_getName(methods[i]), selector)) continue;
    const IMP implementation = method_getImplementation(methods[i]);
    if (implementation != visible) hidden = implementation;
  }
  std::free(methods);
  return reinterpret_cast<InitWithCoder>(hidden);
}

}  // namespace

#pragma clang diagnostic push
// Which is what is meant: on this runtime the methods of a category that is loaded later win.
#pragma clang diagnostic ignored "-Wobjc-protocol-method-implementation"

@implementation NSColor (KRColors)

// GNUstep's puts a plain colour in the place of whatever is decoded. A class of somebody else reads what it
// has written, and here nothing was.
- (id)initWithCoder:(NSCoder*)coder {
  if (!isOfTheToolkit([self class])) return self;
  static const InitWithCoder original = hiddenInitWithCoder();
  return original(self, _cmd, coder);
}

// GNUstep's raises: the abstract class has no part of its own.
- (void)encodeWithCoder:(NSCoder*)coder {
}

// GNUstep's answers nil to each effect.
- (NSColor*)colorWithSystemEffect:(NSColorSystemEffect)effect {
  if (effect < 0 || static_cast<std::size_t>(effect) >= kEffects.size()) return self;
  const Effect& change = kEffects[static_cast<std::size_t>(effect)];
  NSColor* color = self;
  if (change.shadow > 0) color = [color shadowWithLevel:change.shadow];
  if (change.highlight > 0) color = [color highlightWithLevel:change.highlight];
  if (change.alpha < 1) color = [color colorWithAlphaComponent:change.alpha * [color alphaComponent]];
  return color;
}

// There is no Quartz that could take one.
- (CGColorRef)CGColor {
  return nullptr;
}

// The one that themes show the focus in; by its components, as GNUstep's named colours have no alpha of their
// own.
+ (NSColor*)controlAccentColor {
  return [[self keyboardFocusIndicatorColor] colorUsingColorSpaceName:NSCalibratedRGBColorSpace];
}

@end

#pragma clang diagnostic pop
