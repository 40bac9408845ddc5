#pragma once

#include <atomic>
#include <cstddef>
#include <iterator>
#include <limits>
#include <new>
#include <type_traits>
#include <utility>

namespace epg {

/// Elements in one block of memory, shared between copies and never changed after they are made.
///
/// Copying costs one count, whatever the run holds. Copies may be made, read and dropped on different threads at once.
/// A run takes its elements and two words; an empty one takes nothing.
template <class Element>
class SharedRun {
 public:
  SharedRun() noexcept = default;

  /// Makes each element out of what stands in the range, which a move iterator moves from.
  template <class ForwardIterator>
  SharedRun(ForwardIterator first, ForwardIterator last) {
    make(static_cast<std::size_t>(std::distance(first, last)), [&](Element* place, std::size_t /*index*/) {
      new (place) Element(*first);
      ++first;
    });
  }

  /// A copy with the element in the place of the `replaced` ones (none or one) that stand from `at` on.
  SharedRun with(Element element, std::size_t at, std::size_t replaced) const {
    SharedRun changed;
    changed.make(size() + 1 - replaced, [&](Element* place, std::size_t index) {
      if (index == at) {
        new (place) Element(std::move(element));
      } else {
        new (place) Element((*this)[index < at ? index : index - 1 + replaced]);
      }
    });
    return changed;
  }

  SharedRun(const SharedRun& other) noexcept : header_(other.header_) {
    if (header_) header_->holders.fetch_add(1, std::memory_order_relaxed);
  }
  SharedRun(SharedRun&& other) noexcept : header_(std::exchange(other.header_, nullptr)) {}
  SharedRun& operator=(SharedRun other) noexcept {
    swap(other);
    return *this;
  }
  ~SharedRun() {
    // What other holders did with the elements has to be over before they go.
    if (header_ && header_->holders.fetch_sub(1, std::memory_order_acq_rel) == 1) destroy(header_, header_->count);
  }

  void swap(SharedRun& other) noexcept { std::swap(header_, other.header_); }

  std::size_t size() const noexcept { return header_ ? header_->count : 0; }
  bool empty() const noexcept { return !header_; }
  /// Equal for copies of one run, and for all empty ones.
  const Element* data() const noexcept { return header_ ? elementsOf(header_) : nullptr; }
  const Element* begin() const noexcept { return data(); }
  const Element* end() const noexcept { return header_ ? elementsOf(header_) + header_->count : nullptr; }
  /// Where its memory begins, null when empty; for `prefetch`.
  const void* block() const noexcept { return header_; }
  const Element& operator[](std::size_t index) const noexcept { return data()[index]; }

 private:
  struct Header {
    explicit Header(std::size_t elements) : holders(1), count(elements) {}
    std::atomic<std::size_t> holders;
    std::size_t count;
  };

  // Functions, so that a type may hold runs of itself: it is complete when they are called.
  static constexpr std::size_t offset() noexcept {
    static_assert(alignof(Element) <= alignof(std::max_align_t), "what operator new gives must be enough");
    return (sizeof(Header) + alignof(Element) - 1) / alignof(Element) * alignof(Element);
  }

  static Element* elementsOf(Header* header) noexcept {
    return reinterpret_cast<Element*>(reinterpret_cast<char*>(header) + offset());
  }

  /// Needs an empty run. `makeAt` makes the element of an index at its place.
  template <class MakeAt>
  void make(std::size_t count, const MakeAt& makeAt) {
    if (count == 0) return;
    if (count > (std::numeric_limits<std::size_t>::max() - offset()) / sizeof(Element)) throw std::bad_alloc();
    void* const memory = ::operator new(offset() + count * sizeof(Element));
    auto* const header = new (memory) Header(count);
    Element* const elements = elementsOf(header);
    std::size_t made = 0;
    try {
      for (; made < count; ++made) makeAt(elements + made, made);
    } catch (...) {
      destroy(header, made);
      throw;
    }
    header_ = header;
  }

  static void destroy(Header* header, std::size_t made) noexcept {
    if (!std::is_trivially_destructible<Element>::value) {
      Element* const elements = elementsOf(header);
      for (std::size_t i = made; i > 0; --i) elements[i - 1].~Element();
    }
    header->~Header();
    ::operator delete(header);
  }

  Header* header_ = nullptr;
};

}  // namespace epg
