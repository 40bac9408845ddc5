#pragma once

#include <array>
#include <optional>
#include <string>

#include "model/EPGItemTexts.h"

namespace epg {

/// What the editor needs of a face's views. Faces implement these: the bundle with AppKit, the command line with
/// text, a test with variables. All of it is used on the host's thread only.

/// A view that the plug-in hands to the host and never looks into.
class View {
 public:
  virtual ~View() = default;
};

/// A table that asks its data source again for every visible cell when told to reload.
class TableView : public View {
 public:
  virtual void reloadData() = 0;
};

/// A one-line text with a placeholder that shows, greyed, while the text is empty and is never part of it.
class TextField : public View {
 public:
  virtual std::string stringValue() const = 0;
  virtual void setStringValue(const std::string& text) = 0;
  virtual std::optional<std::string> placeholderString() const = 0;
  virtual void setPlaceholderString(const std::optional<std::string>& placeholder) = 0;
};

/// The views of one loaded interface file. Owned by the face; any of them may be missing.
struct EditorOutlets {
  View* view = nullptr;
  TableView* tagsTableView = nullptr;
  std::array<TextField*, epgItemTexts.size()> textFields{};  ///< Of each text value, in the order of their list.
};

class EPGDorvaSelinViewController;

/// The plug-in's own bundle: where its resources lie and how its interface file becomes views.
class Bundle {
 public:
  virtual ~Bundle() = default;

  /// The path of a resource, nothing (or an empty path) when the bundle has no such resource.
  virtual std::optional<std::string> pathForResource(const std::string& name, const std::string& type) const = 0;

  /// Loads the interface file for `owner`, which is the tags table's data source. The views must live as long as
  /// the owner.
  virtual EditorOutlets loadInterface(const std::string& nibName, EPGDorvaSelinViewController& owner) = 0;
};

}  // namespace epg
