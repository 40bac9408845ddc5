#include "export/DayFileElements.h"

#include <cstdint>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "export/DayFileForm.h"

namespace epg {

namespace {

/// Receives parts of a programme as elements within the last one that was started.
class DayFileElements {
 public:
  void start(std::string_view name) { open_.push_back(XMLElement{std::string(name), {}, {}, {}}); }

  void number(std::string_view name, std::optional<std::int64_t> value) {
    child(name, value ? std::to_string(*value) : std::string());
  }

  void text(std::string_view name, std::optional<std::string_view> value) {
    child(name, std::string(value.value_or(std::string_view())));
  }

  void end(std::string_view /*name*/) {
    last_ = std::move(open_.back());
    open_.pop_back();
    if (!open_.empty()) open_.back().addChild(std::move(last_));
  }

  XMLElement last() { return std::move(last_); }

 private:
  void child(std::string_view name, std::string text) {
    open_.back().addChild(XMLElement{std::string(name), {}, {}, std::move(text)});
  }

  std::vector<XMLElement> open_;
  XMLElement last_;
};

}  // namespace

XMLElement dateXMLElementWithDate(const LocalCalendar& calendar, std::optional<Instant> date) {
  DayFileElements elements;
  dayfile::describeDate(elements, dayfile::components(calendar, date));
  return elements.last();
}

XMLElement timeXMLElementWithDate(const LocalCalendar& calendar, std::optional<Instant> date) {
  DayFileElements elements;
  dayfile::describeTime(elements, dayfile::components(calendar, date));
  return elements.last();
}

XMLElement tagsXMLElementWithTags(const PropertyList::Elements* tags) {
  DayFileElements elements;
  dayfile::describeTags(elements, tags);
  return elements.last();
}

std::size_t playbackIDHash(const std::string& playbackUniqueID) {
  constexpr bool wide = sizeof(std::size_t) == 8;
  using Word = std::conditional_t<wide, std::uint64_t, std::uint32_t>;
  constexpr auto offsetBasis = static_cast<Word>(wide ? 14695981039346656037u : 2166136261u);
  constexpr auto prime = static_cast<Word>(wide ? 1099511628211u : 16777619u);
  Word hash = offsetBasis;
  for (const char c : playbackUniqueID) {
    hash ^= static_cast<unsigned char>(c);
    hash *= prime;
  }
  return hash;
}

std::optional<std::size_t> programID(const EPGEvent& event, const PlaybackIDHash& hash) {
  const std::optional<std::string>& playbackID = event.eventEPGPlaybackUniqueID;
  return playbackID && !playbackID->empty() ? std::optional<std::size_t>(hash(*playbackID)) : std::nullopt;
}

std::optional<XMLElement> xmlEventWithDictionary(const LocalCalendar& calendar, const EPGItemStore& items,
                                                 const EPGEvent& event, const PlaybackIDHash& hash) {
  const auto item = event.eventEPGUniqueID ? items.valuesOf(*event.eventEPGUniqueID) : std::nullopt;
  if (!item) return std::nullopt;
  DayFileElements elements;
  elements.start("program");
  dayfile::describeProgram(elements, dayfile::components(calendar, event.eventEPGStartDateTime), *item);
  elements.end("program");
  XMLElement program = elements.last();
  if (const auto id = programID(event, hash)) program.attributes.emplace_back("id", std::to_string(*id));
  return program;
}

}  // namespace epg
