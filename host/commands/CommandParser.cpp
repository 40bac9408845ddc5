#include "host/commands/CommandParser.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <sstream>

#include "host/commands/CommandContext.h"
#include "host/commands/Commands.h"
#include "host/commands/ExitStatus.h"
#include "host/commands/ParserArguments.h"
#include "host/commands/Version.h"
#include "host/terminal/LineText.h"
#include "host/terminal/Messages.h"
#include "host/terminal/Refusal.h"
#include "xml/XMLText.h"

namespace epg {

namespace {

/// "--image-url" for "image URL".
std::string optionNamed(std::string text) {
  for (char& character : text) {
    if (character >= 'A' && character <= 'Z') character = static_cast<char>(character - 'A' + 'a');
    if (character == ' ') character = '-';
  }
  return "--" + text;
}

/// Stands for the IDs on standard input, unless it comes behind "--".
const char* const standardInput = "-";

/// File names may be any bytes, all other arguments are UTF-8.
bool isFileName(ValueKind kind) {
  return kind == ValueKind::File || kind == ValueKind::Folder || kind == ValueKind::Configuration;
}

void refuseUnlessUTF8(const std::string& text) {
  if (!isUTF8(text)) throw WrongUsage("the argument " + text + " is not UTF-8");
}

/// An argument that looks like an option but is none; empty when there is none.
std::string unknownOption(const CLI::App& app) {
  for (const std::string& argument : app.remaining(true)) {
    if (argument.size() > 1 && argument[0] == '-') return argument;
  }
  return {};
}

bool takesPositionals(const CLI::App& command) {
  return !command.get_options([](const CLI::Option* option) { return option->get_positional(); }).empty();
}

void keepText(const std::string& text, std::string* target) { *target = text; }
void keepText(const std::string& text, std::optional<std::string>* target) { *target = text; }
void keepText(const std::string& text, std::vector<std::string>* target) { target->push_back(text); }

std::vector<std::string> paragraphsOf(const std::string& text) {
  std::vector<std::string> paragraphs;
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = std::min(text.find("\n\n", start), text.size());
    paragraphs.push_back(text.substr(start, end - start));
    start = end + 2;
  }
  return paragraphs;
}

const char* const idsDescription =
    "EPG unique IDs; - reads them from standard input, one a line, escaped as `list` writes them";

const char* const escapesFooter =
    "Listings keep to one line an entry: in IDs and texts a backslash is written \\\\, a line\n"
    "feed, tab or carriage return \\n, \\t or \\r, and any other control character \\xNN, byte by\n"
    "byte. IDs that are read from standard input are written the same way; IDs among the\n"
    "arguments stand for themselves. An ID that begins with - goes behind --,\n"
    "where - alone is an ID too.";

/// The options of all commands, what the operator gave for them, and the command to run.
class Parser {
 public:
  explicit Parser(CommandContext& context) : context_(context) {
    app_.require_subcommand(1);
    app_.fallthrough();
    app_.get_formatter()->label("SUBCOMMAND", "COMMAND");
    app_.set_version_flag("--version", programVersion, "Print the version and exit");
    addOption(&app_, ValueKind::Folder, "--data-folder", "DIR", &dataFolder_,
              "Folder of the item store and the export configurations, made by import and edit; default: " +
                  context.dataFolderPath);
    app_.footer(
        "Exit status: 0 done; 1 refused or failed, with a message; 2 wrong usage. A command that\n"
        "changes no file ends quietly, by SIGPIPE, when its reader leaves early.\n"
        "Each command has its own --help.");
    addImport();
    addExport();
    add("configurations", "List the export configurations of the data folder",
        reading([this] { return runConfigurations(context_); }));
    add("list", "List the entries: ID, tab, title", reading([this] { return runList(context_); }))
        ->footer(escapesFooter);
    addRemove();
    addDuplicate();
    addCheck();
    addShow();
    addEdit();
  }

  /// Throws what the parser throws, and `WrongUsage`.
  void parse(const std::vector<std::string>& arguments) {
    std::vector<std::string> reversed = parserArguments(arguments, optionsWithText_);
    try {
      app_.parse(reversed);
    } catch (const CLI::RequiredError&) {
      refuseUnknownArgument();
      if (app_.get_subcommands().empty()) throw WrongUsage("a COMMAND is required; --help lists them");
      throw;
    } catch (const CLI::ExtrasError&) {
      refuseUnknownArgument();
      throw;
    }
    if (dataFolder_) {
      if (dataFolder_->empty()) throw WrongUsage("--data-folder needs the name of a folder");
      context_.dataFolderPath = *dataFolder_;
      context_.dataFolderIsNamed = true;
    }
  }

  int run() const { return run_(); }

  ProgramDescription description() const {
    ProgramDescription described{describeCommand(app_), {}};
    for (const CLI::App* command : app_.get_subcommands(nullptr))
      described.commands.push_back(describeCommand(*command));
    return described;
  }

  CLI::App& app() { return app_; }

 private:
  /// The parser's own message would not name the argument.
  void refuseUnknownArgument() const {
    const std::vector<CLI::App*> commands = app_.get_subcommands();
    const std::string option = unknownOption(app_);
    if (!option.empty()) {
      const bool takesArguments = !commands.empty() && takesPositionals(*commands.front());
      throw WrongUsage("there is no option \"" + option + "\"; --help lists them" +
                       (takesArguments ? ". An ID or a file name that begins with - goes behind --" : ""));
    }
    const std::vector<std::string> unknown = app_.remaining();
    if (!commands.empty() || unknown.empty()) return;
    throw WrongUsage("there is no command \"" + unguarded(unknown.front()) + "\"; --help lists them");
  }

  CLI::App* add(const std::string& name, const std::string& description, std::function<int()> run) {
    CLI::App* const command = app_.add_subcommand(name, description);
    command->group("Commands");
    command->callback([this, run = std::move(run)] { run_ = run; });
    return command;
  }

  /// A command that changes no file.
  std::function<int()> reading(std::function<int()> run) {
    return [this, run = std::move(run)] {
      if (context_.onReadOnlyCommand) context_.onReadOnlyCommand();
      return run();
    };
  }

  void addImport() {
    CLI::App* const command = add("import", "Make an entry of every programme of an XMLTV guide",
                                  [this] { return runImport(context_, import_); });
    addPositional(command, ValueKind::File, "GUIDE", &import_.guide, "The guide, plain or compressed by gzip");
    command->add_flag("--replace", import_.replace, "Replace the metadata of entries that are there already");
    command->footer(
        "Entries that are there already stay as they were edited, unless --replace is given. A\n"
        "programme without a title or a valid start is skipped with a warning.");
  }

  void addExport() {
    CLI::App* const command = add("export", "Write the day file of scheduled events; its path is the last line printed",
                                  [this] { return runExport(context_, export_); });
    addPositional(command, ValueKind::File, "EVENTS", &export_.events,
                  "A property list (array of events) or an XMLTV guide, plain or compressed by gzip");
    addOption(command, ValueKind::Configuration, "--configuration", "NAME", &export_.configuration,
              "The export configuration; needed where the data folder has several");
  }

  void addRemove() {
    CLI::App* const command = add("remove", "Remove entries", [this] { return runRemove(context_, remove_); });
    addIDs(command, &remove_.ids);
    command->footer(std::string("IDs without an entry are told and passed over; when none of them has one, the exit\n"
                                "status is 1.\n\n") +
                    escapesFooter);
  }

  void addDuplicate() {
    CLI::App* const command = add("duplicate", "Copy an entry to another ID, replacing what is there",
                                  [this] { return runDuplicate(context_, duplicate_); });
    addPositional(command, ValueKind::Entry, "SOURCE", &duplicate_.source, "EPG unique ID of the entry to copy");
    addPositional(command, ValueKind::Entry, "TARGET", &duplicate_.target, "EPG unique ID of the copy");
  }

  void addCheck() {
    CLI::App* const command = add("check", "Look for what would embarrass a channel on air",
                                  reading([this] { return runCheck(context_, check_); }));
    addPositional(command, ValueKind::File, "EVENTS", &check_.events, "As for export");
    command->footer(
        "Reports overlaps and gaps on a channel (a property list is one channel), events without\n"
        "start, end or item, or that end before they start, items without title or description,\n"
        "and tags outside the catalogue. One line each: local time, tab, ID, tab, what is wrong.\n"
        "The exit status is 1 when there is any.");
  }

  void addShow() {
    CLI::App* const command = add("show", "Show what the editor shows for these entries",
                                  reading([this] { return runShow(context_, show_); }));
    addIDs(command, &show_.ids);
    command->footer(std::string("Texts that differ are shown as <Multiple Values>. A tag is on [x], off [ ] or mixed\n"
                                "[-].\n\n") +
                    escapesFooter);
  }

  void addEdit() {
    CLI::App* const command =
        add("edit", "Edit one entry or many at once", [this] { return runEdit(context_, edit_); });
    addIDs(command, &edit_.ids);
    for (std::size_t i = 0; i < epgItemTexts.size(); ++i) {
      const std::string name = labelInSentence(epgItemTexts[i].label);
      addOption(command, ValueKind::Text, optionNamed(name), "TEXT", &edit_.texts[i],
                "The " + name + " of all of them");
    }
    addOption(command, ValueKind::Tag, "--tag", "NAME", &edit_.tags, "Turn a tag of the catalogue on; may be repeated")
        ->take_all()
        ->allow_extra_args(false);
    addOption(command, ValueKind::Tag, "--untag", "NAME", &edit_.untags,
              "Turn a tag of the catalogue off; may be repeated")
        ->take_all()
        ->allow_extra_args(false);
    command->add_flag("--dry-run", edit_.dryRun, "Show the result and change nothing");
    command->footer(std::string("This is an editing session like any other: a text that is not given is one that the\n"
                                "operator did not touch. Committing writes what its field shows into every entry, the\n"
                                "empty text included, unless the entries differ there; then each keeps its own. An ID\n"
                                "without an entry makes a new one.\n\n") +
                    escapesFooter);
  }

  CommandDescription describeCommand(const CLI::App& app) const {
    CommandDescription described{app.get_name(), app.get_description(), {}, {}, paragraphsOf(app.get_footer())};
    for (const CLI::Option* option : app.get_options()) {
      (option->get_positional() ? described.positionals : described.options).push_back(describeArgument(*option));
    }
    return described;
  }

  ArgumentDescription describeArgument(const CLI::Option& option) const {
    ArgumentDescription described;
    if (option.get_positional()) described.names.push_back(option.get_name(true));
    for (const std::string& name : option.get_snames()) described.names.push_back("-" + name);
    for (const std::string& name : option.get_lnames()) described.names.push_back("--" + name);
    described.description = option.get_description();
    const auto kind = kinds_.find(&option);
    if (kind != kinds_.end()) {
      described.kind = kind->second;
      described.valueName = option.get_type_name();
    }
    described.isRepeatable = option.get_multi_option_policy() == CLI::MultiOptionPolicy::TakeAll;
    return described;
  }

  template <typename Target>
  CLI::Option* addOption(CLI::App* app, ValueKind kind, const std::string& name, const char* valueName, Target* target,
                         const std::string& description) {
    optionsWithText_.insert(name);
    return addText(app, kind, name, target, description)->type_name(valueName);
  }

  void addPositional(CLI::App* app, ValueKind kind, const std::string& name, std::string* target,
                     const std::string& description) {
    addText(app, kind, name, target, description)->type_name("")->required();
  }

  /// Adds an option, or a positional argument, whose texts go to `target` as they are.
  template <typename Target>
  CLI::Option* addText(CLI::App* app, ValueKind kind, const std::string& name, Target* target,
                       const std::string& description) {
    const bool mustNotBeEmpty = isFileName(kind) && name[0] != '-';
    const CLI::callback_t callback = [=](const CLI::results_t& results) {
      for (const std::string& result : results) {
        const std::string text = unguarded(result);
        if (!isFileName(kind)) refuseUnlessUTF8(text);
        if (mustNotBeEmpty && text.empty()) throw WrongUsage(name + " is empty; it must name a file");
        keepText(text, target);
      }
      return true;
    };
    CLI::Option* const option = app->add_option(name, callback, description);
    kinds_[option] = kind;
    return option;
  }

  void addIDs(CLI::App* command, std::vector<UniqueIDArgument>* ids) {
    const CLI::callback_t callback = [ids](const CLI::results_t& results) {
      for (const std::string& result : results) {
        const std::string id = unguarded(result);
        refuseUnlessUTF8(id);
        ids->push_back(result == standardInput ? UniqueIDArgument() : id);
      }
      return true;
    };
    CLI::Option* const option = command->add_option("ID", callback, idsDescription);
    kinds_[option] = ValueKind::Entry;
    option->type_name("")
        ->required()
        ->expected(1, CLI::detail::expected_max_vector_size)
        ->allow_extra_args()
        ->take_all();
  }

  CommandContext& context_;
  CLI::App app_{"EPG DorvaSelin at the command line: programme metadata, and the day file of scheduled events.",
                "dorvaselin"};
  std::set<std::string> optionsWithText_;
  std::map<const CLI::Option*, ValueKind> kinds_;  ///< Of those that take a value.
  std::function<int()> run_;
  std::optional<std::string> dataFolder_;
  ImportOptions import_;
  ExportOptions export_;
  RemoveOptions remove_;
  DuplicateOptions duplicate_;
  CheckOptions check_;
  ShowOptions show_;
  EditOptions edit_;
};

/// Writes what the parser reports: the help, the version or what is wrong.
int parserStatus(Parser& parser, const CLI::ParseError& error, CommandContext& context) {
  std::ostringstream output;
  std::ostringstream messages;
  const int status = parser.app().exit(error, output, messages);
  if (context.onReadOnlyCommand) context.onReadOnlyCommand();
  context.output << output.str();
  std::string text = messages.str();
  text.erase(std::remove(text.begin(), text.end(), parserGuard), text.end());
  while (!text.empty() && text.back() == '\n') text.pop_back();
  if (!text.empty()) context.messages.line(text);
  return status == 0 ? exitDone : exitWrongUsage;
}

}  // namespace

int parseAndRun(const std::vector<std::string>& arguments, CommandContext& context) {
  Parser parser(context);
  try {
    parser.parse(arguments);
  } catch (const CLI::ParseError& error) {
    return parserStatus(parser, error, context);
  }
  return parser.run();
}

ProgramDescription describeProgram(CommandContext& context) { return Parser(context).description(); }

}  // namespace epg
