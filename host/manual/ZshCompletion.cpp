#include <sstream>

#include "host/manual/Documents.h"
#include "host/manual/Options.h"
#include "host/manual/ShellText.h"

namespace epg {

namespace {

/// The part of the script that does not depend on the commands.
const char* const zshQuestions = R"zsh(
# What the program that is being typed prints over the data folder that has been typed.
_dorvaselin_ask() {
  local -a folder
  local -i i
  for ((i = 2; i <= $#dorvaselin_words; i++)); do
    case $dorvaselin_words[i] in
      (--) break ;;
      (--data-folder) folder=($dorvaselin_words[i] ${${(Q)dorvaselin_words[i + 1]}/#\~\//$HOME/}) ;;
      (--data-folder=*) folder=(--data-folder ${${(Q)dorvaselin_words[i]#*=}/#\~\//$HOME/}) ;;
    esac
  done
  ${${(Q)dorvaselin_words[1]}/#\~\//$HOME/} $folder "$@" 2>/dev/null
}

# The IDs that stand for themselves, in a shell as in a listing.
_dorvaselin_entries() {
  local -a ids expl
  ids=(${${(f)"$(_dorvaselin_ask list </dev/null)"}%%$'\t'*})
  ids=(${(M)ids:#[A-Za-z0-9._:@%+/,=][A-Za-z0-9._:@%+/,=-]#})
  _wanted entries expl 'EPG unique ID' compadd -a ids
}

# What a listing had to escape is not the name any more.
_dorvaselin_configurations() {
  local -a names expl
  names=(${(f)"$(_dorvaselin_ask configurations </dev/null)"})
  names=(${names:#*\\*})
  _wanted configurations expl 'export configuration' compadd -a names
}

# The editor shows the whole catalogue, whatever entry it is opened for.
_dorvaselin_tags() {
  local -a names expl
  names=(${(M)${(f)"$(_dorvaselin_ask show - <<<completion)"}:#\[?\] *})
  names=(${${names#????}:#*\\*})
  _wanted tags expl 'tag' compadd -a names
}
)zsh";

std::string withEscapes(const std::string& text, const std::string& escaped) {
  std::string result;
  for (const char character : text) {
    if (escaped.find(character) != std::string::npos) result += '\\';
    result += character;
  }
  return result;
}

/// Text inside the brackets, or between the colons, of a spec for _arguments.
std::string inSpec(const std::string& text) { return withEscapes(text, "\\[]:"); }

/// How _arguments gets the words that may stand there.
std::string zshAction(ValueKind kind) {
  switch (kind) {
    case ValueKind::File:
      return "_files";
    case ValueKind::Folder:
      return "_files -/";
    case ValueKind::Configuration:
      return "_dorvaselin_configurations";
    case ValueKind::Entry:
      return "_dorvaselin_entries";
    case ValueKind::Tag:
      return "_dorvaselin_tags";
    case ValueKind::None:
    case ValueKind::Text:
      return " ";
  }
  return " ";
}

void writeOptionSpec(std::ostream& script, const ArgumentDescription& option) {
  const std::string exclusive = option.isRepeatable ? "*" : "(" + joined(option.names, " ") + ")";
  for (const std::string& name : option.names) {
    std::string spec = exclusive + name;
    if (option.kind != ValueKind::None) spec += name.compare(0, 2, "--") == 0 ? "=" : "+";
    spec += "[" + inSpec(briefly(option.description)) + "]";
    if (option.kind != ValueKind::None) {
      spec += ":" + inSpec(option.valueName) + ":" + zshAction(option.kind);
    }
    script << " \\\n        " << shellQuoted(spec);
  }
}

void writePositionalSpec(std::ostream& script, const ArgumentDescription& positional) {
  const std::string spec =
      (positional.isRepeatable ? "*:" : ":") + inSpec(positional.names.front()) + ":" + zshAction(positional.kind);
  script << " \\\n        " << shellQuoted(spec);
}

void writeCommandSpecs(std::ostream& script, const ProgramDescription& description) {
  script << "\n_dorvaselin_commands() {\n  local -a commands=(\n";
  for (const CommandDescription& command : description.commands) {
    script << "    " << shellQuoted(withEscapes(command.name, "\\:") + ":" + briefly(command.description)) << '\n';
  }
  script << "  )\n  _describe -t commands command commands\n}\n";
}

}  // namespace

std::string zshCompletion(const ProgramDescription& description) {
  std::ostringstream script;
  script << "#compdef dorvaselin\n\n# Completion of dorvaselin for zsh. Made from what its --help is made from.\n";
  writeCommandSpecs(script, description);
  script << zshQuestions;
  script << "\n_dorvaselin() {\n"
            "  local -a dorvaselin_words=(\"${words[@]}\") state state_descr line\n"
            "  local -A opt_args\n"
            "  local curcontext=$curcontext\n"
            "  local -i ret=1\n"
            "  _arguments -C -S";
  for (const ArgumentDescription& option : description.program.options) writeOptionSpec(script, option);
  script << " \\\n        '(-)1:command:_dorvaselin_commands' \\\n"
            "        '(-)*:: :->arguments' && ret=0\n"
            "  [[ $state == arguments ]] || return ret\n"
            "  case $words[1] in\n";
  for (const CommandDescription& command : description.commands) {
    script << "    (" << command.name << ")\n      _arguments -S";
    for (const ArgumentDescription& option : allOptions(command, description.program)) writeOptionSpec(script, option);
    for (const ArgumentDescription& positional : command.positionals) writePositionalSpec(script, positional);
    script << " && ret=0\n      ;;\n";
  }
  script << "  esac\n  return ret\n}\n\n"
            "# The file may be loaded as the function itself, or sourced.\n"
            "if [[ $funcstack[1] == _dorvaselin ]]; then\n"
            "  _dorvaselin \"$@\"\n"
            "else\n"
            "  compdef _dorvaselin dorvaselin\n"
            "fi\n";
  return script.str();
}

}  // namespace epg
