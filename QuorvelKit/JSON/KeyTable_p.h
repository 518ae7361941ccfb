// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/Document_p.h>

#include <cstdint>
#include <string_view>
#include <vector>

namespace quorvelkit::detail {

// The keys of a document under construction: each text once, with a number of its own.
class KeyTable {
 public:
  explicit KeyTable(Document& document) : document_(document) {}

  static constexpr std::uint32_t none = UINT32_MAX;

  // The number of the key that the bytes begin with, a quotation mark behind it, when it is one of
  // the two that followed the last key before: documents repeat themselves; otherwise none. The
  // bytes stand right behind a key's opening quotation mark.
  std::uint32_t guess(const char* p, const char* end) const noexcept {
    if (begins(next_.first, p, end)) return next_.first;
    return begins(next_.other, p, end) ? next_.other : none;
  }
  // The number of the key whose text ends the document's text since `start`; the text is taken
  // back when the key is known. An unescaped one stood in the bytes letter for letter.
  std::uint32_t number(std::size_t start, bool unescaped);
  // Tells which key came last.
  void follow(std::uint32_t key) noexcept {
    if (key != next_.first && last_ != none) {
      Followers& next = entries_[last_].next;
      (next.first == none ? next.first : next.other) = key;
    }
    last_ = key;
    next_ = entries_[key].next;
  }

  std::uint32_t hash(std::uint32_t key) const noexcept { return entries_[key].hash; }
  // Behind the closing quotation mark of a guessed key.
  std::size_t lengthWithMark(std::uint32_t key) const noexcept { return entries_[key].length + 1U; }

 private:
  // The keys that came behind another: the first one, and the last other one.
  struct Followers {
    std::uint32_t first = none;
    std::uint32_t other = none;
  };
  struct Entry {
    // The first bytes of the text and its closing quotation mark, and which bytes of a word they
    // fill. A text that was escaped has a front that no bytes match.
    std::uint64_t front;
    std::uint64_t frontMask;
    std::uint32_t length;
    std::uint32_t hash;
    Followers next;
  };

  bool begins(std::uint32_t key, const char* p, const char* end) const noexcept {
    std::uint64_t front = 0;
    if (key == none || end - p < static_cast<std::ptrdiff_t>(sizeof front)) return false;
    const Entry& entry = entries_[key];
    std::memcpy(&front, p, sizeof front);
    if ((front & entry.frontMask) != entry.front) return false;
    return entry.length < sizeof front || isWhole(key, p, end);
  }
  bool isWhole(std::uint32_t key, const char* p, const char* end) const noexcept;
  void grow();

  Document& document_;
  std::vector<Entry> entries_;
  std::vector<std::uint32_t> slots_;
  std::uint32_t last_ = none;
  Followers next_;  // What followed it before.
};

}  // namespace quorvelkit::detail
