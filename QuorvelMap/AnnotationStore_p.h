// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <functional>
#include <unordered_set>
#include <utility>
#include <vector>

namespace quorvelkit {

/// Items in the order they were added, each once, with what belongs to each. Adding n items takes
/// time in proportion to n; removing takes time in proportion to all items.
template <class Item, class Looks, class Hash = std::hash<Item>>
class AnnotationStore {
 public:
  const std::vector<Item>& items() const { return items_; }
  const std::vector<Looks>& looks() const { return looks_; }
  bool contains(const Item& item) const { return known_.contains(item); }

  /// Returns false, and adds nothing, if the item is there already.
  bool add(Item item, Looks looks) {
    if (!known_.insert(item).second) return false;
    items_.push_back(std::move(item));
    looks_.push_back(std::move(looks));
    return true;
  }

  /// The list may be items().
  void remove(const std::vector<Item>& unwanted) {
    for (const Item& item : unwanted)
      known_.erase(item);
    std::size_t kept = 0;
    for (std::size_t i = 0; i < items_.size(); ++i) {
      if (!contains(items_[i])) continue;
      std::swap(items_[kept], items_[i]);
      std::swap(looks_[kept], looks_[i]);
      ++kept;
    }
    items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(kept), items_.end());
    looks_.erase(looks_.begin() + static_cast<std::ptrdiff_t>(kept), looks_.end());
  }

 private:
  std::vector<Item> items_;
  std::vector<Looks> looks_;
  std::unordered_set<Item, Hash> known_;
};

}  // namespace quorvelkit
