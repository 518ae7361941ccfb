// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/MapMembers_p.h>

#include <algorithm>
#include <numeric>
#include <vector>

namespace quorvelkit::detail {

void removeDuplicateKeys(GrowingArray<Node>& pending, std::size_t first, Document& document) {
  Node* const members = pending.data() + first;
  const auto count = static_cast<std::uint32_t>(pending.size() - first);
  const std::size_t temporaryMemory = count * sizeof(std::uint32_t) + count / 8;
  MemoryBudget::consume(temporaryMemory);
  std::vector<std::uint32_t> positions(count);
  std::iota(positions.begin(), positions.end(), 0U);
  const auto keyAt = [&](std::uint32_t i) { return members[positions[i]].key.number; };
  std::sort(positions.begin(), positions.end(), [&](std::uint32_t a, std::uint32_t b) {
    const std::uint32_t keyA = members[a].key.number, keyB = members[b].key.number;
    return keyA != keyB ? keyA < keyB : a < b;
  });
  std::vector<bool> removed(count, false);
  for (std::uint32_t i = 0; i < count;) {
    std::uint32_t last = i;
    while (last + 1 < count && keyAt(last + 1) == keyAt(i))
      ++last;
    members[positions[i]] = members[positions[last]];
    for (std::uint32_t j = i + 1; j <= last; ++j)
      removed[positions[j]] = true;
    i = last + 1;
  }
  std::uint32_t kept = 0;
  for (std::uint32_t i = 0; i < count; ++i) {
    if (removed[i]) continue;
    document.keyPositions.add(members[i].key.hash(), kept);
    members[kept++] = members[i];
  }
  pending.shrinkTo(first + kept);
  MemoryBudget::release(temporaryMemory);
}

void appendIndex(Document& document, std::uint32_t first, std::uint32_t count) {
  GrowingArray<std::uint32_t>& indexes = document.indexes;
  const std::size_t start = indexes.size();
  indexes.reserveMore(count);
  for (std::uint32_t i = 0; i < count; ++i)
    indexes.push(i);
  const Node* const members = document.nodes.data() + first;
  std::uint32_t* const index = indexes.data() + start;
  std::sort(index, index + count, [&](std::uint32_t a, std::uint32_t b) {
    const MemberKey& keyA = members[a].key;
    const MemberKey& keyB = members[b].key;
    if (keyA.hash() != keyB.hash()) return keyA.hash() < keyB.hash();
    return document.keyText(keyA.number) < document.keyText(keyB.number);
  });
  document.nodes.push({Node::range(start, count), {}});
}

}  // namespace quorvelkit::detail
