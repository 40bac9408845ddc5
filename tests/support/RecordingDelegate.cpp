#include "tests/support/RecordingDelegate.h"

namespace epg::test {

const char* const busyRefusal = "NO tv.dorvaselin (-1) Already Busy Exporting!";
const char* const writeErrorReport = "NO tv.dorvaselin.TelvarinManager.EPG (-1) EPG XML File Write Error";

namespace {

std::string outcomeOf(bool succeeded, const EPGError* error) {
  std::string outcome = succeeded ? "YES" : "NO";
  if (error) {
    outcome += " " + error->domain + " (" + std::to_string(error->code) + ") " + error->localizedDescription;
  }
  return outcome;
}

}  // namespace

void RecordingDelegate::setResponds(bool responds) {
  const std::lock_guard<std::mutex> lock(mutex_);
  responds_ = responds;
}

std::size_t RecordingDelegate::timesAsked() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return timesAsked_;
}

std::vector<RecordingDelegate::Report> RecordingDelegate::reports() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return reports_;
}

std::vector<std::string> RecordingDelegate::outcomes() const {
  std::vector<std::string> outcomes;
  for (const Report& report : reports()) outcomes.push_back(report.outcome);
  return outcomes;
}

void RecordingDelegate::waitForReports(std::size_t count) const {
  std::unique_lock<std::mutex> lock(mutex_);
  condition_.wait(lock, [&] { return reports_.size() >= count; });
}

bool RecordingDelegate::respondsToEPGExportEventCompleted() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  ++timesAsked_;
  return responds_;
}

void RecordingDelegate::epgExportEventCompleted(bool succeeded, const EPGError* error) {
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    reports_.push_back({outcomeOf(succeeded, error), std::this_thread::get_id()});
    condition_.notify_all();
  }
  if (duringReport) duringReport();
}

}  // namespace epg::test
