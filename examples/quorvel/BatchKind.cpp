// SPDX-License-Identifier: Apache-2.0
#include "BatchKind.h"

#include "Arguments.h"
#include "ArrivalTime.h"
#include "Directions.h"
#include "FindAnswer.h"

#include <QuorvelKit/QVFind.h>
#include <QuorvelKit/QVNavigation.h>

#include <algorithm>

using namespace quorvelkit;

namespace {

using Prepared = std::variant<BatchStart, std::string>;
using Found = QVAddressCandidatesResponse;
using Reverse = QVReverseGeocodeResponse;

template <class Request, class Response>
BatchStart startWith(std::shared_ptr<URLSessionDataTask> (*facade)(std::shared_ptr<Request>,
                                                                   QVCompletionHandler<Response>),
                     std::shared_ptr<Request> request) {
  return
      [facade, request = std::move(request)](const QVCallOptions& options, BatchHandler handler) {
        QVCall(facade, request, options).onResult([moved = std::move(handler)](const auto& result) {
          moved(result.response(), result.notSent());
        });
      };
}

/// Returns the first fault of the values with their names and checks. Absent values are not
/// checked.
struct CheckedValue {
  const char* name;
  std::string (*check)(const std::string& text);
};
std::string faultOf(const BatchRecord& record, std::initializer_list<CheckedValue> values) {
  for (const auto& [name, check] : values) {
    const std::string text = record.field(name);
    const std::string fault = text.empty() ? "" : check(text);
    if (!fault.empty()) return std::string(name) + ": " + fault;
  }
  return {};
}

Prepared prepareRoute(const BatchRecord& record) {
  const std::string fault =
      faultOf(record, {{"from", checkCoordinate}, {"to", checkCoordinate}, {"arrive", checkTime}});
  if (!fault.empty()) return fault;
  const auto request = std::make_shared<QVRouteRequest>(*parseCoordinate(record.field("from")),
                                                        *parseCoordinate(record.field("to")));
  if (const std::string arrive = record.field("arrive"); !arrive.empty()) {
    request->setTime(std::get<ArrivalTime>(parseArrivalTime(arrive)));
    request->setRequestType(QVRouteRequestType::ArrivalTime);
  }
  return startWith(&QVNavigation::route, request);
}

Prepared prepareCandidates(const BatchRecord& record) {
  const std::string fault = faultOf(record, {{"text", checkSearchText},
                                             {"near", checkCoordinate},
                                             {"extent", checkExtent},
                                             {"key", checkSearchText}});
  if (!fault.empty()) return fault;
  const auto request = std::make_shared<QVAddressCandidatesRequest>(
      encodeQueryValue(record.field("text")), *parseCoordinate(record.field("near")));
  if (const auto extent = record.field("extent"); !extent.empty())
    request->setSearchExtent(parseExtent(extent));
  if (const auto key = record.field("key"); !key.empty())
    request->setMagicKey(encodeQueryValue(key));
  return startWith(&QVFind::addressCandidates, request);
}

Prepared prepareSuggest(const BatchRecord& record) {
  const std::string fault = faultOf(record, {{"text", checkSearchText}, {"near", checkCoordinate}});
  if (!fault.empty()) return fault;
  return startWith(&QVFind::suggest,
                   std::make_shared<QVSuggestRequest>(encodeQueryValue(record.field("text")),
                                                      *parseCoordinate(record.field("near"))));
}

Prepared prepareReverse(const BatchRecord& record) {
  const std::string fault = faultOf(record, {{"position", checkCoordinate}});
  if (!fault.empty()) return fault;
  return startWith(&QVFind::reverseGeocode, std::make_shared<QVReverseGeocodeRequest>(
                                                *parseCoordinate(record.field("position"))));
}

template <class Response>
const Response& as(const QVBaseResponse& response) {
  return dynamic_cast<const Response&>(response);
}

/// Returns a value of the best candidate, or null.
template <class Read>
Value ofBest(const QVBaseResponse& response, Read read) {
  const auto& candidates = as<Found>(response).candidates();
  return candidates.empty() ? Value() : Value(read(candidates.front()));
}
template <class Read>
Value ofSuggestion(const QVBaseResponse& response, Read read) {
  const auto& suggestions = as<QVSuggestResponse>(response).suggestions();
  return suggestions.empty() ? Value() : Value(read(suggestions.front()));
}
template <class Read>
Value ofAddress(const QVBaseResponse& response, Read read) {
  const auto& address = as<Reverse>(response).address();
  return address ? Value(read(*address)) : Value();
}

const QVRoute& routeOf(const QVBaseResponse& response) {
  return *as<QVRouteResponse>(response).route();
}

std::optional<Coordinate> bestPosition(const QVBaseResponse& response) {
  const auto& candidates = as<Found>(response).candidates();
  return candidates.empty() ? std::nullopt : positionOf(candidates.front());
}
std::optional<double> latitude(const std::optional<Coordinate>& position) {
  return position ? std::optional(position->latitude) : std::nullopt;
}
std::optional<double> longitude(const std::optional<Coordinate>& position) {
  return position ? std::optional(position->longitude) : std::nullopt;
}
JSON pointGeometry(const std::optional<Coordinate>& position) {
  if (!position) return {};
  return JSON::makeDictionary(
      {{"type", "Point"},
       {"coordinates", JSON::makeArray({position->longitude, position->latitude})}});
}

BatchKind routeKind() {
  return {"route",
          navigationServer,
          {"from", "to", "arrive"},
          {"from", "to"},
          &prepareRoute,
          {{"miles",
            [](const auto& r) -> Value { return plausible(routeOf(r).totalDistanceInMiles()); }},
           {"minutes",
            [](const auto& r) -> Value { return plausible(routeOf(r).totalDurationInMinutes()); }},
           {"directions",
            [](const auto& r) -> Value {
              const auto& points = routeOf(r).points();
              return std::int64_t{
                  std::count_if(points.begin(), points.end(),
                                [](const auto& point) { return point.turn() != nullptr; })};
            }}},
          [](const auto& r) { return routeGeometry(routeOf(r)); }};
}

BatchKind candidatesKind() {
  return {
      "candidates",
      findServer,
      {"text", "near", "extent", "key"},
      {"text", "near"},
      &prepareCandidates,
      {{"score", [](const auto& r) { return ofBest(r, scoreOf); }},
       {"lat", [](const auto& r) -> Value { return latitude(bestPosition(r)); }},
       {"lon", [](const auto& r) -> Value { return longitude(bestPosition(r)); }},
       {"address", [](const auto& r) { return ofBest(r, std::mem_fn(&QVCandidate::address)); }}},
      [](const auto& r) { return pointGeometry(bestPosition(r)); }};
}

BatchKind suggestKind() {
  return {"suggest",
          findServer,
          {"text", "near"},
          {"text", "near"},
          &prepareSuggest,
          {{"suggestion",
            [](const auto& r) { return ofSuggestion(r, std::mem_fn(&QVSuggestion::text)); }},
           {"key",
            [](const auto& r) { return ofSuggestion(r, std::mem_fn(&QVSuggestion::magicKey)); }}},
          [](const auto&) { return JSON(); }};
}

BatchKind reverseKind() {
  return {"reverse",
          findServer,
          {"position"},
          {"position"},
          &prepareReverse,
          {{"lat", [](const auto& r) -> Value { return latitude(positionOf(as<Reverse>(r))); }},
           {"lon", [](const auto& r) -> Value { return longitude(positionOf(as<Reverse>(r))); }},
           {"address",
            [](const auto& r) { return ofAddress(r, std::mem_fn(&QVAddress::matchAddress)); }},
           {"street", [](const auto& r) { return ofAddress(r, std::mem_fn(&QVAddress::address)); }},
           {"neighborhood",
            [](const auto& r) { return ofAddress(r, std::mem_fn(&QVAddress::neighborhood)); }},
           {"city", [](const auto& r) { return ofAddress(r, std::mem_fn(&QVAddress::city)); }},
           {"region", [](const auto& r) { return ofAddress(r, std::mem_fn(&QVAddress::region)); }},
           {"postal", [](const auto& r) { return ofAddress(r, std::mem_fn(&QVAddress::postal)); }},
           {"country",
            [](const auto& r) { return ofAddress(r, std::mem_fn(&QVAddress::countyCode)); }}},
          [](const auto& r) { return pointGeometry(positionOf(as<Reverse>(r))); }};
}

}  // namespace

const std::vector<BatchKind>& batchKinds() {
  static const std::vector<BatchKind> kinds{routeKind(), candidatesKind(), suggestKind(),
                                            reverseKind()};
  return kinds;
}
