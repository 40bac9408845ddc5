#pragma once

#import <Foundation/NSXMLNode.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSXMLElement : NSXMLNode
- (void)addAttribute:(NSXMLNode*)attribute;
- (void)addChild:(NSXMLNode*)child;
@end

NS_ASSUME_NONNULL_END
