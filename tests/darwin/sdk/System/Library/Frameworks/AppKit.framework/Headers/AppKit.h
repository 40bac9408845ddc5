#pragma once

// What of AppKit the bundle and the window use, as Foundation.h here has it of Foundation.
// https://developer.apple.com/documentation/appkit

#import <Foundation/Foundation.h>

#define IBOutlet
#define IBAction void

#import <AppKit/NSApplication.h>
#import <AppKit/NSButton.h>
#import <AppKit/NSCell.h>
#import <AppKit/NSControl.h>
#import <AppKit/NSEvent.h>
#import <AppKit/NSFont.h>
#import <AppKit/NSMenu.h>
#import <AppKit/NSPopUpButton.h>
#import <AppKit/NSResponder.h>
#import <AppKit/NSScrollView.h>
#import <AppKit/NSSearchField.h>
#import <AppKit/NSSplitView.h>
#import <AppKit/NSStringDrawing.h>
#import <AppKit/NSTableView.h>
#import <AppKit/NSText.h>
#import <AppKit/NSTextField.h>
#import <AppKit/NSView.h>
#import <AppKit/NSViewController.h>
#import <AppKit/NSWindow.h>
