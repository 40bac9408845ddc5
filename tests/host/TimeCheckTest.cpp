#include "host/checks/TimeCheck.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/guide/XMLTVTime.h"
#include "platform/LocalCalendar.h"
#include "tests/support/TimeZone.h"

namespace epg::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// "HH:MM" or "HH:MM:SS" of 14 November 2026, UTC; nothing for "".
std::optional<Instant> at(std::string time) {
  if (time.empty()) return std::nullopt;
  time.erase(std::remove(time.begin(), time.end(), ':'), time.end());
  std::string problem;
  return instantFromXMLTVTime("20261114" + time, &problem);
}

/// Builds a schedule event by event; each is named by a letter: A, B, C…
class Plan {
 public:
  Plan& add(const std::string& start, const std::string& end, const std::string& channel = {},
            const std::string& clumpIndex = "0/1") {
    EPGEvent event;
    event.eventEPGUniqueID = std::string(1, static_cast<char>('A' + schedule_.events.size()));
    event.eventEPGStartDateTime = at(start);
    event.eventEPGEndDateTime = at(end);
    schedule_.events.push_back(event);
    schedule_.details.push_back({channel, clumpIndex, {}});
    return *this;
  }
  Schedule& schedule() { return schedule_; }

  /// "A: text" for each finding.
  std::vector<std::string> findings() const {
    const TimeZone zone("UTC");
    std::vector<std::string> texts;
    for (const Finding& finding : timeFindings(schedule_, LocalCalendar())) {
      texts.push_back(finding.uniqueID.value_or("-") + ": " + finding.text);
    }
    return texts;
  }

 private:
  Schedule schedule_;
};

}  // namespace

TEST(TimeCheck, FindsNothingInASeamlessSchedule) {
  EXPECT_THAT(Plan().findings(), IsEmpty());
  EXPECT_THAT(Plan().add("06:00", "06:30").findings(), IsEmpty());
  EXPECT_THAT(Plan().add("06:30", "07:00").add("06:00", "06:30").add("07:00", "07:05").findings(), IsEmpty());
}

TEST(TimeCheck, FindsAnOverlap) {
  EXPECT_THAT(Plan().add("06:00", "06:35").add("06:30", "07:00").findings(),
              ElementsAre("B: overlaps A, which ends at 2026-11-14 06:35:00 +0000"));
}

TEST(TimeCheck, FindsAnEventInsideALongOneBehindAnother) {
  EXPECT_THAT(Plan().add("06:00", "09:00").add("06:30", "07:00").add("07:30", "08:00").add("09:00", "10:00").findings(),
              ElementsAre("B: overlaps A, which ends at 2026-11-14 09:00:00 +0000",
                          "C: overlaps A, which ends at 2026-11-14 09:00:00 +0000"));
}

TEST(TimeCheck, FindsEventsThatStartTogether) {
  EXPECT_THAT(Plan().add("06:00", "07:00").add("06:00", "07:00").findings(),
              ElementsAre("B: overlaps A, which ends at 2026-11-14 07:00:00 +0000"));
  EXPECT_THAT(Plan().add("06:00", "07:00").add("06:00", "06:30").findings(),
              ElementsAre("A: overlaps B, which ends at 2026-11-14 06:30:00 +0000"));
}

TEST(TimeCheck, FindsAGapAndHowLongItIs) {
  EXPECT_THAT(Plan().add("06:00", "06:30").add("08:00:05", "09:00").findings(),
              ElementsAre("A: gap of 1:30:05 after this event, until B"));
}

TEST(TimeCheck, MeasuresAGapFromTheEventThatEndsLast) {
  EXPECT_THAT(Plan().add("06:00", "08:00").add("06:30", "07:00").add("08:10", "09:00").findings(),
              ElementsAre("B: overlaps A, which ends at 2026-11-14 08:00:00 +0000",
                          "A: gap of 0:10:00 after this event, until C"));
}

TEST(TimeCheck, LooksAtEachChannelAlone) {
  EXPECT_THAT(Plan()
                  .add("06:00", "07:00", "one")
                  .add("06:30", "07:30", "two")
                  .add("07:00", "08:00", "one")
                  .add("07:30", "08:00", "two")
                  .findings(),
              IsEmpty());
}

TEST(TimeCheck, NamesTheChannel) {
  Plan plan;
  plan.add("06:00", "07:00", "one").add("06:30", "07:00", "one").add("06:00", "", "t\nwo");
  plan.schedule().channelNames["one"] = "Channel One";
  EXPECT_THAT(plan.findings(), ElementsAre("C: no end (t\\nwo)",
                                           "B: overlaps A, which ends at 2026-11-14 07:00:00 +0000 (Channel One)"));
}

TEST(TimeCheck, FindsMissingTimes) {
  EXPECT_THAT(Plan().add("", "07:00").add("07:00", "").add("", "").findings(),
              ElementsAre("A: no start", "B: no end", "C: no start", "C: no end"));
}

TEST(TimeCheck, FindsBackwardTimes) {
  EXPECT_THAT(Plan().add("07:00", "06:00").findings(),
              ElementsAre("A: ends before it starts, at 2026-11-14 06:00:00 +0000"));
}

TEST(TimeCheck, LetsAnEventWithoutEndRunUntilTheNextOne) {
  EXPECT_THAT(Plan().add("06:00", "").add("08:00", "09:00").findings(), ElementsAre("A: no end"));
  EXPECT_THAT(Plan().add("06:00", "").add("08:00", "09:00").add("09:30", "10:00").findings(),
              ElementsAre("A: no end", "B: gap of 0:30:00 after this event, until C"));
}

TEST(TimeCheck, FindsAnEventWithoutEndInsideAnotherOrTogetherWithIt) {
  EXPECT_THAT(Plan().add("06:00", "08:00").add("07:00", "").findings(),
              ElementsAre("B: no end", "B: overlaps A, which ends at 2026-11-14 08:00:00 +0000"));
  EXPECT_THAT(Plan().add("06:00", "").add("06:00", "07:00").findings(),
              ElementsAre("A: no end", "B: starts together with A"));
  EXPECT_THAT(Plan().add("06:00", "").add("06:00", "").findings(),
              ElementsAre("A: no end", "B: no end", "B: starts together with A"));
}

TEST(TimeCheck, LetsAnEventThatTakesNoTimeStandAtAnEdge) {
  EXPECT_THAT(Plan().add("06:00", "07:00").add("06:00", "06:00").add("07:00", "07:00").findings(), IsEmpty());
  EXPECT_THAT(Plan().add("06:00", "07:00").add("06:30", "06:30").findings(),
              ElementsAre("B: overlaps A, which ends at 2026-11-14 07:00:00 +0000"));
  EXPECT_THAT(Plan().add("06:00", "06:00").add("06:00", "").findings(), ElementsAre("B: no end"));
}

TEST(TimeCheck, LetsTheProgrammesOfAClumpShareTheirSlot) {
  EXPECT_THAT(Plan()
                  .add("06:00", "06:30", "c", "0/3")
                  .add("06:00", "06:30", "c", "1/3")
                  .add("06:00", "06:30", "c", "2/3")
                  .add("06:30", "07:00", "c")
                  .findings(),
              IsEmpty());
}

TEST(TimeCheck, FindsAClumpThatIsNone) {
  EXPECT_THAT(Plan().add("06:00", "06:30", "c", "0/2").add("06:00", "06:30", "c", "0/2").findings(),
              ElementsAre("B: overlaps A, which ends at 2026-11-14 06:30:00 +0000 (c)"));
  EXPECT_THAT(Plan().add("06:00", "06:30", "c", "0/2").add("06:00", "06:45", "c", "1/2").findings(),
              ElementsAre("B: overlaps A, which ends at 2026-11-14 06:30:00 +0000 (c)"));
  EXPECT_THAT(Plan().add("06:00", "06:30", "c", "0/2").add("06:00", "06:30", "c", "1/3").findings(),
              ElementsAre("B: overlaps A, which ends at 2026-11-14 06:30:00 +0000 (c)"));
}

TEST(TimeCheck, TakesFractionsOfASecondForWhatTheyAre) {
  Schedule schedule;
  schedule.events.resize(3);
  schedule.details.resize(3);
  schedule.events[0].eventEPGStartDateTime = Instant{0};
  schedule.events[0].eventEPGEndDateTime = Instant{100.1};
  schedule.events[1].eventEPGStartDateTime = Instant{100.0 + 0.1};
  schedule.events[1].eventEPGEndDateTime = Instant{199.9999};
  schedule.events[2].eventEPGStartDateTime = Instant{200};
  schedule.events[2].eventEPGEndDateTime = Instant{300};
  EXPECT_EQ(timeFindings(schedule, LocalCalendar()).size(), 0U);
  schedule.events[2].eventEPGStartDateTime = Instant{200.5};
  EXPECT_EQ(timeFindings(schedule, LocalCalendar()).size(), 1U);
}

TEST(TimeCheck, TellsTheTimeOfAFinding) {
  Plan plan;
  plan.add("06:00", "06:30").add("07:00", "07:30").add("07:15", "08:00").add("", "09:00");
  std::vector<std::optional<Instant>> times;
  for (const Finding& finding : timeFindings(plan.schedule(), LocalCalendar())) times.push_back(finding.time);
  EXPECT_THAT(times, ElementsAre(std::nullopt, at("06:30"), at("07:15")));
}

TEST(TimeCheck, FindsFirstAndLastOfManyInTime) {
  // All on at once: comparing each with each would be ten thousand million comparisons.
  Schedule schedule;
  for (int i = 0; i < 100000; ++i) {
    EPGEvent event;
    event.eventEPGStartDateTime = Instant{static_cast<double>(i)};
    event.eventEPGEndDateTime = Instant{1e6};
    schedule.events.push_back(event);
  }
  schedule.details.resize(schedule.events.size());
  EXPECT_EQ(timeFindings(schedule, LocalCalendar()).size(), 99999U);
}

}  // namespace epg::test
