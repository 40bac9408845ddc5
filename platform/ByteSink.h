#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace epg {

/// Takes the bytes of a document as they are made and hands them on in large pieces, so that a document of any size
/// needs no more memory than one piece. One thread at a time.
class ByteSink {
 public:
  /// How long a piece is, save the last one and those that are appended longer. Each write to a file costs time of its
  /// own; twice and four times this size were measured to gain nothing more.
  static constexpr std::size_t pieceSize = std::size_t{1} << 20;

  ByteSink(const ByteSink&) = delete;
  ByteSink& operator=(const ByteSink&) = delete;
  virtual ~ByteSink() = default;

  void append(std::string_view bytes) {
    if (bytes.size() > static_cast<std::size_t>(end_ - next_)) {
      appendBeyondPiece(bytes);
      return;
    }
    next_ += bytes.copy(next_, bytes.size());
  }

  /// Hands on what has been appended so far. False when that failed, or has failed before.
  bool flush();

  /// Whether a piece could not be handed on. From then on whatever is appended is dropped, and a document need not be
  /// made any further.
  bool failed() const { return failed_; }

 protected:
  ByteSink();

  /// Takes the next piece; false when it cannot, and is not asked again then.
  virtual bool take(std::string_view piece) = 0;

 private:
  void appendBeyondPiece(std::string_view bytes);

  std::unique_ptr<char[]> piece_;
  char* next_;
  char* end_;
  bool failed_ = false;
};

/// Appends to a text, which has everything after a `flush`.
class StringSink : public ByteSink {
 public:
  explicit StringSink(std::string& text) : text_(text) {}

 protected:
  bool take(std::string_view piece) override {
    text_.append(piece);
    return true;
  }

 private:
  std::string& text_;
};

}  // namespace epg
