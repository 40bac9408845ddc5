#pragma once

#import <AppKit/AppKit.h>

/// The menu of the window: files, editing and ways around the window for the keyboard. Commit, Revert, Duplicate and
/// Remove go to `entries` and Export to `exporter`; all others go to whoever has the keyboard.
NSMenu* mainMenu(id entries, id exporter);
