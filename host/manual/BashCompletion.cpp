#include <sstream>

#include "host/manual/Documents.h"
#include "host/manual/Options.h"
#include "host/manual/ShellText.h"

namespace epg {

namespace {

/// The part of the script that does not depend on the commands.
const char* const bashMachinery = R"bash(
# The text that a word stands for, in REPLY. Nothing in it is run, as it would be with eval.
_dorvaselin_unquote() {
  local text=$1 quote='' character
  REPLY=
  if [[ $text == '~/'* ]]; then
    REPLY=$HOME
    text=${text:1}
  fi
  while [[ -n $text ]]; do
    character=${text:0:1}
    text=${text:1}
    case $quote$character in
      \\ | \"\\)
        REPLY+=${text:0:1}
        text=${text:1}
        ;;
      \' | \") quote=$character ;;
      \'\' | \"\") quote= ;;
      *) REPLY+=$character ;;
    esac
  done
}

# The words up to the cursor, in the caller's array words. Bash has taken them apart at colons and equals signs too.
_dorvaselin_words() {
  local line=${COMP_LINE:0:COMP_POINT} trimmed word i
  for ((i = 0; i <= COMP_CWORD; i++)); do
    trimmed=${line#"${line%%[![:space:]]*}"}
    word=${COMP_WORDS[i]}
    if ((i == COMP_CWORD)); then
      word=$trimmed
    fi
    if ((i == 0)) || [[ $trimmed != "$line" ]]; then
      words+=("$word")
    else
      words[${#words[@]} - 1]+=$word
    fi
    line=${trimmed#"$word"}
  done
}

# What the program that is being typed prints over the data folder that has been typed.
_dorvaselin_ask() {
  local program
  _dorvaselin_unquote "${words[0]}"
  program=$REPLY
  if [[ -z $folder ]]; then
    "$program" "$@" 2>/dev/null
    return
  fi
  _dorvaselin_unquote "$folder"
  "$program" --data-folder "$REPLY" "$@" 2>/dev/null
}

# The IDs that stand for themselves, in a shell as in a listing.
_dorvaselin_entries() {
  local id rest
  _dorvaselin_ask list </dev/null | while IFS=$'\t' read -r id rest; do
    [[ $id == [!-]* && $id != *[!A-Za-z0-9._:@%+/,=-]* ]] && printf '%s\n' "$id"
  done
}

_dorvaselin_configurations() {
  _dorvaselin_ask configurations </dev/null
}

# The editor shows the whole catalogue, whatever entry it is opened for.
_dorvaselin_tags() {
  local line
  _dorvaselin_ask show - <<<'completion' | while IFS= read -r line; do
    [[ $line == '['?'] '* ]] && printf '%s\n' "${line:4}"
  done
}

# Offers the lines of standard input that begin with the word at the cursor. $1 is what stands in front of that word
# without a space, $2 the word, $3 the part of both that bash replaces.
_dorvaselin_offer() {
  local strip=$1$2 typed line
  strip=${strip%"$3"}
  _dorvaselin_unquote "$2"
  typed=$REPLY
  while IFS= read -r line; do
    # What the listing had to escape is not the name any more.
    [[ $line == "$typed"* && $line != *\\* ]] || continue
    [[ $2 == [\"\']* ]] || printf -v line '%q' "$line"
    line=$1$line
    COMPREPLY+=("${line#"$strip"}")
  done
}

_dorvaselin() {
  local IFS=$' \t\n' words=() command='' folder='' option='' kind='' before='' word REPLY
  local -i last i count=0 only_arguments=0
  _dorvaselin_words
  last=$((${#words[@]} - 1))
  COMPREPLY=()
  for ((i = 1; i < last; i++)); do
    word=${words[i]}
    if [[ -n $option ]]; then
      [[ $kind == folder ]] && folder=$word
      option=
    elif ((only_arguments)); then
      count+=1
    elif [[ $word == -- ]]; then
      only_arguments=1
    elif [[ $word == --*=* ]]; then
      _dorvaselin_option "$command" "${word%%=*}"
      [[ $kind == folder ]] && folder=${word#*=}
    elif [[ $word == -?* ]]; then
      _dorvaselin_option "$command" "$word"
      [[ -n $kind ]] && option=$word
    elif [[ -z $command ]]; then
      command=$word
    else
      count+=1
    fi
  done

  word=${words[last]}
  if [[ -n $option ]]; then
    :
  elif ((!only_arguments)) && [[ $word == --*=* ]]; then
    _dorvaselin_option "$command" "${word%%=*}"
    before=${word%%=*}=
    word=${word#*=}
  elif ((!only_arguments)) && [[ $word == -* ]]; then
    kind=option
  elif [[ -z $command ]]; then
    kind=command
  else
    _dorvaselin_argument "$command" $((count + 1))
    [[ -z $kind && -z $word ]] && kind=option
  fi

  case $kind in
    command) COMPREPLY=($(compgen -W "$_dorvaselin_commands" -- "$word")) ;;
    option)
      _dorvaselin_options "$command"
      COMPREPLY=($(compgen -W "$REPLY" -- "$word"))
      ;;
    file) compopt -o default 2>/dev/null ;;
    folder) compopt -o dirnames 2>/dev/null ;;
    configuration) _dorvaselin_offer "$before" "$word" "$2" < <(_dorvaselin_configurations) ;;
    entry) _dorvaselin_offer "$before" "$word" "$2" < <(_dorvaselin_entries) ;;
    tag) _dorvaselin_offer "$before" "$word" "$2" < <(_dorvaselin_tags) ;;
  esac
}

# The bash of a Mac cannot tell file names from the rest while it completes, and offers them wherever nothing else fits.
if type compopt &>/dev/null; then
  complete -F _dorvaselin dorvaselin
else
  complete -o default -F _dorvaselin dorvaselin
fi
)bash";

/// Names as alternatives of a pattern in a shell's `case`.
std::string alternatives(const std::vector<std::string>& names, const std::string& prefix) {
  std::vector<std::string> patterns(names);
  for (std::string& pattern : patterns) pattern.insert(0, prefix);
  return joined(patterns, " | ");
}

std::string optionNames(const std::vector<ArgumentDescription>& options) {
  std::vector<std::string> names;
  for (const ArgumentDescription& option : options) names.insert(names.end(), option.names.begin(), option.names.end());
  return joined(names, " ");
}

void writeOptionKinds(std::ostream& script, const ProgramDescription& description) {
  script << "\n# What the value of a command's option is, in the caller's kind; empty where it takes none.\n"
            "_dorvaselin_option() {\n  kind=\n  case $1:$2 in\n";
  for (const ArgumentDescription& option : description.program.options) {
    if (option.kind == ValueKind::None) continue;
    script << "    " << alternatives(option.names, "*:") << ") kind=" << kindWord(option.kind) << " ;;\n";
  }
  for (const CommandDescription& command : description.commands) {
    for (const ArgumentDescription& option : command.options) {
      if (option.kind == ValueKind::None) continue;
      script << "    " << alternatives(option.names, command.name + ":") << ") kind=" << kindWord(option.kind)
             << " ;;\n";
    }
  }
  script << "  esac\n}\n";
}

void writeArgumentKinds(std::ostream& script, const ProgramDescription& description) {
  script << "\n# What a command's argument of that number is, in the caller's kind; empty where it takes none.\n"
            "_dorvaselin_argument() {\n  kind=\n  case $1:$2 in\n";
  for (const CommandDescription& command : description.commands) {
    for (std::size_t i = 0; i < command.positionals.size(); ++i) {
      const ArgumentDescription& positional = command.positionals[i];
      script << "    " << command.name << ":" << (positional.isRepeatable ? "*" : std::to_string(i + 1))
             << ") kind=" << kindWord(positional.kind) << " ;;\n";
    }
  }
  script << "  esac\n}\n";
}

void writeOptionNames(std::ostream& script, const ProgramDescription& description) {
  script << "\n# The options that may be typed with a command, or without any, in REPLY.\n"
            "_dorvaselin_options() {\n  case $1 in\n";
  for (const CommandDescription& command : description.commands) {
    script << "    " << command.name << ") REPLY=" << shellQuoted(optionNames(allOptions(command, description.program)))
           << " ;;\n";
  }
  script << "    *) REPLY=" << shellQuoted(optionNames(description.program.options)) << " ;;\n  esac\n}\n";
}

}  // namespace

std::string bashCompletion(const ProgramDescription& description) {
  std::vector<std::string> commands;
  for (const CommandDescription& command : description.commands) commands.push_back(command.name);
  std::ostringstream script;
  script << "# Completion of dorvaselin for bash. Made from what its --help is made from.\n\n"
         << "_dorvaselin_commands=" << shellQuoted(joined(commands, " ")) << '\n';
  writeOptionNames(script, description);
  writeOptionKinds(script, description);
  writeArgumentKinds(script, description);
  script << bashMachinery;
  return script.str();
}

}  // namespace epg
