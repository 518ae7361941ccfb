// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVHighway.h>
#include <QuorvelKit/QVOrigin.h>
#include <QuorvelKit/QVStreet.h>
#include <QuorvelKit/QVTurn.h>
#include <QuorvelPlatform/Coordinate.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace quorvelkit::bench {

/// Returns the case of a raw value, or `unknown`, as the models do.
template <class E>
E enumValue(std::string_view text) {
  return fromRawValue<E>(text).value_or(E::unknown);
}

/// The models as plain structs, like code that uses a JSON parser without this library.
struct PlainHighway {
  std::int64_t number = 0;
  QVHighwayType direction = QVHighwayType::unknown;
};
struct PlainStreet {
  std::string name;
  QVStreetFunction function = QVStreetFunction::unknown;
  QVStreetConnection connection = QVStreetConnection::unknown;
  QVStreetDirection direction = QVStreetDirection::unknown;
  std::unique_ptr<PlainHighway> highway;
};
struct PlainTurn {
  QVTurnDirection direction = QVTurnDirection::unknown;
  std::string instruction;
  std::unique_ptr<PlainStreet> street;
};
struct PlainPoint {
  double latitude = 0;
  double longitude = 0;
  double travelTimeInSeconds = 0;
  double distanceInMiles = 0;
  std::int64_t edge = 0;
  std::int64_t node = 0;
  std::unique_ptr<PlainTurn> turn;
  std::string notify;
  std::vector<std::string> say;
};
struct PlainRoute {
  double totalDistanceInMiles = 0;
  double totalDurationInMinutes = 0;
  std::int64_t startNode = 0;
  std::int64_t endNode = 0;
  std::vector<PlainPoint> points;
};

/// The fields that candidates and suggestions have in common.
struct PlainResult {
  double rating = 0;
  double score = 0;
  std::int64_t reviewCount = 0;
  QVOrigin origin = QVOrigin::unknown;
  std::string provider, providerUrl, phone;
  std::vector<std::string> categories;
};
struct PlainCandidate : PlainResult {
  Coordinate location;
  std::string address, matchAddress, placeAddress, addressType;
};
struct PlainSuggestion : PlainResult {
  std::int64_t price = 0;
  bool isCollection = false;
  std::string text, magicKey, menuUrl, url;
};

}  // namespace quorvelkit::bench
