// How the class is looked up, for tests.
#pragma once

#import "library/text/KRRegularExpression.h"

@interface KRRegularExpression (Private)

// From now on the function looks classes up, NSClassFromString where it is null. What was found so far is
// forgotten.
+ (void)lookUpClassWith:(Class (*)(NSString* name))lookUp;

@end
