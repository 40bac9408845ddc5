// The editor over many entries at once: what an operator waits for between a click and the next picture.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "benchmarks/Comparison.h"
#include "benchmarks/SampleData.h"
#include "benchmarks/Subjects.h"
#include "editor/EPGDorvaSelinViewController.h"
#include "platform/Environment.h"
#include "platform/PropertyListFile.h"
#include "plugin/EPGDorvaSelinManagerPlugin.h"

namespace epg::benchmarks {

namespace {

constexpr std::size_t entryCount = 10000;
constexpr std::size_t catalogueSize = 200;

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
    PropertyList::Array tags;
    for (std::size_t i = 0; i < catalogueSize; ++i) tags.emplace_back(sampleTag(i));
    PropertyListDictionary content;
    content.set("tags", PropertyList(tags));
    folder.write("Tags.plist", propertyListXML(PropertyList(content)).value_or(""));
  }

  std::optional<std::string> pathForResource(const std::string&, const std::string&) const override {
    return catalogue_;
  }
  EditorOutlets loadInterface(const std::string&, EPGDorvaSelinViewController& owner) override {
    editor = &owner;
    return {&view, &table, &imageURL, &title, &description};
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
    folder_.write("EPGItems.plist",
                  propertyListXML(PropertyList(sampleStore(entryCount, tagsOfAnEntry, catalogueSize))).value_or(""));
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
  void askEveryRow() const {
    const EPGDorvaSelinViewController& editor = *bundle->editor;
    for (std::ptrdiff_t row = 0; row < editor.numberOfRowsInTableView(&bundle->table); ++row) {
      ::benchmark::DoNotOptimize(editor.tableViewObjectValue(&bundle->table, "name", row));
      ::benchmark::DoNotOptimize(editor.tableViewObjectValue(&bundle->table, "selected", row));
    }
  }

  std::shared_ptr<BundleWithCatalogue> bundle;
  std::shared_ptr<EPGDorvaSelinManagerPlugin> plugin;

 private:
  WorkFolder folder_;
  std::vector<std::string> ids_;
};

void addFor(std::size_t tagsOfAnEntry) {
  const std::string circumstances = ", 10000 entries with " + std::to_string(tagsOfAnEntry) + " tags each, 200 rows";
  const auto session = [tagsOfAnEntry] { return std::make_shared<Session>(tagsOfAnEntry); };
  measureAgainstFrame("fill the editor" + circumstances, [session]() -> Work {
    return [open = session()](std::size_t) {
      open->fill();
      open->askEveryRow();
    };
  });
  // A row that some entries carry and some do not is clicked on for all, then off for all.
  measureAgainstFrame("click a tag" + circumstances, [session]() -> Work {
    return [open = session()](std::size_t round) {
      open->click(round / 2 % catalogueSize, round % 2 == 0 ? 1 : 0);
      open->askEveryRow();
    };
  });
}

}  // namespace

void addEditorBenchmarks() {
  for (const std::size_t tagsOfAnEntry : {std::size_t{4}, std::size_t{20}}) addFor(tagsOfAnEntry);
  measure("name 10000 entries, editor open", "this project", Clock::Processor,
          []() -> Work { return [open = std::make_shared<Session>(4)](std::size_t) { open->name(); }; });
  measure("apply the texts to 10000 entries", "this project", Clock::Processor, []() -> Work {
    return [open = std::make_shared<Session>(4)](std::size_t round) {
      // Different titles: the field is mixed, and only typed text is written.
      open->bundle->title.setStringValue("typed " + std::to_string(round));
      open->bundle->editor->applyChanges();
    };
  });
}

}  // namespace epg::benchmarks
