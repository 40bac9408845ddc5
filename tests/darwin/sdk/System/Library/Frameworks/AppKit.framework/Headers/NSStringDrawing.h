#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

typedef NSString* NSAttributedStringKey;
FOUNDATION_EXPORT NSAttributedStringKey const NSFontAttributeName;

@interface NSString (NSStringDrawing)
- (NSSize)sizeWithAttributes:(nullable NSDictionary<NSAttributedStringKey, id>*)attributes;
@end

NS_ASSUME_NONNULL_END
