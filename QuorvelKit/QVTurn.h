// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseObject.h>
#include <QuorvelKit/QVStreet.h>
#include <QuorvelPlatform/Export.h>

#include <optional>
#include <string>

namespace quorvelkit {

/// The direction of a turn.
enum class QVTurnDirection {
  hardleft,
  left,
  slightleft,
  forward,
  slightright,
  right,
  hardright,
  exitleft,
  exitright,
  leftatthefork,
  rightatthefork,
  uturn,
  uturnleft,
  uturnright,
  unknown
};

template <>
inline constexpr auto rawValues<QVTurnDirection> = std::to_array<RawValue<QVTurnDirection>>({
    {QVTurnDirection::hardleft, "hardleft"},
    {QVTurnDirection::left, "left"},
    {QVTurnDirection::slightleft, "slightleft"},
    {QVTurnDirection::forward, "forward"},
    {QVTurnDirection::slightright, "slightright"},
    {QVTurnDirection::right, "right"},
    {QVTurnDirection::hardright, "hardright"},
    {QVTurnDirection::exitleft, "exitleft"},
    {QVTurnDirection::exitright, "exitright"},
    {QVTurnDirection::leftatthefork, "leftatthefork"},
    {QVTurnDirection::rightatthefork, "rightatthefork"},
    {QVTurnDirection::uturn, "uturn"},
    {QVTurnDirection::uturnleft, "uturnleft"},
    {QVTurnDirection::uturnright, "uturnright"},
    {QVTurnDirection::unknown, ""},
});

/// A turn at a point of a route.
class QUORVELKIT_EXPORT QVTurn : public QVBaseObject {
 public:
  /// Makes a turn from an object of the answer.
  explicit QVTurn(JSON json);
  explicit QVTurn(std::optional<JSON> json) = delete;

  /// The street after the turn, or null. Valid while this turn exists.
  const QVStreet* street() const { return street_ ? &*street_ : nullptr; }
  /// The direction; `unknown` if the member is missing or has another text.
  QVTurnDirection direction() const;
  /// The instruction to display, as the server sent it.
  std::optional<std::string> instruction() const;

 private:
  std::optional<QVStreet> street_;
};

}  // namespace quorvelkit
