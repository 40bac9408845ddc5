#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>

#include "editor/EditorInterface.h"
#include "model/EPGItemTexts.h"

namespace epg {

class Environment;

/// A field that holds its text instead of drawing it.
class TextFieldValue : public TextField {
 public:
  std::string stringValue() const override { return text_; }
  void setStringValue(const std::string& text) override { text_ = text; }
  std::optional<std::string> placeholderString() const override { return placeholder_; }
  void setPlaceholderString(const std::optional<std::string>& placeholder) override { placeholder_ = placeholder; }

 private:
  std::string text_;
  std::optional<std::string> placeholder_;
};

/// A table without cells: whoever prints it asks the data source.
class TableWithoutCells : public TableView {
 public:
  void reloadData() override {}
};

/// The plug-in's bundle as the command line supplies it: resources from a folder, and an editor whose views hold what
/// a window would show. For one plug-in object.
class CommandLineBundle : public Bundle {
 public:
  /// `environment` must outlive the object.
  CommandLineBundle(Environment& environment, std::string resourceFolder);

  std::optional<std::string> pathForResource(const std::string& name, const std::string& type) const override;
  EditorOutlets loadInterface(const std::string& nibName, EPGDorvaSelinViewController& owner) override;

  const std::string& resourceFolder() const { return resourceFolder_; }

  /// Null until the editor view has been asked for.
  EPGDorvaSelinViewController* editor() const { return editor_; }
  TableWithoutCells& tagsTable() { return tagsTable_; }
  /// The field of the text value at this place of the list.
  TextFieldValue& textField(std::size_t index) { return textFields_[index]; }

 private:
  Environment& environment_;
  const std::string resourceFolder_;
  EPGDorvaSelinViewController* editor_ = nullptr;
  View view_;
  TableWithoutCells tagsTable_;
  std::array<TextFieldValue, epgItemTexts.size()> textFields_;
};

/// The folder of the plug-in's resources: the one that the environment variable DORVASELIN_RESOURCES names, otherwise
/// "../share/dorvaselin" relative to the program's folder, as in an installation and in the build.
std::string programResourceFolder();

}  // namespace epg
