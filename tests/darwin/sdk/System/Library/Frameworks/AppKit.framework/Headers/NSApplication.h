#pragma once

#import <AppKit/NSWindow.h>

@class NSApplication, NSMenu;

NS_ASSUME_NONNULL_BEGIN

typedef NS_ENUM(NSUInteger, NSApplicationTerminateReply) { NSTerminateCancel = 0, NSTerminateNow = 1 };

@protocol NSApplicationDelegate <NSObject>
@optional
- (NSApplicationTerminateReply)applicationShouldTerminate:(NSApplication*)sender;
- (void)applicationDidFinishLaunching:(NSNotification*)notification;
- (void)applicationWillTerminate:(NSNotification*)notification;
@end

@interface NSApplication : NSResponder
@property (class, readonly, strong) __kindof NSApplication* sharedApplication;
@property (nullable, assign) id<NSApplicationDelegate> delegate;
@property (nullable, strong) NSMenu* mainMenu;
- (void)run;
- (void)terminate:(nullable id)sender;
@end

FOUNDATION_EXPORT __kindof NSApplication* _Null_unspecified NSApp;

NS_ASSUME_NONNULL_END
