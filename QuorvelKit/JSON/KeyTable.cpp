// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/KeyTable_p.h>

#include <algorithm>
#include <cstring>

namespace quorvelkit::detail {

KeyTable::Entry* KeyTable::find(std::size_t start, bool unescaped, std::size_t place) {
  Run<char>& text = document_.text;
  const std::string_view key(text.data() + start, text.size() - start);
  if (entries_.size() * 2 >= slots_.size()) grow();
  std::size_t slot = static_cast<std::size_t>(secretHash(key)) & (slots_.size() - 1);
  for (; slots_[slot]; slot = (slot + 1) & (slots_.size() - 1)) {
    if (document_.keyText(slots_[slot]->number) != key) continue;
    text.shrinkTo(start);
    return slots_[slot];
  }
  MemoryBudget::take(sizeof(Entry));
  Entry entry = none_;
  entry.length = static_cast<std::uint32_t>(key.size());
  entry.number = static_cast<std::uint32_t>(entries_.size());
  entry.bit = std::uint64_t{1} << (entry.number % 64);
  entry.place = place;
  entry.label = Label::make(entry.number, KeyView(key).hash());
  document_.places.add(KeyView(key).hash(), place);
  entry.follower = entry.otherFollower = &none_;
  if (unescaped) {
    char front[sizeof entry.front] = {};
    char mask[sizeof entry.front] = {};
    const std::size_t length = std::min(key.size(), sizeof front);
    std::copy_n(key.data(), length, front);
    if (length < sizeof front) front[length] = '"';
    std::fill_n(mask, std::min(length + 1, sizeof mask), '\xFF');
    std::memcpy(&entry.front, front, sizeof front);
    std::memcpy(&entry.frontMask, mask, sizeof mask);
  }
  document_.keys.push({KeyView(key).front(), static_cast<std::uint32_t>(start), entry.length});
  return slots_[slot] = &entries_.emplace_back(entry);
}

bool KeyTable::isWhole(const Entry& key, const char* p, const char* end) const noexcept {
  const std::string_view text = document_.keyText(key.number);
  const std::string_view bytes(p, end);
  return bytes.size() > text.size() && bytes[text.size()] == '"' && bytes.starts_with(text);
}

void KeyTable::grow() {
  const std::size_t size = std::max<std::size_t>(64, slots_.size() * 2);
  MemoryBudget::take(size * sizeof(Entry*));
  slots_.assign(size, nullptr);
  for (Entry& entry : entries_) {
    std::size_t slot =
        static_cast<std::size_t>(secretHash(document_.keyText(entry.number))) & (slots_.size() - 1);
    while (slots_[slot])
      slot = (slot + 1) & (slots_.size() - 1);
    slots_[slot] = &entry;
  }
}

}  // namespace quorvelkit::detail
