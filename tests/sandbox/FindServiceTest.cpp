// SPDX-License-Identifier: Apache-2.0
#include "sandbox/find/FindService.h"
#include "sandbox/find/PlaceSearch.h"
#include "tests/sandbox/TestMaps.h"

#include <gmock/gmock.h>

#include <sstream>
#include <string>
#include <vector>

namespace quorvelkit::sandbox::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

struct PlaceSearchTest : testing::Test {
  const std::shared_ptr<const Gazetteer> gazetteer = std::make_shared<Gazetteer>(searchTown());
  const PlaceSearch town{gazetteer};
};

std::vector<std::string> labels(const std::vector<PlaceSearch::Result>& found) {
  std::vector<std::string> result;
  for (const auto& one : found)
    result.push_back(one.place.label());
  return result;
}

constexpr Coordinate westEnd{10, 20};

TEST_F(PlaceSearchTest, BestCandidateAndScoreByText) {
  const char* const cafe = "Caf\u00E9 M\u00FCller, 133 Harbor Street, Testville, Maryland, 21231";
  const char* const square = "Pla\u00E7a de l\u2019\u00C0ncora, Testville, Maryland";
  const char* const house = "100 Harbor Street, Testville, Maryland, 21231";
  const char* const between = "150 Harbor Street, Testville, Maryland, 21231";
  // The best place, its minimum and maximum score, and texts that find it.
  const std::tuple<const char*, double, double, std::vector<const char*>> cases[] = {
      {house, 100, 100, {"100 Harbor Street", "harbor st 100"}},
      {house,
       100,
       100,
       {"100 Harbor Street, Testville, MD 21231", "100 Harbor St, Testville, USA"}},
      // "Atlantis" is an unknown word.
      {house, 60, 80, {"100 Harbor Street Atlantis"}},
      {between, 90, 90, {"150 Harbor Street", "150 Harbor Street, Testville 21231"}},
      // The number is larger than the last number of the street: finds the street.
      {"Harbor Street, Testville, Maryland", 70, 80, {"9999 Harbor Street"}},
      {"Coast Motorway, Sankt Olaf, Maryland", 80, 90, {"12 Coast Motorway"}},
      {"Harbor Street, Sankt Olaf, Maryland", 100, 100, {"Harbor Street Sankt Olaf"}},
      {cafe, 100, 100, {"cafe muller"}},
      {cafe, 30, 50, {"Caf\u00E9", "cafe harbor"}},
      {square, 100, 100, {"Placa de l'Ancora"}},
      {square, 40, 60, {"ancora"}},
      {"Memorial Church, Testville, Maryland", 100, 100, {"Memorial Church"}},
      {"Testville, Maryland", 100, 100, {"Testville"}},
      {"First Bank, Testville, Maryland", 40, 50, {"bank"}},
      // A word of the category.
      {"Grace Memorial Church, Testville, Maryland", 45, 55, {"worship"}}};
  for (const auto& [best, leastScore, mostScore, texts] : cases) {
    for (const char* text : texts) {
      SCOPED_TRACE(text);
      const auto found = town.candidates(text, {westEnd, {}});
      ASSERT_FALSE(found.empty());
      EXPECT_EQ(found.front().place.label(), best);
      EXPECT_GE(found.front().score, leastScore);
      EXPECT_LE(found.front().score, mostScore);
    }
  }
  // Beginnings of words, and numbers beside unknown words, are no word in common.
  for (const char* text : {"Atlantis", "", "!?", "Maryland", "Wor", "Rue du Wor", "nan,133"})
    EXPECT_THAT(town.candidates(text, {westEnd, {}}), IsEmpty()) << text;
}

TEST_F(PlaceSearchTest, SortsByScoreThenDistance) {
  EXPECT_THAT(labels(town.candidates("Memorial Church", {{10.01, 20.004}, {}})),
              ElementsAre("Memorial Church, Testville, Maryland"))
      << "the nearer church has a much lower score";
  for (const double latitude : {10.0, 10.06}) {
    const auto banks = town.candidates("first bank", {{latitude, 20.004}, {}});
    ASSERT_THAT(banks, SizeIs(2));
    EXPECT_LT(banks[0].meters, banks[1].meters);
  }
}

TEST_F(PlaceSearchTest, ResultsAreInsideTheExtent) {
  const Extent north{{10.04, 19}, {11, 21}};
  const auto banks = town.candidates("first bank", {westEnd, north});
  ASSERT_THAT(banks, SizeIs(1));
  EXPECT_EQ(banks.front().place.position.latitude, 10.05);
  EXPECT_THAT(town.candidates("150 Harbor Street", {westEnd, north}), IsEmpty());
  EXPECT_THAT(town.suggestions("Harbor", {westEnd, north}), IsEmpty());
  const Extent acrossMeridian180{{-10, 170}, {10, -170}};
  EXPECT_TRUE(acrossMeridian180.contains({0, 179}));
  EXPECT_TRUE(acrossMeridian180.contains({0, -179}));
  EXPECT_FALSE(acrossMeridian180.contains({0, 0}));
}

TEST_F(PlaceSearchTest, SuggestionsMatchAnIncompleteText) {
  EXPECT_THAT(labels(town.suggestions("Harbor P", {westEnd, {}})),
              ElementsAre("Harbor Point, Testville, Maryland"));
  EXPECT_THAT(labels(town.suggestions("Harb", {westEnd, {}})),
              ElementsAre("Harbor Point, Testville, Maryland", "Harbor Street, Testville, Maryland",
                          "Harbor Street, Sankt Olaf, Maryland",
                          "100 Harbor Street, Testville, Maryland, 21231",
                          "133 Harbor Street, Testville, Maryland, 21231"));
  // Places with equal labels are one suggestion.
  EXPECT_THAT(labels(town.suggestions("First Bank", {westEnd, {}})), SizeIs(1));
  EXPECT_THAT(labels(town.suggestions("10", {westEnd, {}})),
              ElementsAre("100 Harbor Street, Testville, Maryland, 21231"));
  EXPECT_THAT(town.suggestions("10 ", {westEnd, {}}), IsEmpty()) << "a space completes the number";
  EXPECT_THAT(town.suggestions("Harbor Atlantis", {westEnd, {}}), IsEmpty());
}

TEST_F(PlaceSearchTest, KeysFindTheirPlaceAndWrongKeysNone) {
  for (const Place& place : gazetteer->places()) {
    const auto again = gazetteer->placeWithKey(place.key);
    ASSERT_TRUE(again) << place.key;
    EXPECT_EQ(again->label(), place.label());
    EXPECT_EQ(again->position, place.position);
  }
  for (const auto& found : town.suggestions("150 Harbor Street", {westEnd, {}}))
    EXPECT_EQ(gazetteer->placeWithKey(found.place.key)->label(), found.place.label());
  const std::string street = town.candidates("Harbor Street", {westEnd, {}}).front().place.key;
  for (const std::string& key :
       {std::string(), street + ".9999", street + ".", street + ".1x", street + ".100",
        street + ".-1", std::string("place.n3.5"), street + ".99999999999"}) {
    EXPECT_FALSE(gazetteer->placeWithKey(key)) << key;
  }
}

const FindService& townService() {
  static const auto& service = *new FindService(searchTown());
  return service;
}

// Sends a request such as "suggest?text=x&location=20,10". The status is 0 if the path belongs to
// another service.
HTTPAnswer answer(const std::string& target, const std::string& method = "GET",
                  const FindService& service = townService()) {
  std::istringstream parts("/api/v1/" + target);
  HTTPRequest request{method, "", {}, "", nullptr};
  std::getline(parts, request.path, '?');
  for (std::string name, value; std::getline(std::getline(parts, name, '='), value, '&');)
    request.parameters.emplace(name, value);
  return service.answer(request).value_or(HTTPAnswer{0, {}, {}});
}

TEST(FindServiceTest, WrongParametersAreRefusedWithAMessage) {
  // Target, status, part of the message.
  const std::tuple<const char*, int, const char*> cases[] = {
      {"findAddressCandidates?location=20,10", 400, "singleLine"},
      {"findAddressCandidates?singleLine=x", 400, "location"},
      {"findAddressCandidates?text=x&location=20,10", 400, "singleLine"},
      {"findAddressCandidates?singleLine=&location=20,10", 200, ""},
      {"findAddressCandidates?singleLine=x&location=2e1,1.0e+1", 200, ""},
      {"suggest?singleLine=x&location=20,10", 400, "text"},
      {"suggest?text=x&location=20,95", 400, "latitude"},
      {"suggest?text=x&location=20,10&searchExtent=1,2,3", 400, "west"},
      {"suggest?text=x&location=20,10&searchExtent=1,9,3,4", 400, "south"},
      {"suggest?text=x&location=20,10&searchExtent=9,2,3,4", 200, ""},
      {"reverseGeocode", 400, "location"},
      {"reverseGeocode?location=20,60", 404, "address"},
      {"reverseGeocode?location=20,10", 200, ""},
      {"elsewhere", 0, ""}};
  for (const auto& [target, status, about] : cases) {
    SCOPED_TRACE(target);
    const HTTPAnswer given = answer(target);
    EXPECT_EQ(given.status, status);
    const JSON body = JSON::parse(given.body);
    if (status >= 400) {
      EXPECT_EQ(body["code"].intValue(), status);
    }
    EXPECT_THAT(body["message"].stringValue(), testing::HasSubstr(about));
  }
  for (const std::string location :
       {"", "20", "20,10,5", "20,10,", "20;10", "nan,10", "20,inf", "20,1e999", "x,y"}) {
    const HTTPAnswer given = answer("suggest?location=" + location + "&text=x");
    EXPECT_EQ(given.status, 400) << location;
    EXPECT_THAT(given.body, testing::HasSubstr("location")) << location;
  }
  EXPECT_EQ(answer("suggest", "POST").status, 405);
}

// The names and types are those that the library's models read.
TEST(FindServiceTest, BodiesHaveAllTagsOfThePlace) {
  const auto document = [](const char* target) {
    return JSON::parse(answer(target + std::string("location=20.003,10.0002")).body);
  };
  const std::string about =
      R"("score":100,"origin":"OSM","provide":"OpenStreetMap","phone":"+1 555 0100",
         "categories":["cafe"],)";
  const std::string label =
      "\"Caf\u00E9 M\u00FCller, 133 Harbor Street, Testville, Maryland, 21231\"";
  EXPECT_EQ(document("findAddressCandidates?singleLine=cafe muller&"),
            JSON::parse(R"({"spatialReference":{"wkid":4326},"candidates":[{"Address":)" + label +
                        "," + about + R"("providerUrl":"https://mueller.example",
                            "location":{"x":20.003,"y":10.0002},"attributes":{"Match_addr":)" +
                        label + R"(,"Addr_type":"POI","magicKey":"place.n3"}}]})"));
  EXPECT_EQ(document("suggest?text=cafe muller&"),
            JSON::parse(R"({"suggestions":[{"text":)" + label + "," + about +
                        R"("url":"https://mueller.example","magicKey":"place.n3",
                            "isCollection":false}]})"));
  EXPECT_EQ(document("reverseGeocode?"),
            JSON::parse(R"({"address":{"Match_addr":"133 Harbor Street, Testville, Maryland, 21231",
              "Address":"133 Harbor Street","Neighborhood":"Harbor Point","City":"Testville",
              "Region":"Maryland","Postal":"21231","CountryCode":"USA","Loc_name":"PointAddress"},
              "location":{"x":20.003,"y":10.0002,"spatialReference":{"wkid":4326}}})"));
}

TEST(FindServiceTest, ReverseGeocodeReturnsTheNearestAddress) {
  // An empty label: there is no address within ten kilometers.
  const std::tuple<const char*, const char*, std::string> cases[] = {
      {"known house", "20.0001,9.9997", "100 Harbor Street, Testville, Maryland, 21231"},
      {"interpolated", "20.0045,9.9999", "150 Harbor Street, Testville, Maryland, 21231"},
      {"estimated", "20.105,10.0001", "67 Harbor Street, Sankt Olaf, Maryland"},
      {"motorway is nearer", "20.0500,9.9705", "200 Harbor Street, Testville, Maryland, 21231"},
      {"too far", "20,50", ""}};
  for (const auto& [name, location, label] : cases) {
    const HTTPAnswer given = answer("reverseGeocode?location=" + std::string(location));
    EXPECT_EQ(given.status, label.empty() ? 404 : 200) << name;
    const JSON address = JSON::parse(given.body)["address"];
    EXPECT_EQ(address["Match_addr"].stringValue(), label) << name;
    EXPECT_EQ(address["CountryCode"].stringValue(), label.empty() ? "" : "USA") << name;
  }
  const FindService empty(std::make_shared<MapData>());
  EXPECT_EQ(answer("reverseGeocode?location=20,10", "GET", empty).status, 404);
}

}  // namespace
}  // namespace quorvelkit::sandbox::test
