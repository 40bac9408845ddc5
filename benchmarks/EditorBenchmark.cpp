// The editor over many entries at once: what an operator waits for between a click and the next picture.

#include <cstddef>
#include <exception>
#include <iostream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "benchmarks/SampleData.h"
#include "benchmarks/Table.h"
#include "benchmarks/Timing.h"
#include "benchmarks/WorkFolder.h"
#include "editor/EPGDorvaSelinViewController.h"
#include "plugin/EPGDorvaSelinManagerPlugin.h"

using namespace epg;
using namespace epg::benchmarks;

namespace {

constexpr std::size_t entryCount = 10000;
constexpr double frame = 0.016;
constexpr int fills = 50;
constexpr std::size_t clicks = 2 * sampleCatalogueSize;

class FieldWithoutWindow : public TextField {
 public:
  std::string stringValue() const override { return text_; }
  void setStringValue(const std::string& text) override { text_ = text; }
  std::optional<std::string> placeholderString() const override { return placeholder_; }
  void setPlaceholderString(const std::optional<std::string>& placeholder) override { placeholder_ = placeholder; }

 private:
  std::string text_;
  std::optional<std::string> placeholder_;
};

class TableWithoutWindow : public TableView {
 public:
  void reloadData() override {}
};

class BundleWithCatalogue : public Bundle {
 public:
  explicit BundleWithCatalogue(const WorkFolder& folder) : catalogue_(folder.file("Tags.plist")) {
    std::string tags;
    for (std::size_t i = 0; i < sampleCatalogueSize; ++i) tags += "<string>" + sampleTag(i) + "</string>";
    folder.write("Tags.plist",
                 "<plist version=\"1.0\"><dict><key>tags</key><array>" + tags + "</array></dict></plist>\n");
  }

  std::optional<std::string> pathForResource(const std::string&, const std::string&) const override {
    return catalogue_;
  }
  EditorOutlets loadInterface(const std::string&, EPGDorvaSelinViewController& owner) override {
    editor = &owner;
    return {&view, &table, {&title, &description, &imageURL}};
  }

  EPGDorvaSelinViewController* editor = nullptr;
  View view;
  TableWithoutWindow table;
  FieldWithoutWindow imageURL;
  FieldWithoutWindow title;
  FieldWithoutWindow description;

 private:
  std::string catalogue_;
};

/// A plug-in whose store was read from a file and whose editor shows all of its entries.
class Session {
 public:
  explicit Session(std::size_t tagsOfAnEntry) {
    folder_.write("EPGItems.plist", sampleStoreFile(entryCount, tagsOfAnEntry));
    for (std::size_t i = 0; i < entryCount; ++i) ids_.push_back(sampleID(i));
    bundle = std::make_shared<BundleWithCatalogue>(folder_);
    plugin = EPGDorvaSelinManagerPlugin::initWithBundle(bundle, folder_.path());
    plugin->editorView();
    name();
  }

  void name() { plugin->setEditedEPGUniqueIDs(ids_); }
  void fill() { bundle->editor->setItems(plugin->editedItems()); }
  void click(std::size_t row, int state) {
    bundle->editor->tableViewSetObjectValue(&bundle->table, state, "selected", static_cast<std::ptrdiff_t>(row));
  }
  /// What the table does to show all of its rows, whether they are in view or not.
  void askEveryRow() {
    const EPGDorvaSelinViewController& editor = *bundle->editor;
    const std::ptrdiff_t rows = editor.numberOfRowsInTableView(&bundle->table);
    for (std::ptrdiff_t row = 0; row < rows; ++row) {
      asked_ += editor.tableViewObjectValue(&bundle->table, "name", row).index();
      asked_ += editor.tableViewObjectValue(&bundle->table, "selected", row).index();
    }
    if (rows != static_cast<std::ptrdiff_t>(sampleCatalogueSize)) throw std::runtime_error("the table is not filled");
  }

  std::shared_ptr<BundleWithCatalogue> bundle;
  std::shared_ptr<EPGDorvaSelinManagerPlugin> plugin;

 private:
  WorkFolder folder_;
  std::vector<std::string> ids_;
  std::size_t asked_ = 0;  ///< Of what the rows answered, so that they have to.
};

void measure(Table& table, std::size_t tagsOfAnEntry) {
  Session session(tagsOfAnEntry);
  Calls filling;
  for (int i = 0; i < fills; ++i) {
    filling.measure([&] {
      session.fill();
      session.askEveryRow();
    });
  }
  // A row that some entries carry and some do not is clicked on for all, then off for all.
  Calls clicking;
  for (std::size_t i = 0; i < clicks; ++i) {
    clicking.measure([&] {
      session.click(i / 2, i % 2 == 0 ? 1 : 0);
      session.askEveryRow();
    });
  }
  const std::string circumstances = ", 10000 entries with " + std::to_string(tagsOfAnEntry) + " tags";
  table.calls("fill the editor" + circumstances, filling, frame);
  table.calls("click a tag" + circumstances, clicking, frame);
}

}  // namespace

int main() {
  try {
    Table table;
    for (const std::size_t tagsOfAnEntry : {std::size_t{4}, std::size_t{20}}) measure(table, tagsOfAnEntry);
  } catch (const std::exception& exception) {
    std::cerr << "EditorBenchmark: " << exception.what() << '\n';
    return 1;
  }
  return 0;
}
