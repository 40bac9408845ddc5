#include <algorithm>
#include <sstream>

#include "host/commands/DataFolder.h"
#include "host/commands/Version.h"
#include "host/manual/Documents.h"
#include "host/manual/Options.h"
#include "host/manual/Roff.h"

namespace epg {

namespace {

const char* const sharedSection = "LISTINGS AND IDS";

bool contains(const std::vector<std::string>& texts, const std::string& text) {
  return std::find(texts.begin(), texts.end(), text) != texts.end();
}

/// The paragraphs that several commands have, without those of the program itself.
std::vector<std::string> sharedParagraphs(const ProgramDescription& description) {
  std::vector<std::string> seen;
  std::vector<std::string> shared;
  for (const CommandDescription& command : description.commands) {
    for (const std::string& paragraph : command.paragraphs) {
      if (contains(description.program.paragraphs, paragraph)) continue;
      if (contains(seen, paragraph) && !contains(shared, paragraph)) shared.push_back(paragraph);
      seen.push_back(paragraph);
    }
  }
  return shared;
}

std::string withValue(const std::string& name, const ArgumentDescription& option) {
  return roffBold(name) + (option.valueName.empty() ? "" : " " + roffItalic(option.valueName));
}

std::string usage(const CommandDescription& command, const CommandDescription& program) {
  std::string text = roffBold(program.name) + " " + roffBold(command.name);
  for (const ArgumentDescription& option : ownOptions(command, program)) {
    text += " [" + withValue(option.names.back(), option) + "]" + (option.isRepeatable ? "..." : "");
  }
  for (const ArgumentDescription& positional : command.positionals) {
    text += " " + roffItalic(positional.names.front()) + (positional.isRepeatable ? "..." : "");
  }
  return text;
}

void writeEntry(std::ostream& page, const std::string& tag, const std::string& text) {
  page << ".TP\n" << tag << '\n' << text << '\n';
}

void writeOption(std::ostream& page, const ArgumentDescription& option) {
  std::string tag;
  for (const std::string& name : option.names) tag += (tag.empty() ? "" : ", ") + withValue(name, option);
  writeEntry(page, tag, roffText(option.description));
}

void writeSynopsis(std::ostream& page, const CommandDescription& program) {
  std::string options;
  std::string flags;
  for (const ArgumentDescription& option : program.options) {
    const std::string text = withValue(option.names.back(), option);
    if (option.kind == ValueKind::None) {
      flags += (flags.empty() ? "" : " | ") + text;
    } else {
      options += " [" + text + "]";
    }
  }
  const std::string name = roffBold(program.name);
  page << ".SH SYNOPSIS\n"
       << name << options << " " << roffItalic("COMMAND") << " [" << roffItalic("ARGUMENT") << "...]\n";
  page << ".br\n" << name << " " << flags << '\n';
}

void writeCommand(std::ostream& page, const CommandDescription& command, const ProgramDescription& description,
                  const std::vector<std::string>& shared) {
  page << ".SS " << roffText(command.name) << '\n' << usage(command, description.program) << '\n';
  page << ".PP\n" << roffText(command.description) << ".\n";
  for (const ArgumentDescription& positional : command.positionals) {
    writeEntry(page, roffItalic(positional.names.front()), roffText(positional.description));
  }
  for (const ArgumentDescription& option : ownOptions(command, description.program)) writeOption(page, option);
  bool hasShared = false;
  for (const std::string& paragraph : command.paragraphs) {
    if (contains(description.program.paragraphs, paragraph)) continue;
    if (contains(shared, paragraph)) {
      hasShared = true;
    } else {
      page << ".PP\n" << roffText(paragraph) << '\n';
    }
  }
  if (hasShared) page << ".PP\nSee " << roffBold(sharedSection) << " below.\n";
}

void writeParagraphs(std::ostream& page, const std::vector<std::string>& paragraphs) {
  for (std::size_t i = 0; i < paragraphs.size(); ++i)
    page << (i == 0 ? "" : ".PP\n") << roffText(paragraphs[i]) << '\n';
}

void writeFiles(std::ostream& page) {
  page << ".SH FILES\n" << roffText(std::string("The data folder is ") + defaultDataFolderInWords() + ".\n");
  writeEntry(page, roffItalic("DIR") + roffBold("/EPGItems.plist"),
             "The item store: the metadata of every entry under its EPG unique ID, a property list.");
  writeEntry(
      page, roffItalic("DIR") + "/" + roffItalic("NAME") + roffBold(".epgconf"),
      "The export configuration of that name, a property list. Its " + roffBold("exportPath") +
          " is the folder of the day files.\nWithout any configuration they go to the folder Desktop in the home "
          "folder.");
  writeEntry(page, roffBold("Tags.plist"),
             "The tag catalogue, a property list among the resources that are installed with the program.");
}

void writeEnvironment(std::ostream& page) {
  page << ".SH ENVIRONMENT\n";
  writeEntry(page, roffBold("XDG_DATA_HOME"), "Where it is an absolute path, the folder that holds the data folder.");
  writeEntry(page, roffBold("HOME"),
             "The home folder: of the data folder where XDG_DATA_HOME names none, and of the Desktop.");
  writeEntry(page, roffBold("TZ"),
             "The time zone of local times: those of day files, the day after which they are named, and those that\n" +
                 roffBold("check") + " reports.");
  writeEntry(page, roffBold("DORVASELIN_RESOURCES"), "The folder of the tag catalogue, instead of the installed one.");
}

void writeExample(std::ostream& page, const std::string& words, const std::string& commands) {
  page << roffText(words) << "\n.PP\n.EX\n" << roffText(commands) << "\n.EE\n";
}

void writeExamples(std::ostream& page) {
  page << ".SH EXAMPLES\n";
  writeExample(page, "Make entries of a guide, and look for some of them:",
               "dorvaselin import guide.xml\ndorvaselin list | grep Mapmakers");
  page << ".PP\n";
  writeExample(page, "Give all of these a new title and one more tag; their descriptions stay as they are:",
               "dorvaselin list | grep Mapmakers | cut -f1 |\n"
               "  dorvaselin edit - --title \"The Patient Mapmakers (1/3)\" --tag Subtitled");
  page << ".PP\n";
  writeExample(page, "Write the day file with the export configuration Evening:",
               "dorvaselin export guide.xml --configuration Evening");
  page << ".PP\n";
  writeExample(page, "Look for what would embarrass the channel on air:", "dorvaselin check guide.xml");
}

}  // namespace

std::string manualPage(const ProgramDescription& description) {
  const CommandDescription& program = description.program;
  const std::vector<std::string> shared = sharedParagraphs(description);
  const std::size_t colon = program.description.find(": ");
  const std::string purpose = colon == std::string::npos ? program.description : program.description.substr(colon + 2);

  std::ostringstream page;
  page << ".\\\" Made from the texts of --help.\n";
  page << ".TH DORVASELIN 1 " << programVersionDate << " \"" << roffText(programVersion) << "\" \"EPG DorvaSelin\"\n";
  // No hyphenation: option names must stay whole.
  page << ".nh\n.ad l\n";
  page << ".SH NAME\n"
       << program.name << " \\- " << roffText(purpose.substr(0, purpose.find_last_not_of('.') + 1)) << '\n';
  writeSynopsis(page, program);
  page << ".SH DESCRIPTION\n" << roffText(program.description) << '\n';
  page << ".SH OPTIONS\nThese go before or behind a command.\n";
  for (const ArgumentDescription& option : program.options) writeOption(page, option);
  page << ".SH COMMANDS\n";
  for (const CommandDescription& command : description.commands) writeCommand(page, command, description, shared);
  if (!shared.empty()) page << ".SH " << sharedSection << '\n';
  writeParagraphs(page, shared);
  page << ".SH EXIT STATUS\n";
  writeParagraphs(page, program.paragraphs);
  writeFiles(page);
  writeEnvironment(page);
  writeExamples(page);
  page << ".SH SEE ALSO\n.BR cut (1),\n.BR gzip (1),\n.BR tzset (3)\n";
  return page.str();
}

}  // namespace epg
