#include "host/guide/FaultlessGuide.h"

#include <algorithm>
#include <atomic>
#include <future>
#include <memory>
#include <string_view>
#include <utility>

#include "xml/XMLReader.h"

namespace epg {

namespace {

/// The end of the first programme that ends at `from` or later; the end of the guide when none does.
std::size_t endOfProgramme(const std::string& bytes, std::size_t from) {
  static constexpr std::string_view endTag = "</programme>";
  const std::size_t at = bytes.find(endTag, std::min(from, bytes.size()));
  return at == std::string::npos ? bytes.size() : at + endTag.size();
}

/// Reads shards of one guide, on several threads at once. When one of them cannot be read, all give up.
class ShardReader {
 public:
  ShardReader(const std::string& bytes, std::size_t chunkSize) : bytes_(bytes), chunkSize_(chunkSize) {}

  /// Both ends are ends of programmes, or of the guide. False when the reading was given up.
  bool read(std::size_t from, std::size_t to, const ProgrammeTaker& take) {
    while (from < to && !isGivenUp_) {
      const std::size_t end = std::min(endOfProgramme(bytes_, from + chunkSize_), to);
      // Where programmes hardly ever end, a chunk could be as large as the guide.
      constexpr std::size_t largestChunk = 16;  // In chunk sizes.
      if ((end - from) / largestChunk > chunkSize_ || !readChunk(from, end, take)) isGivenUp_ = true;
      from = end;
    }
    return !isGivenUp_;
  }

 private:
  /// Between the tags of a root, the chunk is a document of its own. Only a chunk that starts and ends between two
  /// elements of the guide is well-formed then: one that ends inside of a comment, for example, is not.
  bool readChunk(std::size_t from, std::size_t end, const ProgrammeTaker& take) const {
    static constexpr std::string_view startTag = "<tv>";
    static constexpr std::string_view endTag = "</tv>";
    std::string chunk;
    chunk.reserve(startTag.size() + (end - from) + endTag.size());
    if (from > 0) chunk += startTag;
    chunk.append(bytes_, from, end - from);
    if (end < bytes_.size()) chunk += endTag;
    const std::unique_ptr<XMLReader> document = XMLReader::parse(std::move(chunk), nullptr);
    return document && isGuide(*document) && readGuide(*document, {}, take).warnings.empty();
  }

  const std::string& bytes_;
  const std::size_t chunkSize_;
  std::atomic<bool> isGivenUp_{false};
};

}  // namespace

bool parseFaultlessGuide(const std::string& bytes, const std::vector<ProgrammeTaker>& takers, std::size_t chunkSize) {
  if (bytes.empty() || takers.empty() || !XMLReader::isInUTF8(bytes)) return false;
  ShardReader reader(bytes, chunkSize);
  std::vector<std::future<bool>> shards;
  std::size_t from = 0;
  for (std::size_t i = 0; i < takers.size(); ++i) {
    const bool isLast = i + 1 == takers.size();
    const std::size_t to = isLast ? bytes.size() : endOfProgramme(bytes, bytes.size() / takers.size() * (i + 1));
    // When the system has no thread to give, a deferred shard is read on this one.
    const auto policy = i == 0 ? std::launch::deferred : std::launch::async | std::launch::deferred;
    shards.push_back(
        std::async(policy, [&reader, from, to, &take = takers[i]] { return reader.read(from, to, take); }));
    from = to;
  }
  bool isWhole = true;
  for (auto& shard : shards) isWhole = shard.get() && isWhole;
  return isWhole;
}

}  // namespace epg
