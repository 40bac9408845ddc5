#include "host/commands/EditorText.h"

#include <cstddef>
#include <string_view>
#include <variant>

#include "host/commands/CommandLineBundle.h"
#include "host/commands/PluginSession.h"
#include "host/commands/TagCatalogue.h"
#include "host/terminal/LineText.h"

namespace epg {

namespace {

/// A placeholder shows only while the field is empty.
std::string shownText(const TextField& field) {
  const std::string text = field.stringValue();
  return text.empty() ? field.placeholderString().value_or("") : escapedForLine(text);
}

void writeField(std::ostream& output, std::string_view label, const TextField& field) {
  const std::string text = shownText(field);
  output << label << ':' << (text.empty() ? "" : " ") << text << '\n';
}

const char* checkbox(const EPGDorvaSelinViewController::ObjectValue& value) {
  const TagState* const state = std::get_if<TagState>(&value);
  if (!state) return "[?]";
  return *state == TagStateMixed ? "[-]" : *state == TagStateOn ? "[x]" : "[ ]";
}

}  // namespace

void openEditor(PluginSession& session, const std::vector<std::string>& ids) {
  // The view first: without it the editor would stay empty.
  session.plugin().editorView();
  session.plugin().setEditedEPGUniqueIDs(ids);
}

void writeEditor(PluginSession& session, std::ostream& output) {
  CommandLineBundle& bundle = session.bundle();
  for (std::size_t i = 0; i < epgItemTexts.size(); ++i) {
    writeField(output, epgItemTexts[i].label, bundle.textField(i));
  }
  const std::vector<std::string> tags = tagCatalogue(session);
  for (std::size_t i = 0; i < tags.size(); ++i) {
    const auto value =
        bundle.editor()->tableViewObjectValue(&bundle.tagsTable(), "selected", static_cast<std::ptrdiff_t>(i));
    output << checkbox(value) << ' ' << escapedForLine(tags[i]) << '\n';
  }
}

}  // namespace epg
