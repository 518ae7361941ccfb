// SPDX-License-Identifier: Apache-2.0
#include "Documents.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <string_view>

namespace quorvelkit::bench {

namespace {

constexpr std::array<std::string_view, 8> streets = {
    "Fleet Street", "Eastern Avenue", "Carretera General 1", "O'Donnell Street",
    "Ponca Street", "I 895",          "Boston Street",       "South Broadway"};
constexpr std::array<std::string_view, 7> turnDirections = {
    "left", "right", "slightleft", "forward", "slightright", "uturn", "exitright"};
constexpr std::array<std::string_view, 6> streetDirections = {
    "residential", "arterial", "onramp", "localhighway", "north", "highway"};
constexpr std::array<std::string_view, 4> highwayTypes = {"I", "US", "SR", "Hwy"};

// Pseudo-random numbers, the same in every run.
class Random {
 public:
  std::uint32_t below(std::uint32_t bound) noexcept {
    state_ = state_ * 6364136223846793005U + 1442695040888963407U;
    return static_cast<std::uint32_t>((state_ >> 33U) % bound);
  }
  template <std::size_t n>
  std::string_view oneOf(const std::array<std::string_view, n>& texts) noexcept {
    return texts[below(n)];
  }

 private:
  std::uint64_t state_ = 20240229;
};

// Appends value / 10^digits, without trailing zeros but with at least one digit after the point.
void appendFixed(std::string& out, std::int64_t value, int digits) {
  char buffer[40];
  const auto divisor = [digits] {
    std::int64_t d = 1;
    for (int i = 0; i < digits; ++i)
      d *= 10;
    return d;
  }();
  const auto written = std::to_chars(buffer, buffer + sizeof buffer,
                                     static_cast<double>(value) / static_cast<double>(divisor),
                                     std::chars_format::fixed, digits);
  std::string_view text(buffer, static_cast<std::size_t>(written.ptr - buffer));
  while (text.ends_with('0') && text[text.size() - 2] != '.')
    text.remove_suffix(1);
  out += text;
}

void appendText(std::string& out, std::string_view key, std::string_view text) {
  out += '"';
  out += key;
  out += "\":\"";
  out += text;
  out += '"';
}

void appendTurn(std::string& out, Random& random, std::size_t index) {
  const std::string_view turn = random.oneOf(turnDirections);
  const std::string_view street = random.oneOf(streets);
  const std::string instruction = "Turn " + std::string(turn) + " onto " + std::string(street);
  out += ",\"turn\":{";
  appendText(out, "dir", turn);
  out += ',';
  appendText(out, "instruct", instruction);
  out += ",\"st\":{";
  appendText(out, "name", street);
  out += ',';
  appendText(out, "dir", random.oneOf(streetDirections));
  if (index % 30 == 0) {
    out += R"(,"hwy":{"number":)" + std::to_string(1 + random.below(895)) + ',';
    appendText(out, "dir", random.oneOf(highwayTypes));
    out += '}';
  }
  out += "}},";
  appendText(out, "notify", "In 0.2 miles, " + instruction);
  out += ",\"say\":[\"" + instruction + "\"]";
}

void appendResult(std::string& out, Random& random) {
  out += ',';
  appendText(out, "origin", random.below(2) == 0 ? "OSM" : "Yelp");
  if (random.below(3) != 0) return;
  out += ',';
  appendText(out, "phone", "410-675-2080");
  out += ',';
  appendText(out, "providerUrl", "https://provider.example/places/pierpoint?id=30132319");
  out += R"(,"rating":4.5,"reviewCount":)" + std::to_string(random.below(900));
  out += R"(,"categories":["restaurant","sea food"])";
}

std::string addressText(Random& random) {
  return std::to_string(1 + random.below(2400)) + ' ' + std::string(random.oneOf(streets)) +
         ", Baltimore, Maryland, 21231";
}

}  // namespace

std::string routeDocument(std::size_t points) {
  Random random;
  std::string out = R"({"distance":24.528,"duration":30.8,"startNode":51386309,)"
                    R"("endNode":292503721,"points":[)";
  out.reserve(points * 120 + 200);
  std::int64_t latitude = 39'281'170;
  std::int64_t longitude = -76'594'269;
  std::int64_t time = 0;
  std::int64_t distance = 0;
  std::uint64_t edge = 6'180'840;
  for (std::size_t i = 0; i < points; ++i) {
    out += i == 0 ? "{\"lat\":" : ",{\"lat\":";
    appendFixed(out, latitude, 6);
    out += ",\"lon\":";
    appendFixed(out, longitude, 6);
    out += ",\"t\":";
    appendFixed(out, time, 1);
    out += ",\"d\":";
    appendFixed(out, distance, 4);
    if (i != 0) {
      out += ",\"edge\":" + std::to_string(edge);
      out += ",\"node\":" + std::to_string(1'870'048'164U + i * 7);
    }
    if (i % 10 == 0) {
      appendTurn(out, random, i);
      edge = 6'180'840U + random.below(1'500'000'000);
    }
    out += '}';
    latitude += random.below(900);
    longitude -= random.below(900);
    if (latitude > 60'000'000) latitude = 20'000'000;
    if (longitude < -120'000'000) longitude = -60'000'000;
    time += random.below(60);
    distance += random.below(500);
  }
  return out += "]}";
}

std::string candidatesDocument(std::size_t count) {
  Random random;
  std::string out = R"({"spatialReference":{"wkid":4326},"candidates":[)";
  for (std::size_t i = 0; i < count; ++i) {
    const std::string address = addressText(random);
    out += i == 0 ? "{" : ",{";
    appendText(out, "Address", address);
    out += R"(,"location":{"x":)";
    appendFixed(out, -76'594'269 - static_cast<std::int64_t>(random.below(90'000)), 6);
    out += ",\"y\":";
    appendFixed(out, 39'281'170 + static_cast<std::int64_t>(random.below(90'000)), 6);
    out += R"(},"score":)" + std::to_string(60 + random.below(41)) + ".5,\"attributes\":{";
    appendText(out, "Match_addr", address);
    out += ',';
    appendText(out, "Addr_type", "PointAddress");
    out += ',';
    appendText(out, "magicKey", "b3NtOm4yOTc1MTg0Nzg2");
    out += '}';
    appendResult(out, random);
    out += '}';
  }
  return out += "]}";
}

std::string suggestionsDocument(std::size_t count) {
  Random random;
  std::string out = R"({"suggestions":[)";
  for (std::size_t i = 0; i < count; ++i) {
    out += i == 0 ? "{" : ",{";
    appendText(out, "text", addressText(random));
    out += ',';
    appendText(out, "magicKey", "b3NtOm4yOTc1MTg0Nzg2");
    out += random.below(4) == 0 ? R"(,"isCollection":true)" : R"(,"isCollection":false)";
    appendResult(out, random);
    out += '}';
  }
  return out += "]}";
}

std::string objectDocument(std::size_t members) {
  std::string out = "{";
  for (std::size_t i = 0; i < members; ++i) {
    if (i != 0) out += ',';
    out += "\"key" + std::to_string(i) + "\":" + std::to_string(i);
  }
  return out += '}';
}

std::string arrayDocument(std::size_t elements) {
  std::string out = "[";
  for (std::size_t i = 0; i < elements; ++i) {
    if (i != 0) out += ',';
    out += std::to_string(i);
  }
  return out += ']';
}

}  // namespace quorvelkit::bench
