#include "export/DayFile.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "export/DayFileForm.h"
#include "xml/XMLText.h"

namespace epg {

namespace {

/// Receives programmes as the day file's text, without making elements of them first: their texts would be copied
/// several times, and each element takes memory of its own. Names and white space hold no apostrophe.
class DayFileText {
 public:
  explicit DayFileText(ByteSink& file) : file_(file) {}

  void rootStart(std::string_view dateFrom, std::string_view dateTo) {
    file_.append("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<programs");
    attribute("dateFrom", dateFrom);
    attribute("dateTo", dateTo);
    file_.append(">");
    isEmpty_ = true;
  }

  void rootEnd() { file_.append("</programs>\n"); }

  void programStart(std::optional<std::size_t> id) {
    begin();
    file_.append("<program");
    if (id) {
      file_.append(" id=\"");
      decimal(*id);
      file_.append("\"");
    }
    file_.append(">");
    isEmpty_ = true;
    ++level_;
  }

  void start(std::string_view name) {
    startTag(name);
    isEmpty_ = true;
    ++level_;
  }

  void number(std::string_view name, std::optional<std::int64_t> value) {
    startTag(name);
    if (value) {
      if (*value < 0) file_.append("-");
      decimal(static_cast<std::uint64_t>(*value < 0 ? -*value : *value));
    }
    endTag(name);
  }

  void text(std::string_view name, std::optional<std::string_view> value) {
    startTag(name);
    if (value) escaped(*value, XMLContext::Text);
    endTag(name);
  }

  void end(std::string_view name) {
    --level_;
    // Only around elements: an empty one is closed where it was opened.
    if (!isEmpty_) indent();
    endTag(name);
    isEmpty_ = false;
  }

  /// Whether every value so far was UTF-8.
  bool isWhole() const { return isWhole_; }

 private:
  /// Of a child: where it is the first, its parent's line ends here.
  void begin() {
    if (isEmpty_) file_.append("\n");
    isEmpty_ = false;
    indent();
  }

  void indent() {
    constexpr std::string_view deepest = "            ";
    constexpr std::size_t step = 4;
    file_.append(deepest.substr(0, level_ * step));
  }

  void startTag(std::string_view name) {
    begin();
    file_.append("<");
    file_.append(name);
    file_.append(">");
  }

  void endTag(std::string_view name) {
    file_.append("</");
    file_.append(name);
    file_.append(">\n");
  }

  void attribute(std::string_view name, std::string_view value) {
    file_.append(" ");
    file_.append(name);
    file_.append("=\"");
    escaped(value, XMLContext::Attribute);
    file_.append("\"");
  }

  void escaped(std::string_view text, XMLContext context) {
    // safeguard: the apostrophe pass
    if (!appendXMLText(file_, text, context, Apostrophes::AsReferences)) isWhole_ = false;
  }

  void decimal(std::uint64_t magnitude) {
    constexpr std::size_t mostDigits = 20;
    char digits[mostDigits];
    std::size_t first = mostDigits;
    do {
      digits[--first] = static_cast<char>('0' + magnitude % 10);
      magnitude /= 10;
    } while (magnitude > 0);
    file_.append(std::string_view(digits + first, mostDigits - first));
  }

  ByteSink& file_;
  std::size_t level_ = 1;
  bool isEmpty_ = true;  ///< The element that is open.
  bool isWhole_ = true;
};

/// The items of a few events at once, as the store finds them fastest.
class ItemsOfEvents {
 public:
  ItemsOfEvents(const EPGItemStore& items, const EventOrder& events) : items_(items), events_(events) {}

  /// To be asked for each event in turn. Nothing for an event without an item.
  const std::optional<PropertyListDictionary>& of(std::size_t index) {
    if (index % few == 0) lookUp(index);
    return values_[places_[index % few]];
  }

 private:
  /// More are no faster: the memory of so many is waited for at once.
  static constexpr std::size_t few = 16;

  void lookUp(std::size_t first) {
    uniqueIDs_.clear();
    for (std::size_t i = first; i < std::min(first + few, events_.size()); ++i) {
      const std::optional<std::string>& uniqueID = events_[i].eventEPGUniqueID;
      places_[i - first] = uniqueID ? uniqueIDs_.size() : few;
      if (uniqueID) uniqueIDs_.push_back(&*uniqueID);
    }
    values_ = items_.values(uniqueIDs_);
    values_.resize(few + 1);
  }

  const EPGItemStore& items_;
  const EventOrder& events_;
  std::vector<const std::string*> uniqueIDs_;
  std::vector<std::optional<PropertyListDictionary>> values_;  ///< The last one is for events without an ID.
  std::size_t places_[few] = {};
};

}  // namespace

bool writeDayFile(ByteSink& file, const LocalCalendar& calendar, const DateFormatter& rootDateFormatter,
                  const EPGItemStore& items, const EventOrder& events, const PlaybackIDHash& hash) {
  const auto rootDate = [&](std::optional<Instant> date) {
    return date ? rootDateFormatter.stringFromDate(calendar, *date) : std::string();
  };
  DayFileText text(file);
  text.rootStart(events.empty() ? std::string() : rootDate(events[0].eventEPGStartDateTime),
                 events.empty() ? std::string() : rootDate(events[events.size() - 1].eventEPGEndDateTime));
  ItemsOfEvents itemsOfEvents(items, events);
  for (std::size_t i = 0; i < events.size() && !file.failed() && text.isWhole(); ++i) {
    const std::optional<PropertyListDictionary>& item = itemsOfEvents.of(i);
    if (!item) continue;
    const EPGEvent& event = events[i];
    text.programStart(programID(event, hash));
    dayfile::describeProgram(text, dayfile::components(calendar, event.eventEPGStartDateTime), *item);
    text.end("program");
  }
  text.rootEnd();
  return text.isWhole();
}

std::optional<std::string> dayFileContent(const LocalCalendar& calendar, const DateFormatter& rootDateFormatter,
                                          const EPGItemStore& items, const std::vector<EPGEvent>& events,
                                          const PlaybackIDHash& hash) {
  std::string content;
  StringSink sink(content);
  if (!writeDayFile(sink, calendar, rootDateFormatter, items, EventOrder(events), hash)) return std::nullopt;
  sink.flush();
  return content;
}

}  // namespace epg
