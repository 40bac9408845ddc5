#pragma once

#import <Foundation/Foundation.h>

/// What the live dictionaries over the core share. A class of its own has `init`, which makes it empty, and the five
/// operations that NSMutableDictionary leaves to its classes.
@interface EPGDorvaSelinDictionary : NSMutableDictionary
@end
