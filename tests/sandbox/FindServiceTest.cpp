// SPDX-License-Identifier: Apache-2.0
#include "sandbox/find/FindService.h"
#include "tests/sandbox/SearchTown.h"

#include <QuorvelKit/JSON/JSON.h>

#include <gmock/gmock.h>

#include <sstream>
#include <string>

namespace quorvelkit::sandbox {
namespace {

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

TEST(FindServiceTest, MagicKeyFindsItsPlaceInsideTheExtentOnly) {
  const std::string here = "searchExtent=19,9,21,11&magicKey=";
  for (const auto& [more, count] : {std::pair(here + "place.n3", 1U),
                                    {here + "street.w1.150", 1U},
                                    {here + "place.n999", 0U},
                                    {"searchExtent=0,0,1,1&magicKey=place.n3", 0U}}) {
    const auto given = answer("findAddressCandidates?singleLine=x&location=20,10&" + more);
    EXPECT_EQ(JSON::parse(given.body)["candidates"].size(), count) << more;
  }
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
}  // namespace quorvelkit::sandbox
