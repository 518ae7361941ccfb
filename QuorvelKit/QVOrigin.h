// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVRawValue.h>

namespace quorvelkit {

/// Who provided a candidate or a suggestion. `Quorvel` is the find server's own data, `unknown`
/// stands for every text that names no other case.
enum class QVOrigin { OSM, ArcGIS, Quorvel, Yelp, Foursquare, MapBox, unknown };

template <>
inline constexpr auto rawValues<QVOrigin> = std::to_array<RawValue<QVOrigin>>({
    {QVOrigin::OSM, "OSM"},
    {QVOrigin::ArcGIS, "ArcGIS"},
    {QVOrigin::Quorvel, "Quorvel"},
    {QVOrigin::Yelp, "Yelp"},
    {QVOrigin::Foursquare, "Foursquare"},
    {QVOrigin::MapBox, "MapBox"},
    {QVOrigin::unknown, ""},
});

}  // namespace quorvelkit
