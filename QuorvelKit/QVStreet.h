// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseObject.h>
#include <QuorvelKit/QVHighway.h>
#include <QuorvelPlatform/Export.h>

#include <optional>
#include <string>

namespace quorvelkit {

/// The function of a street in the road network.
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

/// The connection that a street makes.
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

/// The compass direction of a street.
enum class QVStreetDirection { north, south, east, west, unknown };

template <>
inline constexpr auto rawValues<QVStreetDirection> = std::to_array<RawValue<QVStreetDirection>>({
    {QVStreetDirection::north, "north"},
    {QVStreetDirection::south, "south"},
    {QVStreetDirection::east, "east"},
    {QVStreetDirection::west, "west"},
    {QVStreetDirection::unknown, ""},
});

/// The street after a turn.
class QUORVELKIT_EXPORT QVStreet : public QVBaseObject {
 public:
  /// Makes a street from an object of the answer.
  explicit QVStreet(JSON json);
  explicit QVStreet(std::optional<JSON> json) = delete;

  /// The numbered road of the street, or null. Valid while this street exists.
  const QVHighway* highway() const { return highway_ ? &*highway_ : nullptr; }
  /// The name of the street.
  std::optional<std::string> name() const;
  /// Function, connection and direction are all read from the member "dir", so at most one of them
  /// is not `unknown`.
  QVStreetFunction function() const;
  QVStreetConnection connection() const;
  QVStreetDirection direction() const;

 private:
  std::optional<QVHighway> highway_;
};

}  // namespace quorvelkit
