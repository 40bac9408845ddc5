#include "host/manual/ShellText.h"

namespace epg {

std::string shellQuoted(const std::string& text) {
  std::string quoted = "'";
  for (const char character : text) quoted += character == '\'' ? "'\\''" : std::string(1, character);
  return quoted + "'";
}

std::string joined(const std::vector<std::string>& texts, const std::string& separator) {
  std::string all;
  for (std::size_t i = 0; i < texts.size(); ++i) all += (i == 0 ? "" : separator) + texts[i];
  return all;
}

std::string briefly(const std::string& description) { return description.substr(0, description.find(';')); }

std::string kindWord(ValueKind kind) {
  switch (kind) {
    case ValueKind::None:
      return {};
    case ValueKind::Text:
      return "text";
    case ValueKind::File:
      return "file";
    case ValueKind::Folder:
      return "folder";
    case ValueKind::Configuration:
      return "configuration";
    case ValueKind::Entry:
      return "entry";
    case ValueKind::Tag:
      return "tag";
  }
  return {};
}

}  // namespace epg
