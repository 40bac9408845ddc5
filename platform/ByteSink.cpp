#include "platform/ByteSink.h"

namespace epg {

// Not by make_unique, which would fill the bytes first.
ByteSink::ByteSink() : piece_(new char[pieceSize]), next_(piece_.get()), end_(piece_.get() + pieceSize) {}

bool ByteSink::flush() {
  const std::string_view piece(piece_.get(), static_cast<std::size_t>(next_ - piece_.get()));
  next_ = piece_.get();
  if (!failed_ && !piece.empty()) failed_ = !take(piece);
  return !failed_;
}

void ByteSink::appendBeyondPiece(std::string_view bytes) {
  if (!flush()) return;
  if (bytes.size() < pieceSize) {
    append(bytes);
  } else {
    failed_ = !take(bytes);
  }
}

}  // namespace epg
