// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseObject.h>
#include <QuorvelKit/QVHighway.h>
#include <QuorvelPlatform/Export.h>

#include <optional>
#include <string>

namespace quorvelkit {

/// What a street is for.
enum class QVStreetFunction {
  highway,
  localhighway,
  arterial,
  localarterial,
  residential,
  service,
  unknown
};

template <>
inline constexpr auto rawValues<QVStreetFunction> = std::to_array<RawValue<QVStreetFunction>>({
    {QVStreetFunction::highway, "highway"},
    {QVStreetFunction::localhighway, "localhighway"},
    {QVStreetFunction::arterial, "arterial"},
    {QVStreetFunction::localarterial, "localarterial"},
    {QVStreetFunction::residential, "residential"},
    {QVStreetFunction::service, "service"},
    {QVStreetFunction::unknown, ""},
});

/// What a street connects.
enum class QVStreetConnection {
  origin,
  offramp,
  onramp,
  interchange,
  connector,
  destination,
  unknown
};

template <>
inline constexpr auto rawValues<QVStreetConnection> = std::to_array<RawValue<QVStreetConnection>>({
    {QVStreetConnection::origin, "origin"},
    {QVStreetConnection::offramp, "offramp"},
    {QVStreetConnection::onramp, "onramp"},
    {QVStreetConnection::interchange, "interchange"},
    {QVStreetConnection::connector, "connector"},
    {QVStreetConnection::destination, "destination"},
    {QVStreetConnection::unknown, ""},
});

/// Where a street leads.
enum class QVStreetDirection { north, south, east, west, unknown };

template <>
inline constexpr auto rawValues<QVStreetDirection> = std::to_array<RawValue<QVStreetDirection>>({
    {QVStreetDirection::north, "north"},
    {QVStreetDirection::south, "south"},
    {QVStreetDirection::east, "east"},
    {QVStreetDirection::west, "west"},
    {QVStreetDirection::unknown, ""},
});

/// The street that a turn leads onto.
class QUORVELKIT_EXPORT QVStreet : public QVBaseObject {
 public:
  explicit QVStreet(JSON json);
  explicit QVStreet(std::optional<JSON> json) = delete;

  /// The numbered road that the street is part of; null when it is none. Lives as long as this
  /// street.
  const QVHighway* highway() const { return highway_ ? &*highway_ : nullptr; }
  std::optional<std::string> name() const;
  /// Function, connection and direction are all read from the one member "dir", as the server
  /// sends them: at most one of the three is other than `unknown`.
  QVStreetFunction function() const;
  QVStreetConnection connection() const;
  QVStreetDirection direction() const;

 private:
  std::optional<QVHighway> highway_;
};

}  // namespace quorvelkit
