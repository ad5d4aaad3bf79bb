// Utilities of the desktop for Cocoa programs. The class has no instances.
#pragma once

#import <Foundation/Foundation.h>

@interface KRUtilities : NSObject

// Opens a document with its default application. Returns at once, without a result. Any thread.
+ (void)openFile:(NSString*)path;

@end
