// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QuorvelKitAll.h>

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <type_traits>

namespace quorvelkit {
namespace {

// Returns the JSON texts that a property of type T accepts, with their values.
template <class T>
std::map<std::string, T> acceptedValues(const T& /*type*/) {
  if constexpr (std::is_same_v<T, std::string>) {
    return {{R"("a text")", "a text"}, {R"("")", ""}, {R"("3")", "3"}, {R"("true")", "true"}};
  } else if constexpr (std::is_same_v<T, double>) {
    return {{"3", 3}, {"3.0", 3}, {"3.5", 3.5}, {"1e300", 1e300}, {"9223372036854775808", 0x1p63}};
  } else if constexpr (std::is_same_v<T, std::int64_t>) {
    return {{"3", 3}, {"3.0", 3}};
  } else if constexpr (std::is_same_v<T, bool>) {
    return {{"true", true}, {"false", false}};
  } else if constexpr (std::is_same_v<T, std::vector<std::string>>) {
    return {{R"(["a","b"])", {"a", "b"}}, {"[]", {}}};
  } else if constexpr (std::is_same_v<T, ValueMap>) {
    return {{"{}", {}}, {R"({"a":1})", {{"a", 1}}}};
  } else {
    std::map<std::string, T> cases;
    for (const auto& [value, text] : rawValues<T>)
      cases['"' + std::string(text) + '"'] = value;
    return cases;
  }
}
template <class T>
std::map<std::string, T> acceptedValues(const std::optional<T>& /*type*/) {
  return acceptedValues(T());
}

// The value of a property whose member is missing or has another type.
template <class T>
const T absentValue = T();
template <RawRepresentable E>
const E absentValue<E> = E::unknown;

// Makes a model or a response from a document.
template <class Model>
std::shared_ptr<Model> makeModel(const std::string& document) {
  if constexpr (std::is_base_of_v<QVBaseResponse, Model>) {
    return makeResponse<Model>(Data(document), std::make_shared<QVBaseRequest>());
  } else {
    return std::make_shared<Model>(JSON::parse(document));
  }
}

// Checks a property with its member missing, null and of each JSON type. `before` and `after` are
// the text of the document around the object with the member.
template <class Model, class T>
void expectProperty(const std::string& key, T (Model::*property)() const,
                    const std::string& before = "", const std::string& after = "") {
  SCOPED_TRACE(__PRETTY_FUNCTION__ + (' ' + key));
  std::map<std::string, T> values;
  for (const auto& [sample, value] : acceptedValues(absentValue<T>))
    values.emplace(sample, value);
  const auto readFrom = [&](const std::string& document) {
    return (*makeModel<Model>(before + document + after).*property)();
  };
  EXPECT_EQ(readFrom(R"({"other":1})"), absentValue<T>);
  EXPECT_EQ(readFrom("[1]"), absentValue<T>);
  for (const char* sample :
       {"null", "true", "false", "3", "3.0", "3.5", "1e300", "9223372036854775808", "[]",
        R"(["a","b"])", R"(["a",1])", "{}", R"({"a":1})", R"("a text")", R"("")", R"("3")"})
    values.try_emplace(sample, absentValue<T>);
  for (const auto& [sample, value] : values)
    EXPECT_EQ(readFrom("{\"" + key + "\":" + sample + '}'), value) << sample;
}

TEST(ModelsTest, PropertiesOfPlacesAcceptOneType) {
  expectProperty("Address", &QVCandidate::address);
  expectProperty("score", &QVCandidate::score);
  expectProperty("attributes", &QVCandidate::attributes);
  expectProperty("origin", &QVCandidate::origin);
  expectProperty("provide", &QVCandidate::provider);
  expectProperty("rating", &QVCandidate::rating);
  expectProperty("reviewCount", &QVCandidate::reviewCount);
  expectProperty("providerUrl", &QVCandidate::providerUrl);
  expectProperty("phone", &QVCandidate::phone);
  expectProperty("categories", &QVCandidate::categories);
  const std::string attributes = R"({"Address":"1","attributes":)";
  expectProperty("Match_addr", &QVCandidate::matchAddress, attributes, "}");
  expectProperty("magicKey", &QVCandidate::placeAddress, attributes, "}");
  expectProperty("Addr_type", &QVCandidate::addressType, attributes, "}");

  expectProperty("text", &QVSuggestion::text);
  expectProperty("magicKey", &QVSuggestion::magicKey);
  expectProperty("isCollection", &QVSuggestion::isCollection);
  expectProperty("origin", &QVSuggestion::origin);
  expectProperty("provide", &QVSuggestion::provider);
  expectProperty("score", &QVSuggestion::score);
  expectProperty("rating", &QVSuggestion::rating);
  expectProperty("reviewCount", &QVSuggestion::reviewCount);
  expectProperty("price", &QVSuggestion::price);
  expectProperty("providerUrl", &QVSuggestion::providerUrl);
  expectProperty("menuUrl", &QVSuggestion::menuUrl);
  expectProperty("url", &QVSuggestion::url);
  expectProperty("phone", &QVSuggestion::phone);
  expectProperty("categories", &QVSuggestion::categories);

  expectProperty("Region", &QVAddress::region);
  expectProperty("Postal", &QVAddress::postal);
  expectProperty("Match_addr", &QVAddress::matchAddress);
  expectProperty("Loc_name", &QVAddress::locationName);
  expectProperty("Address", &QVAddress::address);
  expectProperty("CountryCode", &QVAddress::countyCode);
  expectProperty("PostalExt", &QVAddress::postalExtension);
  expectProperty("Neighborhood", &QVAddress::neighborhood);
  expectProperty("Subregion", &QVAddress::subregion);
  expectProperty("City", &QVAddress::city);
  EXPECT_EQ(QVAddress(std::nullopt).city(), std::nullopt);
}

TEST(QVCandidateTest, MissingCoordinatesAreZero) {
  const std::pair<const char*, Coordinate> cases[] = {
      {R"({"location":{"x":-118.2,"y":34.1}})", {34.1, -118.2}},
      {R"({"location":{"x":-118.2}})", {0, -118.2}},
      {R"({"location":[1,2]})", {}},
      {"null", {}}};
  for (const auto& [json, location] : cases)
    EXPECT_EQ(QVCandidate(JSON::parse(json)).location(), location) << json;
  QVCandidate none(std::nullopt);
  EXPECT_EQ(none.location(), std::nullopt);
  EXPECT_TRUE(none.categories().empty());
  none.setLocation(Coordinate{1, 2});
  EXPECT_EQ(none.location(), (Coordinate{1, 2}));
}

TEST(ModelsTest, PropertiesOfTheLoginAndOfRoutesAcceptOneType) {
  expectProperty("code", &QVLoginResponse::code);
  expectProperty("message", &QVLoginResponse::message);
  expectProperty("objectId", &QVLoginResponse::objectId);
  expectProperty("user-token", &QVLoginResponse::userToken);

  expectProperty("quorvel-navigation-root-url", &QVConfigurationResponse::quorvelNavigationRootURL);
  expectProperty("quorvel-find-root-url", &QVConfigurationResponse::quorvelFindRootURL);

  expectProperty("distance", &QVRoute::totalDistanceInMiles);
  expectProperty("duration", &QVRoute::totalDurationInMinutes);
  expectProperty("startNode", &QVRoute::startNode);
  expectProperty("endNode", &QVRoute::endNode);
  expectProperty("notify", &QVPoint::notify);
  expectProperty("t", &QVPoint::travelTimeInSeconds);
  expectProperty("d", &QVPoint::distanceInMiles);
  expectProperty("lat", &QVPoint::latitude);
  expectProperty("lon", &QVPoint::longitude);
  expectProperty("say", &QVPoint::say);
  expectProperty("edge", &QVPoint::edge);
  expectProperty("node", &QVPoint::node);
  expectProperty("dir", &QVTurn::direction);
  expectProperty("instruct", &QVTurn::instruction);
  expectProperty("name", &QVStreet::name);
  expectProperty("dir", &QVStreet::function);
  expectProperty("dir", &QVStreet::connection);
  expectProperty("dir", &QVStreet::direction);
  expectProperty("number", &QVHighway::number);
  expectProperty("dir", &QVHighway::direction);
  EXPECT_EQ(QVHighway(std::nullopt).number(), std::nullopt);
  EXPECT_EQ(QVHighway(std::nullopt).direction(), QVHighwayType::unknown);
}

TEST(QVRouteTest, ChildIsNullIfItsMemberIsMissingOrNull) {
  const std::pair<std::string, bool> cases[] = {{"", false}, {"null", false},  {"{}", true},
                                                {"5", true}, {R"("x")", true}, {"[]", true}};
  for (const auto& [member, present] : cases) {
    const auto document = [member = member](const std::string& key) {
      return JSON::parse(member.empty() ? "{}" : "{\"" + key + "\":" + member + "}");
    };
    EXPECT_EQ(QVPoint(document("turn")).turn() != nullptr, present) << member;
    EXPECT_EQ(QVTurn(document("st")).street() != nullptr, present) << member;
    EXPECT_EQ(QVStreet(document("hwy")).highway() != nullptr, present) << member;
  }
}

TEST(QVRouteTest, PointsKeepTheirOrderWhateverTheirType) {
  const QVRoute route(JSON::parse(
      R"({"points":[{"node":1},{"node":1},null,"x",{"lat":34.1,"turn":
          {"st":{"name":"Fleet Street","hwy":{"number":1}}}},{"lat":1,"lon":2}]})"));
  ASSERT_EQ(route.points().size(), 6U);
  EXPECT_EQ(route.points()[1].node(), 1);
  EXPECT_EQ(route.points()[2].node(), std::nullopt);
  EXPECT_EQ(route.points()[4].location(), Coordinate());
  EXPECT_EQ(route.points()[4].turn()->street()->name(), "Fleet Street");
  EXPECT_EQ(route.points()[4].turn()->street()->highway()->number(), 1);
  EXPECT_EQ(route.points()[5].location(), (Coordinate{1, 2}));
}

// Fails if a property is not read through getValue().
class HalvedPoint : public QVPoint {
 public:
  using QVPoint::QVPoint;
  std::optional<Value> getValue(const KeyView& key) const override {
    if (key == KeyView("lat")) return Value(*QVPoint::getValue(key)->number() / 2);
    return QVPoint::getValue(key);
  }
};

TEST(QVRouteTest, PropertiesAreReadThroughGetValue) {
  const HalvedPoint point(JSON::parse(R"({"lat":10,"lon":2})"));
  EXPECT_EQ(point.latitude(), 5);
  EXPECT_EQ(point.location(), (Coordinate{5, 2}));
}

TEST(QVRouteTest, SetJSONChangesPropertiesButNoChild) {
  QVPoint point(JSON::parse(R"({"lat":1,"turn":{"dir":"left"}})"));
  const QVPoint copy = point;
  point.setJSON(JSON::parse(R"({"lat":2,"turn":{"dir":"right"}})"));
  EXPECT_EQ(point.latitude(), 2);
  EXPECT_EQ(copy.latitude(), 1);
  ASSERT_TRUE(point.turn());
  EXPECT_EQ(point.turn()->direction(), QVTurnDirection::left);
  point.setJSON(std::nullopt);
  EXPECT_FALSE(point.latitude());
}

TEST(QVRouteTest, CopiesSharePointsAndOutliveTheOriginal) {
  std::optional<QVRoute> route(
      JSON::parse(R"({"distance":1.5,"points":[{"node":7,"turn":{"instruct":"Go"}}]})"));
  const QVRoute copy = *route;
  const QVPoint point = route->points().front();
  EXPECT_EQ(&copy.points(), &route->points());
  route.reset();
  EXPECT_EQ(copy.totalDistanceInMiles(), 1.5);
  EXPECT_EQ(point.turn()->instruction(), "Go");
  static_assert(sizeof(QVPoint) <= 56);
  static_assert(!std::is_copy_constructible_v<QVBaseObject>);
  static_assert(!std::is_constructible_v<QVRoute, std::optional<JSON>>);
  static_assert(!std::is_constructible_v<QVPoint, std::nullopt_t>);
  static_assert(!std::is_constructible_v<QVTurn, std::optional<JSON>>);
  static_assert(!std::is_constructible_v<QVStreet, std::optional<JSON>>);
}

template <RawRepresentable E>
std::string allRawValues() {
  std::string texts;
  for (const auto& [value, text] : rawValues<E>) {
    EXPECT_EQ(rawValue(value), text);
    EXPECT_EQ(fromRawValue<E>(text), value);
    texts += texts.empty() ? "" : " ";
    texts += text;
  }
  return texts;
}

// The texts are in the order of the cases. An empty text at the end is `unknown`.
TEST(RawValuesTest, EqualTheWireFormat) {
  EXPECT_EQ(allRawValues<QVRouteRequestType>(), "ArrivalTime DepartureTime");
  EXPECT_EQ(allRawValues<QVTurnDirection>(),
            "hardleft left slightleft forward slightright right hardright exitleft exitright "
            "leftatthefork rightatthefork uturn uturnleft uturnright ");
  EXPECT_EQ(allRawValues<QVStreetFunction>(),
            "highway localhighway arterial localarterial residential service ");
  EXPECT_EQ(allRawValues<QVStreetConnection>(),
            "origin offramp onramp interchange connector destination ");
  EXPECT_EQ(allRawValues<QVStreetDirection>(), "north south east west ");
  EXPECT_EQ(allRawValues<QVHighwayType>(), "CA US I Hwy CR SR ");
  EXPECT_EQ(allRawValues<QVOrigin>(), "OSM ArcGIS Quorvel Yelp Foursquare MapBox ");
  EXPECT_EQ(
      allRawValues<QVResponseKey>(),
      "quorvel-navigation-root-url quorvel-find-root-url code message objectId user-token distance "
      "startNode endNode duration points notify t d lon turn edge node lat say dir st instruct "
      "name "
      "func connection hwy number type suggestions origin provide score reviewCount providerUrl "
      "menuUrl phone categories text magicKey rating isCollection url price location x y Region "
      "Postal Match_addr Loc_name Address CountryCode PostalExt Neighborhood Subregion City "
      "candidates attributes Addr_type");
}

TEST(RawValuesTest, AreFoundByTheExactTextOnly) {
  for (const char* text : {"provider", "countrycode", "Code", "code ", ""})
    EXPECT_EQ(fromRawValue<QVResponseKey>(text), std::nullopt) << text;
  EXPECT_EQ(fromRawValue<QVRouteRequestType>("arrivaltime"), std::nullopt);
  EXPECT_EQ(fromRawValue<QVOrigin>("Mapbox"), std::nullopt);
  EXPECT_DEATH(rawValue(static_cast<QVOrigin>(7)), "no such case");
}

// Keys are hashed at compile time.
static_assert(KeyView(QVResponseKey::latitude) == KeyView("lat"));

}  // namespace
}  // namespace quorvelkit
