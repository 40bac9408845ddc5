// FindBundle: prints where the platform's search for bundles finds EPGDorvaSelin.bundle, once it could be loaded there.

#import <Foundation/Foundation.h>
#import <TelvarinManagerEPGPluginProtocol.h>

int main(void) {
  NSAutoreleasePool *pool = [[NSAutoreleasePool alloc] init];
  int status = 1;
  NSArray *libraries = NSSearchPathForDirectoriesInDomains(NSLibraryDirectory, NSAllDomainsMask, YES);
  NSUInteger index;
  for (index = 0; index < [libraries count] && status != 0; ++index) {
    NSString *bundles = [[libraries objectAtIndex:index] stringByAppendingPathComponent:@"Bundles"];
    NSBundle *bundle = [NSBundle bundleWithPath:[bundles stringByAppendingPathComponent:@"EPGDorvaSelin.bundle"]];
    if ([[[bundle principalClass] pluginName] isEqual:@"EPG DorvaSelin"]) {
      printf("%s\n", [[bundle bundlePath] UTF8String]);
      status = 0;
    }
  }
  [pool drain];
  return status;
}
