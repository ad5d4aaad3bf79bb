// Mistakes that the analyser must find, each named at the end of its line. tools/check-macos builds this to
// see that the analyser runs on the sources, and with which checks.
#import <Foundation/Foundation.h>

void leaksCoreFoundation() {
  CFStringRef text = CFStringCreateWithCString(nullptr, "text", kCFStringEncodingUTF8);
  CFShow(text);
}  // osx.cocoa.RetainCount

void leaksCocoa() {
  NSMutableArray* items = [[NSMutableArray alloc] init];
  [items removeAllObjects];
}  // osx.cocoa.RetainCount

void releasesWhatIsNotOwned(NSString* text) {
  NSString* upper = [text uppercaseString];
  [upper release];  // osx.cocoa.RetainCount
}

void addsNothing(NSMutableArray* items) {
  id nothing = nil;
  [items addObject:nothing];  // osx.cocoa.NilArg
}

void releasesNull() {
  CFStringRef text = nullptr;
  CFRelease(text);  // osx.coreFoundation.CFRetainRelease
}

int writesThroughNull(int* place) {
  if (place == nullptr) *place = 1;  // core.NullDereference
  return 0;
}

BOOL passesNullOn(NSString* _Nullable maybe, NSArray<NSString*>* items) {
  return maybe == nil && [items containsObject:maybe];  // nullability.NullPassedToNonnull
}
