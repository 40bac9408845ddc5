#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <type_traits>

#include "plist/SharedRun.h"

namespace epg {

class SharedText;

/// For texts of any other kind, which are not made into shared ones to be compared.
template <class Text>
using IfOtherText = std::enable_if_t<
    std::is_convertible<const Text&, std::string_view>::value && !std::is_same<Text, SharedText>::value, bool>;

/// Text (or any bytes) that never changes after it is made and is shared between copies.
class SharedText {
 public:
  SharedText() noexcept = default;
  SharedText(std::string_view text) : characters_(text.begin(), text.end()) {}
  SharedText(const std::string& text) : SharedText(std::string_view(text)) {}
  SharedText(const char* text) : SharedText(std::string_view(text)) {}

  /// Lives as long as a copy of this text does.
  std::string_view view() const noexcept { return {characters_.data(), characters_.size()}; }
  operator std::string_view() const noexcept { return view(); }
  explicit operator std::string() const { return std::string(view()); }

  std::size_t size() const noexcept { return characters_.size(); }
  bool empty() const noexcept { return characters_.empty(); }
  /// Where its memory begins, null when empty; for `prefetch`.
  const void* block() const noexcept { return characters_.block(); }

  // Friends, so that they take part only where a shared text does: every text converts to one, and a comparison of two
  // others would be ambiguous.
  friend bool operator==(const SharedText& a, const SharedText& b) {
    return a.view().data() == b.view().data() || a.view() == b.view();
  }
  friend bool operator!=(const SharedText& a, const SharedText& b) { return !(a == b); }
  friend bool operator<(const SharedText& a, const SharedText& b) { return a.view() < b.view(); }
  template <class Text>
  friend IfOtherText<Text> operator==(const SharedText& a, const Text& b) {
    return a.view() == std::string_view(b);
  }
  template <class Text>
  friend IfOtherText<Text> operator==(const Text& a, const SharedText& b) {
    return b == a;
  }
  template <class Text>
  friend IfOtherText<Text> operator!=(const SharedText& a, const Text& b) {
    return !(a == b);
  }
  template <class Text>
  friend IfOtherText<Text> operator!=(const Text& a, const SharedText& b) {
    return !(b == a);
  }

 private:
  SharedRun<char> characters_;
};

inline std::ostream& operator<<(std::ostream& stream, const SharedText& text) { return stream << text.view(); }

/// Gives equal short texts one block, as far as it remembers them: keys, tags and IDs, which a file repeats for every
/// entry. One thread at a time.
class SharedTextPool {
 public:
  SharedText shared(std::string_view text);

 private:
  static constexpr std::size_t longest = 64;  // Longer texts are hardly ever the same.

  struct Remembered {
    std::size_t hash = 0;
    SharedText text;
  };

  // The last four of each group of hashes, the one that was asked for last in front: a tag that is used again and again
  // stays, however many IDs and titles come and go.
  // Not within the pool, which would be too much for the stack of a small thread.
  using Groups = std::array<std::array<Remembered, 4>, 1024>;
  std::unique_ptr<Groups> texts_ = std::make_unique<Groups>();
};

}  // namespace epg
