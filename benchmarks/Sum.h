// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace quorvelkit::bench {

/// The sum of everything that a benchmark reads. The benchmarks that are compared must get the same
/// sum, so none of them leaves out a field, and the compiler cannot remove a read.
struct Sum {
  double numbers = 0;
  std::uint64_t integers = 0;
  std::uint64_t texts = 0;

  void add(double value) noexcept { numbers += value; }
  void add(std::int64_t value) noexcept { integers += static_cast<std::uint64_t>(value); }
  void add(bool value) noexcept { integers += value ? 1 : 0; }
  void add(std::string_view text) noexcept {
    texts += text.size() * 256;
    if (!text.empty()) texts += static_cast<unsigned char>(text.back());
  }
  void add(const std::string& text) noexcept { add(std::string_view(text)); }
  void add(const std::vector<std::string>& list) noexcept {
    for (const std::string& text : list)
      add(text);
  }
  template <class E>
  requires std::is_enum_v<E>
  void add(E value) noexcept { integers += static_cast<std::uint64_t>(value); }
  template <class T>
  void add(const std::optional<T>& value) noexcept {
    if (value) add(*value);
  }

  /// Adds members of an object, or the results of its member functions. Inlined, because a call
  /// costs as much as some of the reads that the benchmarks measure.
  template <auto... fields, class Owner>
  [[gnu::always_inline]] void addFields(const Owner& owner) {
    (add(std::invoke(fields, owner)), ...);
  }

  friend bool operator==(const Sum&, const Sum&) = default;
};

}  // namespace quorvelkit::bench
