#import "host/window/KeyboardFocus.h"

NSView* viewWithKeyboard(NSWindow* window) {
  id responder = [window firstResponder];
  if ([responder isKindOfClass:[NSText class]] && [responder isFieldEditor]) {
    responder = [responder delegate];
  }
  return [responder isKindOfClass:[NSView class]] ? responder : nil;
}

BOOL isKeyboardInside(NSView* view) {
  NSView* keyboardView = viewWithKeyboard([view window]);
  return keyboardView != nil && [keyboardView isDescendantOf:view] ? YES : NO;
}

NSView* lastKeyView(NSView* view) {
  NSMutableSet* seen = [NSMutableSet setWithObject:view];
  NSView* last = view;
  NSView* next = [view nextKeyView];
  while (next != nil && ![seen containsObject:next] && [next isDescendantOf:view]) {
    [seen addObject:next];
    last = next;
    next = [next nextKeyView];
  }
  return last;
}
