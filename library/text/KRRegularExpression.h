// The system's regular expressions for code that must also run where the system has none: nothing here is
// linked with their class. There are no instances. Any thread.
#pragma once

#import <Foundation/Foundation.h>

@interface KRRegularExpression : NSObject

// The class NSRegularExpression, or Nil. It is looked up once, under the lock of this class; the answer is
// kept.
+ (Class)regexClass;

+ (BOOL)regexAvailable;

// What the method of that name answers there. nil, with the error left as it is, where there is no such
// class.
+ (id)regularExpressionWithPattern:(NSString*)pattern options:(NSUInteger)options error:(NSError**)error;

@end
