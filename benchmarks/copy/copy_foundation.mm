// copy_foundation SOURCE DESTINATION: one copy by Foundation's file manager, as a process of its own.
#import <Foundation/Foundation.h>

int main(int count, char** words) {
  if (count != 3) return 2;
  @autoreleasepool {
    NSFileManager* manager = [NSFileManager defaultManager];
    NSString* source = [NSString stringWithUTF8String:words[1]];
    NSString* destination = [NSString stringWithUTF8String:words[2]];
    return [manager copyItemAtPath:source toPath:destination error:NULL] ? 0 : 1;
  }
}
