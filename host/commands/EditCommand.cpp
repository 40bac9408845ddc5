#include <algorithm>
#include <cstddef>
#include <string_view>
#include <unordered_set>

#include "host/commands/CommandContext.h"
#include "host/commands/CommandLineBundle.h"
#include "host/commands/Commands.h"
#include "host/commands/EditorText.h"
#include "host/commands/EntryIDs.h"
#include "host/commands/ExitStatus.h"
#include "host/commands/PluginSession.h"
#include "host/commands/TagCatalogue.h"
#include "host/commands/UniqueIDArguments.h"
#include "host/terminal/LineText.h"
#include "host/terminal/Messages.h"
#include "host/terminal/Progress.h"
#include "host/terminal/Refusal.h"
#include "xml/XMLText.h"

namespace epg {

namespace {

void refuseContradictions(const EditOptions& options) {
  for (const std::string& tag : options.tags) {
    if (std::find(options.untags.begin(), options.untags.end(), tag) != options.untags.end()) {
      throw WrongUsage("--tag and --untag both name \"" + tag + "\"");
    }
  }
  for (const std::optional<std::string>& text : options.texts) {
    if (text && !isCarriedByXML(*text)) {
      throw WrongUsage("the text \"" + escapedForLine(*text) + "\" holds control characters that no entry can keep");
    }
  }
}

/// Types into a field as an operator would.
void type(CommandContext& context, TextField& field, const std::optional<std::string>& text, std::string_view label) {
  if (!text) return;
  field.setStringValue(*text);
  if (text->empty() && field.placeholderString()) {
    context.messages.line("the entries differ in their " + labelInSentence(label) +
                          "s; an empty text leaves each as it is (a text that they share can be emptied)");
  }
}

void click(PluginSession& session, const std::vector<std::size_t>& rows, TagState state) {
  CommandLineBundle& bundle = session.bundle();
  for (const std::size_t row : rows) {
    bundle.editor()->tableViewSetObjectValue(&bundle.tagsTable(), static_cast<int>(state), "selected",
                                             static_cast<std::ptrdiff_t>(row));
  }
}

/// Does in the open editor what the options say.
void operate(CommandContext& context, PluginSession& session, const EditOptions& options) {
  const std::vector<std::string> catalogue = tagCatalogue(session);
  const bool needsCatalogue = !options.tags.empty() || !options.untags.empty();
  if (needsCatalogue && catalogue.empty()) throw Refusal(missingCatalogueMessage(context, session));
  const std::vector<std::size_t> on = tagIndexes(catalogue, options.tags);
  const std::vector<std::size_t> off = tagIndexes(catalogue, options.untags);
  for (std::size_t i = 0; i < epgItemTexts.size(); ++i) {
    type(context, session.bundle().textField(i), options.texts[i], epgItemTexts[i].label);
  }
  click(session, on, TagStateOn);
  click(session, off, TagStateOff);
}

/// Shows the entries as a commit would file them. They are working copies: the store does not change.
void preview(CommandContext& context, PluginSession& session) {
  session.bundle().editor()->applyChanges();
  session.plugin().revertEditing();
  writeEditor(session, context.output);
}

void writeNewEntries(CommandContext& context, const std::vector<std::string>& ids, const char* label) {
  for (const std::string& id : ids) context.output << label << ": " << escapedForLine(id) << '\n';
}

}  // namespace

int runEdit(CommandContext& context, const EditOptions& options) {
  refuseContradictions(options);
  const std::vector<std::string> ids = uniqueIDs(options.ids, context.input);
  PluginSession session(context, options.dryRun ? PluginSession::Purpose::Rehearsing : PluginSession::Purpose::Adding);
  const std::vector<std::string> newIDs = idsWithoutItem(*session.plugin().epgItems(), ids);
  for (const std::string& id : ids) refuseUnsavableID(id);
  for (const std::string& id : newIDs) refuseUnusableID(*session.plugin().epgItems(), id);
  {
    const Progress progress(context.messages, "Editing");
    openEditor(session, ids);
    operate(context, session, options);
    if (!options.dryRun) session.plugin().commitEditing();
  }
  if (options.dryRun) {
    writeNewEntries(context, newIDs, "Would be a new entry");
    preview(context, session);
    return exitDone;
  }
  session.endAfterSave();
  writeNewEntries(context, newIDs, "New entry");
  const std::size_t count = std::unordered_set<std::string>(ids.begin(), ids.end()).size();
  context.output << counted(count, "entry", "entries") << " edited\n";
  return exitDone;
}

}  // namespace epg
