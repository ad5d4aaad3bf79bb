// What the operations of strings take, beside the ways that a program would have to do the same: with
// Foundation, with ICU, with the C library or libcrypto. Prints "text.CASE.WAY.ms", the median time, and
// "text.CASE.ratio", ours divided by the fastest other.
#import <Foundation/Foundation.h>

#include "benchmarks/text/Cases.h"

int main() {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  kr::bench::compareLines();
  kr::bench::compareValues();
  kr::bench::compareEscapes();
  kr::bench::compareEncodings();
  [pool drain];
}
