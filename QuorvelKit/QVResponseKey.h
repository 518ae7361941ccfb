// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/KeyView.h>
#include <QuorvelKit/QVRawValue.h>

#include <array>
#include <cstddef>
#include <utility>

namespace quorvelkit {

/// The JSON members that the library reads from answers. The raw value of a case is the name in the
/// wire format; some differ from the case (`provider`: "provide", `countyCode`: "CountryCode").
enum class QVResponseKey {
  quorvelNavigationRootURL,
  quorvelFindRootURL,
  code,
  message,
  objectId,
  userToken,
  totalDistanceInMiles,
  startNode,
  endNode,
  totalDurationInMinutes,
  points,
  notify,
  travelTimeInSeconds,
  distanceInMiles,
  longitude,
  turn,
  edge,
  node,
  latitude,
  say,
  direction,
  street,
  instruction,
  name,
  function,
  connection,
  highway,
  number,
  type,
  suggestions,
  origin,
  provider,
  score,
  reviewCount,
  providerUrl,
  menuUrl,
  phone,
  categories,
  text,
  magicKey,
  rating,
  isCollection,
  url,
  price,
  location,
  x,
  y,
  region,
  postal,
  matchAddress,
  locationName,
  address,
  countyCode,
  postalExtension,
  neighborhood,
  subregion,
  city,
  candidates,
  attributes,
  addressType,
};

template <>
inline constexpr auto rawValues<QVResponseKey> = std::to_array<RawValue<QVResponseKey>>({
    {QVResponseKey::quorvelNavigationRootURL, "quorvel-navigation-root-url"},
    {QVResponseKey::quorvelFindRootURL, "quorvel-find-root-url"},
    {QVResponseKey::code, "code"},
    {QVResponseKey::message, "message"},
    {QVResponseKey::objectId, "objectId"},
    {QVResponseKey::userToken, "user-token"},
    {QVResponseKey::totalDistanceInMiles, "distance"},
    {QVResponseKey::startNode, "startNode"},
    {QVResponseKey::endNode, "endNode"},
    {QVResponseKey::totalDurationInMinutes, "duration"},
    {QVResponseKey::points, "points"},
    {QVResponseKey::notify, "notify"},
    {QVResponseKey::travelTimeInSeconds, "t"},
    {QVResponseKey::distanceInMiles, "d"},
    {QVResponseKey::longitude, "lon"},
    {QVResponseKey::turn, "turn"},
    {QVResponseKey::edge, "edge"},
    {QVResponseKey::node, "node"},
    {QVResponseKey::latitude, "lat"},
    {QVResponseKey::say, "say"},
    {QVResponseKey::direction, "dir"},
    {QVResponseKey::street, "st"},
    {QVResponseKey::instruction, "instruct"},
    {QVResponseKey::name, "name"},
    {QVResponseKey::function, "func"},
    {QVResponseKey::connection, "connection"},
    {QVResponseKey::highway, "hwy"},
    {QVResponseKey::number, "number"},
    {QVResponseKey::type, "type"},
    {QVResponseKey::suggestions, "suggestions"},
    {QVResponseKey::origin, "origin"},
    {QVResponseKey::provider, "provide"},
    {QVResponseKey::score, "score"},
    {QVResponseKey::reviewCount, "reviewCount"},
    {QVResponseKey::providerUrl, "providerUrl"},
    {QVResponseKey::menuUrl, "menuUrl"},
    {QVResponseKey::phone, "phone"},
    {QVResponseKey::categories, "categories"},
    {QVResponseKey::text, "text"},
    {QVResponseKey::magicKey, "magicKey"},
    {QVResponseKey::rating, "rating"},
    {QVResponseKey::isCollection, "isCollection"},
    {QVResponseKey::url, "url"},
    {QVResponseKey::price, "price"},
    {QVResponseKey::location, "location"},
    {QVResponseKey::x, "x"},
    {QVResponseKey::y, "y"},
    {QVResponseKey::region, "Region"},
    {QVResponseKey::postal, "Postal"},
    {QVResponseKey::matchAddress, "Match_addr"},
    {QVResponseKey::locationName, "Loc_name"},
    {QVResponseKey::address, "Address"},
    {QVResponseKey::countyCode, "CountryCode"},
    {QVResponseKey::postalExtension, "PostalExt"},
    {QVResponseKey::neighborhood, "Neighborhood"},
    {QVResponseKey::subregion, "Subregion"},
    {QVResponseKey::city, "City"},
    {QVResponseKey::candidates, "candidates"},
    {QVResponseKey::attributes, "attributes"},
    {QVResponseKey::addressType, "Addr_type"},
});

namespace detail {
template <std::size_t... i>
constexpr auto makeResponseKeyViews(std::index_sequence<i...> /*positions*/) {
  return std::array{KeyView(rawValues<QVResponseKey>[i].text)...};
}
inline constexpr auto responseKeyViews =
    makeResponseKeyViews(std::make_index_sequence<rawValues<QVResponseKey>.size()>());
}  // namespace detail

/// Returns the name of a case with its hash, both computed at compile time. Converts a case where a
/// KeyView is expected, such as in subscripts of a JSON value and in getValue().
constexpr const KeyView& keyView(QVResponseKey key) {
  return detail::responseKeyViews[static_cast<std::size_t>(key)];
}

}  // namespace quorvelkit
