// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quorvelkit::sandbox {

/// The OSM tags of one map feature ("highway" = "residential"), in the order of the file.
class Tags {
 public:
  using Pair = std::pair<std::string, std::string>;

  Tags() = default;
  explicit Tags(std::vector<Pair> pairs) : pairs_(std::move(pairs)) {}

  /// Returns the value of a key, empty if the key is missing (OSM has no empty values). Valid as
  /// long as this object.
  std::string_view operator[](std::string_view key) const {
    for (const auto& [name, value] : pairs_) {
      if (name == key) return value;
    }
    return {};
  }
  bool has(std::string_view key) const { return !(*this)[key].empty(); }
  bool is(std::string_view key, std::string_view value) const { return (*this)[key] == value; }

  const std::vector<Pair>& pairs() const { return pairs_; }
  bool empty() const { return pairs_.empty(); }

 private:
  std::vector<Pair> pairs_;
};

}  // namespace quorvelkit::sandbox
