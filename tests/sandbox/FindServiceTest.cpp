// SPDX-License-Identifier: Apache-2.0
#include "sandbox/find/FindService.h"
#include "tests/sandbox/SearchTown.h"

#include <QuorvelKit/JSON/JSON.h>

#include <gtest/gtest.h>

#include <string>

namespace quorvelkit::sandbox {
namespace {

const FindService& service() {
  static const auto& made = *new FindService(searchTown());
  return made;
}

HTTPAnswer answer(const std::string& resource, QueryParameters parameters) {
  HTTPRequest request;
  request.method = "GET";
  request.path = "/api/v1/" + resource;
  request.parameters = std::move(parameters);
  return service().answer(request).value_or(HTTPAnswer{0, {}, {}});
}

TEST(FindServiceTest, TellsWhatIsWrongWithARequest) {
  const char* const candidates = "findAddressCandidates";
  const struct {
    const char* resource;
    QueryParameters parameters;
    int status;
    const char* about;  // What the message names.
  } cases[] = {
      {candidates, {{"location", "20,10"}}, 400, "singleLine"},
      {candidates, {{"singleLine", "x"}}, 400, "location"},
      {candidates, {{"text", "x"}, {"location", "20,10"}}, 400, "singleLine"},
      {candidates, {{"singleLine", ""}, {"location", "20,10"}}, 200, ""},
      {candidates, {{"singleLine", "x"}, {"location", "2e1,1.0e+1"}}, 200, ""},
      {"suggest", {{"singleLine", "x"}, {"location", "20,10"}}, 400, "text"},
      {"suggest", {{"text", "x"}, {"location", "20,95"}}, 400, "latitude"},  // Latitude first?
      {"suggest", {{"text", "x"}, {"location", "20,10"}, {"searchExtent", "1,2,3"}}, 400, "west"},
      {"suggest",
       {{"text", "x"}, {"location", "20,10"}, {"searchExtent", "1,9,3,4"}},
       400,
       "south"},
      {"suggest", {{"text", "x"}, {"location", "20,10"}, {"searchExtent", "9,2,3,4"}}, 200, ""},
      {"reverseGeocode", {}, 400, "location"},
      {"reverseGeocode", {{"location", "20,60"}}, 404, "address"},
      {"reverseGeocode", {{"location", "20,10"}}, 200, ""},
      {"elsewhere", {}, 0, ""},
  };
  for (const auto& [resource, parameters, status, about] : cases) {
    std::string asked = resource;
    for (const auto& [name, value] : parameters)
      asked += ' ' + name + '=' + value;
    const HTTPAnswer given = answer(resource, parameters);
    EXPECT_EQ(given.status, status) << asked;
    const JSON body = JSON::parse(given.body);
    if (status >= 400) {
      EXPECT_EQ(body["code"].intValue(), status) << asked;
    }
    EXPECT_NE(body["message"].stringValue().find(about), std::string::npos) << asked;
  }
  for (const char* location :
       {"", "20", "20,10,5", "20,10,", "20;10", "nan,10", "20,inf", "20,1e999", "x,y"}) {
    const HTTPAnswer given = answer("suggest", {{"text", "x"}, {"location", location}});
    EXPECT_EQ(given.status, 400) << location;
    EXPECT_NE(given.body.find("location"), std::string::npos) << location;
  }
  HTTPRequest post;
  post.method = "POST";
  post.path = "/api/v1/suggest";
  EXPECT_EQ(service().answer(post)->status, 405);
}

TEST(FindServiceTest, KeepsAMagicKeyToItsPlaceAndExtent) {
  const auto count = [](const char* key, const char* extent) {
    const auto given = answer("findAddressCandidates", {{"singleLine", "anything"},
                                                        {"location", "20,10"},
                                                        {"searchExtent", extent},
                                                        {"magicKey", key}});
    return JSON::parse(given.body)["candidates"].size();
  };
  EXPECT_EQ(count("place.n3", "19,9,21,11"), 1U);
  EXPECT_EQ(count("place.n3", "0,0,1,1"), 0U);
  EXPECT_EQ(count("place.n999", "19,9,21,11"), 0U);
  EXPECT_EQ(count("street.w1.150", "19,9,21,11"), 1U);
}

// As the library's models read them.
TEST(FindServiceTest, TellsAllThatTheMapSays) {
  const auto document = [](const std::string& resource, QueryParameters parameters) {
    parameters.emplace("location", "20.003,10.0002");
    return JSON::parse(answer(resource, std::move(parameters)).body);
  };
  const std::string about =
      R"("score":100,"origin":"OSM","provide":"OpenStreetMap","phone":"+1 555 0100",
         "categories":["cafe"],)";
  const std::string label =
      "\"Caf\u00E9 M\u00FCller, 133 Harbor Street, Testville, Maryland, 21231\"";
  EXPECT_EQ(document("findAddressCandidates", {{"singleLine", "cafe muller"}}),
            JSON::parse(R"({"spatialReference":{"wkid":4326},"candidates":[{"Address":)" + label +
                        "," + about + R"("providerUrl":"https://mueller.example",
                            "location":{"x":20.003,"y":10.0002},"attributes":{"Match_addr":)" +
                        label + R"(,"Addr_type":"POI","magicKey":"place.n3"}}]})"));
  EXPECT_EQ(document("suggest", {{"text", "cafe muller"}}),
            JSON::parse(R"({"suggestions":[{"text":)" + label + "," + about +
                        R"("url":"https://mueller.example","magicKey":"place.n3",
                            "isCollection":false}]})"));
  EXPECT_EQ(document("reverseGeocode", {}),
            JSON::parse(R"({"address":{"Match_addr":"133 Harbor Street, Testville, Maryland, 21231",
              "Address":"133 Harbor Street","Neighborhood":"Harbor Point","City":"Testville",
              "Region":"Maryland","Postal":"21231","CountryCode":"USA","Loc_name":"PointAddress"},
              "location":{"x":20.003,"y":10.0002,"spatialReference":{"wkid":4326}}})"));
}

}  // namespace
}  // namespace quorvelkit::sandbox
