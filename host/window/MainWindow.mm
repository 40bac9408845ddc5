#import "host/window/MainWindow.h"

#include <math.h>

#import "host/window/KeyboardFocus.h"
#import "host/window/PlatformNames.h"

namespace {

const NSSize windowSize = {900, 520};
/// Wide enough for the row of buttons.
const CGFloat minimumWidth = 740;
const CGFloat margin = 12;
const CGFloat buttonGap = margin / 2;
const CGFloat buttonWidth = 96;
const CGFloat buttonHeight = 26;
const CGFloat popUpWidth = 190;
const CGFloat noticeHeight = 30;
const CGFloat listMinimumWidth = 240;
const CGFloat listShare = static_cast<CGFloat>(0.52);
/// What the list and the editor leave of the window's height.
const CGFloat heightAroundSplit = margin + noticeHeight + margin + margin + buttonHeight + margin;

}  // namespace

@interface MainWindow ()
- (void)makeWindow:(NSString*)title;
- (void)makeNotice;
- (void)makeButtons;
- (NSButton*)addButton:(NSString*)title action:(SEL)action at:(CGFloat)left;
- (void)makeSplit;
- (void)limitSize;
- (void)linkKeyViews;
@end

@implementation MainWindow

- (id)initWithPlugin:(NSObject<TelvarinManagerEPGPluginProtocol>*)plugin title:(NSString*)title {
  self = [super init];
  if (self != nil) {
    _plugin = plugin;
    [self makeWindow:title];
    [self makeNotice];
    [self makeButtons];
    [self makeSplit];
    [self limitSize];
    [self linkKeyViews];
    [_window center];
  }
  return self;
}

- (void)dealloc {
  [_split setDelegate:nil];
  [_split release];
  [_window release];
  [_playlist release];
  [_notice release];
  [_configurations release];
  [_buttons release];
  [super dealloc];
}

- (void)makeWindow:(NSString*)title {
  const NSUInteger style = NSWindowStyleMaskTitled | NSWindowStyleMaskClosable | NSWindowStyleMaskMiniaturizable |
                           NSWindowStyleMaskResizable;
  _window = [[NSWindow alloc] initWithContentRect:NSMakeRect(100, 100, windowSize.width, windowSize.height)
                                        styleMask:style
                                          backing:NSBackingStoreBuffered
                                            defer:NO];
  [_window setReleasedWhenClosed:NO];
  [_window setTitle:title];
}

- (void)makeNotice {
  NSView* content = [_window contentView];
  const CGFloat width = NSWidth([content bounds]) - 2 * margin;
  _notice = [[NoticeBar alloc] initWithFrame:NSMakeRect(margin, margin, width, noticeHeight)];
  [_notice setAutoresizingMask:NSViewWidthSizable | NSViewMaxYMargin];
  [content addSubview:_notice];
}

- (void)makeButtons {
  NSView* content = [_window contentView];
  _buttons = [[NSMutableDictionary alloc] init];
  NSArray* names = [NSArray arrayWithObjects:@"Commit", @"Revert", @"Duplicate", @"Remove", nil];
  const SEL actions[] = {@selector(commit:), @selector(revert:), @selector(duplicate:), @selector(remove:)};
  NSView* previous = nil;
  for (NSUInteger index = 0; index < [names count]; ++index) {
    const CGFloat left = margin + static_cast<CGFloat>(index) * (buttonWidth + buttonGap);
    NSButton* button = [self addButton:[names objectAtIndex:index] action:actions[index] at:left];
    [previous setNextKeyView:button];
    previous = button;
  }

  const CGFloat exportLeft = NSWidth([content bounds]) - margin - buttonWidth;
  NSButton* exportButton = [self addButton:@"Export" action:@selector(exportPlaybacks:) at:exportLeft];
  [exportButton setAutoresizingMask:NSViewMinXMargin | NSViewMinYMargin];
  _configurations =
      [[NSPopUpButton alloc] initWithFrame:NSMakeRect(exportLeft - buttonGap - popUpWidth, NSMinY([exportButton frame]),
                                                      popUpWidth, buttonHeight)
                                 pullsDown:NO];
  [_configurations setAutoresizingMask:NSViewMinXMargin | NSViewMinYMargin];
  [_configurations addItemsWithTitles:[_plugin configurationFilenames]];
  [content addSubview:_configurations];
  [previous setNextKeyView:_configurations];
  [_configurations setNextKeyView:exportButton];
}

- (NSButton*)addButton:(NSString*)title action:(SEL)action at:(CGFloat)left {
  NSView* content = [_window contentView];
  const CGFloat bottom = NSHeight([content bounds]) - margin - buttonHeight;
  NSButton* button = [[[NSButton alloc] initWithFrame:NSMakeRect(left, bottom, buttonWidth, buttonHeight)] autorelease];
  [button setTitle:title];
  [button setBezelStyle:NSBezelStyleRounded];
  [button setAction:action];
  [button setAutoresizingMask:NSViewMaxXMargin | NSViewMinYMargin];
  [_buttons setObject:button forKey:title];
  [content addSubview:button];
  return button;
}

- (void)makeSplit {
  NSView* content = [_window contentView];
  const CGFloat width = NSWidth([content bounds]) - 2 * margin;
  const CGFloat height = NSHeight([content bounds]) - heightAroundSplit;
  _split = [[NSSplitView alloc] initWithFrame:NSMakeRect(margin, margin + noticeHeight + margin, width, height)];
  [_split setVertical:YES];
  [_split setAutoresizingMask:NSViewWidthSizable | NSViewHeightSizable];
  [_split setDelegate:self];
  const CGFloat listWidth = floor(width * listShare);
  _playlist = [[PlaylistView alloc] initWithFrame:NSMakeRect(0, 0, listWidth, height)];
  [_split addSubview:_playlist];
  _editorView = [_plugin editorView];
  [_editorView setFrame:NSMakeRect(0, 0, width - listWidth - [_split dividerThickness], height)];
  [_split addSubview:_editorView];
  [content addSubview:_split];
  [_split adjustSubviews];
}

- (void)limitSize {
  const NSSize smallest = [_plugin minimumEditorViewSize];
  const NSSize largest = [_plugin maximumEditorViewSize];
  const CGFloat besideEditor = 2 * margin + listMinimumWidth + [_split dividerThickness];
  [_window setContentMinSize:NSMakeSize(fmax(smallest.width + besideEditor, minimumWidth),
                                        smallest.height + heightAroundSplit)];
  [_window setContentMaxSize:NSMakeSize(largest.width + besideEditor, largest.height + heightAroundSplit)];
}

- (void)linkKeyViews {
  // Found before the list leads into the editor's own chain.
  NSView* last = lastKeyView(_editorView);
  [[_playlist table] setNextKeyView:[_editorView nextKeyView] != nil ? [_editorView nextKeyView] : _editorView];
  [last setNextKeyView:[_buttons objectForKey:@"Commit"]];
  [[_buttons objectForKey:@"Export"] setNextKeyView:[_playlist searchField]];
  [_window setInitialFirstResponder:[_playlist table]];
}

- (void)setEntries:(id)entries exporter:(id)exporter {
  NSEnumerator* buttons = [_buttons objectEnumerator];
  while (NSButton* button = [buttons nextObject]) {
    [button setTarget:entries];
  }
  [[_buttons objectForKey:@"Export"] setTarget:exporter];
  [_playlist setTarget:entries];
}

- (NSWindow*)window {
  return _window;
}

- (PlaylistView*)playlist {
  return _playlist;
}

- (NSView*)editorView {
  return _editorView;
}

- (NoticeBar*)notice {
  return _notice;
}

- (NSString*)configurationName {
  return [_configurations titleOfSelectedItem];
}

- (void)enableButtonsForEntries:(NSUInteger)count {
  const BOOL any = count > 0 ? YES : NO;
  [[_buttons objectForKey:@"Commit"] setEnabled:any];
  [[_buttons objectForKey:@"Revert"] setEnabled:any];
  [[_buttons objectForKey:@"Duplicate"] setEnabled:count == 1 ? YES : NO];
  [[_buttons objectForKey:@"Remove"] setEnabled:any];
}

- (CGFloat)splitView:(NSSplitView*)splitView constrainMinCoordinate:(CGFloat)proposed ofSubviewAt:(NSInteger)index {
  (void)splitView;
  (void)index;
  return fmax(proposed, listMinimumWidth);
}

- (CGFloat)splitView:(NSSplitView*)splitView constrainMaxCoordinate:(CGFloat)proposed ofSubviewAt:(NSInteger)index {
  (void)index;
  const CGFloat room = NSWidth([splitView bounds]) - [splitView dividerThickness];
  return fmin(proposed, room - [_plugin minimumEditorViewSize].width);
}

/// Both sides grow and shrink with the window, the list only as far as the editor keeps its smallest size.
- (void)splitView:(NSSplitView*)splitView resizeSubviewsWithOldSize:(NSSize)oldSize {
  const CGFloat room = NSWidth([splitView bounds]) - [splitView dividerThickness];
  const CGFloat share = oldSize.width > 0 ? NSWidth([_playlist frame]) / oldSize.width : 0.5;
  CGFloat listWidth = floor(NSWidth([splitView bounds]) * share);
  listWidth = fmin(fmax(listWidth, listMinimumWidth), room - [_plugin minimumEditorViewSize].width);
  const CGFloat height = NSHeight([splitView bounds]);
  [_playlist setFrame:NSMakeRect(0, 0, listWidth, height)];
  [_editorView setFrame:NSMakeRect(listWidth + [splitView dividerThickness], 0, room - listWidth, height)];
}

@end
