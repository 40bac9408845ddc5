#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSMenuItem : NSObject <NSCopying, NSCoding>
@property (nullable, assign) id target;
@end

@interface NSMenu : NSObject <NSCopying, NSCoding>
- (instancetype)initWithTitle:(NSString*)title EPG_DESIGNATED;
- (instancetype)initWithCoder:(NSCoder*)coder EPG_DESIGNATED;
- (NSMenuItem*)addItemWithTitle:(NSString*)title action:(nullable SEL)action keyEquivalent:(NSString*)key;
- (void)setSubmenu:(nullable NSMenu*)menu forItem:(NSMenuItem*)item;
@end

NS_ASSUME_NONNULL_END
