// Another implementation for a method, until the end of the scope. Objective-C++ only.
//
//   NSLocale* german(Class, SEL) { return ...; }
//   const auto locale = ReplacedMethod::ofClass([NSLocale class], @selector(currentLocale), german);
#pragma once

#import <Foundation/Foundation.h>
#include <objc/runtime.h>

namespace kr::testing {

class ReplacedMethod {
 public:
  template <class Implementation>
  [[nodiscard]] static ReplacedMethod ofClass(Class type, SEL selector, Implementation* implementation) {
    return {class_getClassMethod(type, selector), reinterpret_cast<IMP>(implementation)};
  }
  template <class Implementation>
  [[nodiscard]] static ReplacedMethod ofInstances(Class type, SEL selector, Implementation* implementation) {
    return {class_getInstanceMethod(type, selector), reinterpret_cast<IMP>(implementation)};
  }

  ~ReplacedMethod() { method_setImplementation(method_, original_); }
  ReplacedMethod(const ReplacedMethod&) = delete;
  ReplacedMethod& operator=(const ReplacedMethod&) = delete;

 private:
  ReplacedMethod(Method method, IMP implementation)
      : method_(method), original_(method_setImplementation(method, implementation)) {}

  Method method_;
  IMP original_;
};

}  // namespace kr::testing
