// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/KeyTable_p.h>

#include <algorithm>
#include <cstring>

namespace quorvelkit::detail {

KeyTable::Entry* KeyTable::intern(std::size_t start, bool unescaped, std::size_t position) {
  GrowingArray<char>& stringTable = document_.stringTable;
  const std::string_view text(stringTable.data() + start, stringTable.size() - start);
  if (entries_.size() * 2 >= slots_.size()) growSlots();
  std::size_t slot = firstSlot(text);
  for (; slots_[slot]; slot = (slot + 1) & (slots_.size() - 1)) {
    if (document_.keyText(slots_[slot]->number) != text) continue;
    stringTable.shrinkTo(start);
    return slots_[slot];
  }
  MemoryBudget::consume(sizeof(Entry));
  const KeyView key(text);
  Entry entry = unknown_;
  entry.length = static_cast<std::uint32_t>(text.size());
  entry.number = static_cast<std::uint32_t>(entries_.size());
  entry.bit = std::uint64_t{1} << (entry.number % 64);
  entry.position = position;
  entry.memberKey = MemberKey::make(entry.number, key.hash());
  document_.keyPositions.add(key.hash(), position);
  entry.next = entry.alternative = &unknown_;
  if (unescaped) {
    char front[sizeof entry.front] = {};
    char mask[sizeof entry.front] = {};
    const std::size_t length = std::min(text.size(), sizeof front);
    std::copy_n(text.data(), length, front);
    if (length < sizeof front) front[length] = '"';
    std::fill_n(mask, std::min(length + 1, sizeof mask), '\xFF');
    std::memcpy(&entry.front, front, sizeof front);
    std::memcpy(&entry.frontMask, mask, sizeof mask);
  }
  document_.keys.push({key.front(), static_cast<std::uint32_t>(start), entry.length});
  return slots_[slot] = &entries_.emplace_back(entry);
}

bool KeyTable::matchesLongKey(const Entry& key, const char* p, const char* end) const noexcept {
  const std::string_view text = document_.keyText(key.number);
  const std::string_view input(p, end);
  return input.size() > text.size() && input[text.size()] == '"' && input.starts_with(text);
}

std::size_t KeyTable::firstSlot(std::string_view text) const noexcept {
  return static_cast<std::size_t>(seededHash(text)) & (slots_.size() - 1);
}

void KeyTable::growSlots() {
  const std::size_t size = std::max<std::size_t>(64, slots_.size() * 2);
  MemoryBudget::consume(size * sizeof(void*));
  slots_.assign(size, nullptr);
  for (Entry& entry : entries_) {
    std::size_t slot = firstSlot(document_.keyText(entry.number));
    while (slots_[slot])
      slot = (slot + 1) & (slots_.size() - 1);
    slots_[slot] = &entry;
  }
}

}  // namespace quorvelkit::detail
