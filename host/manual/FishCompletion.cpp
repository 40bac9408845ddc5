#include <sstream>

#include "host/manual/Documents.h"
#include "host/manual/Options.h"
#include "host/manual/ShellText.h"

namespace epg {

namespace {

/// The functions that ask the program. They do not depend on the commands.
const char* const fishQuestions = R"fish(
# What the program that is being typed prints over the data folder that has been typed.
function __dorvaselin_ask
    set -l words (commandline -opc)
    set -l program (string replace -r '^~/' "$HOME/" -- $words[1])
    set -l folder
    set -l previous
    for word in $words[2..-1]
        if test "$previous" = --data-folder
            set folder $previous $word
        else if test "$word" = --
            break
        else if string match -q -- '--data-folder=*' $word
            set folder --data-folder (string replace -r '^[^=]*=' '' -- $word)
        end
        set previous $word
    end
    if set -q folder[2]
        set folder[2] (string replace -r '^~/' "$HOME/" -- $folder[2])
    end
    $program $folder $argv 2>/dev/null
end

# The IDs that stand for themselves, in a shell as in a listing; each with its title.
function __dorvaselin_entries
    __dorvaselin_ask list </dev/null | string match -r '^[A-Za-z0-9._:@%+/,=][A-Za-z0-9._:@%+/,=-]*\t.*'
end

# What a listing had to escape is not the name any more.
function __dorvaselin_configurations
    __dorvaselin_ask configurations </dev/null | string match -v -r '\\\\'
end

# The editor shows the whole catalogue, whatever entry it is opened for.
function __dorvaselin_tags
    echo completion | __dorvaselin_ask show - | string replace -f -r '^\[.\] ([^\\\\]*)$' '$1'
end
)fish";

std::string fishQuoted(const std::string& text) {
  std::string result = "'";
  for (const char character : text) {
    if (character == '\'' || character == '\\') result += '\\';
    result += character;
  }
  return result + "'";
}

/// How `complete` gets the words that may stand there.
std::string fishAction(ValueKind kind) {
  switch (kind) {
    case ValueKind::File:
      return " -F";
    case ValueKind::Folder:
      return " -a '(__fish_complete_directories)'";
    case ValueKind::Configuration:
      return " -a '(__dorvaselin_configurations)'";
    case ValueKind::Entry:
      return " -a '(__dorvaselin_entries)'";
    case ValueKind::Tag:
      return " -a '(__dorvaselin_tags)'";
    case ValueKind::None:
    case ValueKind::Text:
      return {};
  }
  return {};
}

/// Writes the function that decides whether a completion may stand at the cursor.
void writeCondition(std::ostream& script, const ProgramDescription& description) {
  script
      << "# Whether that command has been typed ('' for none yet), and whether the argument of that number is next.\n"
         "function __dorvaselin_at\n"
         "    set -l command ''\n"
         "    set -l number 1\n"
         "    set -l only_arguments no\n"
         "    set -l is_value no\n"
         "    for word in (commandline -opc)[2..-1]\n"
         "        if test $is_value = yes\n"
         "            set is_value no\n"
         "        else if test $only_arguments = yes\n"
         "            set number (math $number + 1)\n"
         "        else if test \"$word\" = --\n"
         "            set only_arguments yes\n"
         "        else if contains -- $word "
      << joined(optionsWithValue(description), " ")
      << "\n"
         "            set is_value yes\n"
         "        else if string match -q -r -- '^-.' $word\n"
         "            continue\n"
         "        else if test -z \"$command\"\n"
         "            set command $word\n"
         "        else\n"
         "            set number (math $number + 1)\n"
         "        end\n"
         "    end\n"
         "    test \"$command\" = \"$argv[1]\"; or return\n"
         "    test (count $argv) -lt 2; or test $argv[2] -eq $number\n"
         "end\n";
}

void writeOptionCompletion(std::ostream& script, const ArgumentDescription& option, const std::string& condition) {
  script << "complete -c dorvaselin";
  if (!condition.empty()) script << " -n " << fishQuoted(condition);
  for (const std::string& name : option.names) {
    const bool isLong = name.compare(0, 2, "--") == 0;
    script << (isLong ? " -l " : " -s ") << name.substr(isLong ? 2 : 1);
  }
  if (option.kind == ValueKind::File) {
    script << " -r";
  } else if (option.kind != ValueKind::None) {
    script << " -x";
  }
  script << fishAction(option.kind) << " -d " << fishQuoted(briefly(option.description)) << '\n';
}

}  // namespace

std::string fishCompletion(const ProgramDescription& description) {
  std::ostringstream script;
  script << "# Completion of dorvaselin for fish. Made from what its --help is made from.\n\n";
  writeCondition(script, description);
  script << fishQuestions << "\ncomplete -c dorvaselin -f\n";
  for (const ArgumentDescription& option : description.program.options) writeOptionCompletion(script, option, {});
  for (const CommandDescription& command : description.commands) {
    script << "complete -c dorvaselin -n \"__dorvaselin_at ''\" -a " << command.name << " -d "
           << fishQuoted(briefly(command.description)) << '\n';
  }
  for (const CommandDescription& command : description.commands) {
    const std::string condition = "__dorvaselin_at " + command.name;
    for (const ArgumentDescription& option : ownOptions(command, description.program)) {
      writeOptionCompletion(script, option, condition);
    }
    for (std::size_t i = 0; i < command.positionals.size(); ++i) {
      const ArgumentDescription& positional = command.positionals[i];
      const std::string number = positional.isRepeatable ? "" : " " + std::to_string(i + 1);
      script << "complete -c dorvaselin -n " << fishQuoted(condition + number) << fishAction(positional.kind) << '\n';
    }
  }
  return script.str();
}

}  // namespace epg
