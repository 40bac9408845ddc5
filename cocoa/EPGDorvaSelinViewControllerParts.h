#pragma once

#import <AppKit/AppKit.h>

#include <array>
#include <memory>
#include <string>

#import "cocoa/EPGDorvaSelinViewController.h"
#import "cocoa/bridge/EditorViews.h"
#include "editor/EPGDorvaSelinViewController.h"
#include "model/EPGItemTexts.h"

namespace epg::cocoa {

/// The plug-in's bundle for one view controller: the interface file's views are the controller's.
class CocoaBundle : public Bundle {
 public:
  CocoaBundle(::EPGDorvaSelinViewController* viewController, NSBundle* bundle)
      : viewController_(viewController), bundle_([bundle retain]) {}
  ~CocoaBundle() override { [bundle_ release]; }

  std::optional<std::string> pathForResource(const std::string& name, const std::string& type) const override;
  EditorOutlets loadInterface(const std::string& nibName, EPGDorvaSelinViewController& owner) override;

 private:
  ::EPGDorvaSelinViewController* viewController_;  ///< Owns this object.
  NSBundle* bundle_;
};

}  // namespace epg::cocoa

/// What a view controller is made of behind AppKit.
struct EPGDorvaSelinViewControllerParts {
  EPGDorvaSelinViewControllerParts(EPGDorvaSelinViewController* viewController, NSString* nibName, NSBundle* bundle);

  epg::EditorOutlets outlets();

  epg::cocoa::CocoaBundle bundle;
  epg::cocoa::CocoaView view;
  epg::cocoa::CocoaTableView tagsTableView;
  std::array<epg::cocoa::CocoaTextField, epg::epgItemTexts.size()> textFields;
  epg::EPGDorvaSelinViewController controller;
};

@interface EPGDorvaSelinViewController (Parts)
- (EPGDorvaSelinViewControllerParts&)parts;
@end
