#pragma once

#import <AppKit/NSView.h>

NS_ASSUME_NONNULL_BEGIN

@protocol NSSplitViewDelegate;

@interface NSSplitView : NSView
@property (getter=isVertical) BOOL vertical;
@property (nullable, assign) id<NSSplitViewDelegate> delegate;
@property (readonly) CGFloat dividerThickness;
- (void)adjustSubviews;
@end

@protocol NSSplitViewDelegate <NSObject>
@optional
- (CGFloat)splitView:(NSSplitView*)splitView constrainMinCoordinate:(CGFloat)proposed ofSubviewAt:(NSInteger)index;
- (CGFloat)splitView:(NSSplitView*)splitView constrainMaxCoordinate:(CGFloat)proposed ofSubviewAt:(NSInteger)index;
- (void)splitView:(NSSplitView*)splitView resizeSubviewsWithOldSize:(NSSize)oldSize;
@end

NS_ASSUME_NONNULL_END
