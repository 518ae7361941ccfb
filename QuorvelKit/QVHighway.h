// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseObject.h>
#include <QuorvelPlatform/Export.h>

#include <cstdint>
#include <optional>

namespace quorvelkit {

/// The road network of a numbered road.
enum class QVHighwayType {
  california,
  unitedStates,
  interstate,
  highway,
  countyRoad,
  stateRoad,
  unknown
};

template <>
inline constexpr auto rawValues<QVHighwayType> = std::to_array<RawValue<QVHighwayType>>({
    {QVHighwayType::california, "CA"},
    {QVHighwayType::unitedStates, "US"},
    {QVHighwayType::interstate, "I"},
    {QVHighwayType::highway, "Hwy"},
    {QVHighwayType::countyRoad, "CR"},
    {QVHighwayType::stateRoad, "SR"},
    {QVHighwayType::unknown, ""},
});

/// A numbered road, such as I 95. A property is absent if its member is missing or has another
/// type.
class QUORVELKIT_EXPORT QVHighway : public QVBaseObject {
 public:
  using QVBaseObject::QVBaseObject;

  /// The number of the road.
  std::optional<std::int64_t> number() const;
  /// The road network ("dir" in the wire format).
  QVHighwayType direction() const;
};

}  // namespace quorvelkit
