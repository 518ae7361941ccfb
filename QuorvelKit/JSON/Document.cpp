// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/Document_p.h>

#include <algorithm>

namespace quorvelkit::detail {

const Node* Document::memberOfAnySize(const Node& map, const KeyView& key) const noexcept {
  const std::uint32_t size = map.count();
  const Node* const members = nodes.data() + map.first();
  const auto is = [&](const Node& node) {
    return node.hash() == key.hash() && isKey(node.key(), key);
  };
  if (size < indexedMembers) return memberOfSmall(map, key, is);
  const std::uint32_t* const begin = index(map);
  const std::uint32_t* const end = begin + size;
  const std::uint32_t* const found =
      std::lower_bound(begin, end, key, [&](std::uint32_t position, const KeyView& sought) {
        const Node& node = members[position];
        if (node.hash() != sought.hash()) return node.hash() < sought.hash();
        return keyText(node.key()) < sought.text();
      });
  return found != end && is(members[*found]) ? members + *found : nullptr;
}

}  // namespace quorvelkit::detail
