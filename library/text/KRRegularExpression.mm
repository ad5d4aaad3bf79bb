#import "library/text/KRRegularExpression.h"

#import "library/text/KRRegularExpression+Private.h"

namespace {

Class (*lookUpClass)(NSString*) = NSClassFromString;
Class foundClass = Nil;
bool hasLookedUp = false;

}  // namespace

@implementation KRRegularExpression

+ (Class)regexClass {
  @synchronized([KRRegularExpression class]) {
    if (!hasLookedUp) {
      foundClass = lookUpClass(@"NSRegularExpression");
      hasLookedUp = true;
    }
    return foundClass;
  }
}

+ (BOOL)regexAvailable {
  return [self regexClass] != Nil;
}

+ (id)regularExpressionWithPattern:(NSString*)pattern options:(NSUInteger)options error:(NSError**)error {
  return [[self regexClass] regularExpressionWithPattern:pattern options:options error:error];
}

@end

@implementation KRRegularExpression (Private)

+ (void)lookUpClassWith:(Class (*)(NSString* name))lookUp {
  @synchronized([KRRegularExpression class]) {
    lookUpClass = lookUp != nullptr ? lookUp : NSClassFromString;
    foundClass = Nil;
    hasLookedUp = false;
  }
}

@end
