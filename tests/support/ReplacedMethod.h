// Another implementation for a class method, until the end of the scope. Objective-C++ only.
//
//   NSLocale* german(Class, SEL) { return ...; }
//   ReplacedMethod locale([NSLocale class], @selector(currentLocale), german);
#pragma once

#import <Foundation/Foundation.h>
#include <objc/runtime.h>

namespace kr::testing {

class ReplacedMethod {
 public:
  template <class Implementation>
  ReplacedMethod(Class type, SEL selector, Implementation* implementation)
      : method_(class_getClassMethod(type, selector)),
        original_(method_setImplementation(method_, reinterpret_cast<IMP>(implementation))) {}
  ~ReplacedMethod() { method_setImplementation(method_, original_); }
  ReplacedMethod(const ReplacedMethod&) = delete;
  ReplacedMethod& operator=(const ReplacedMethod&) = delete;

 private:
  Method method_;
  IMP original_;
};

}  // namespace kr::testing
