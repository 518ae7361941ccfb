// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/find/Gazetteer.h"
#include "sandbox/find/NearestIndex.h"

#include <memory>
#include <optional>

namespace quorvelkit::sandbox {

/// Tells the address of a position. Immutable.
class ReverseGeocoder {
 public:
  explicit ReverseGeocoder(std::shared_ptr<const Gazetteer> gazetteer);

  /// The address next to a position: a house that the map knows if one is close by, otherwise the
  /// nearest street with an interpolated number, where there is one. Absent where nothing is
  /// within ten kilometers.
  std::optional<Place> addressAt(const Coordinate& position) const;

 private:
  std::shared_ptr<const Gazetteer> gazetteer_;
  NearestIndex addresses_;
  NearestIndex streets_;
};

}  // namespace quorvelkit::sandbox
