// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseObject.h>
#include <QuorvelKit/QVStreet.h>
#include <QuorvelPlatform/Export.h>

#include <optional>
#include <string>

namespace quorvelkit {

/// Which way to turn.
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

/// What to do at a point of a route.
class QUORVELKIT_EXPORT QVTurn : public QVBaseObject {
 public:
  explicit QVTurn(JSON json);
  explicit QVTurn(std::optional<JSON> json) = delete;

  /// The street that the turn leads onto; null when the answer has none. Lives as long as this
  /// turn.
  const QVStreet* street() const { return street_ ? &*street_ : nullptr; }
  QVTurnDirection direction() const;
  /// The sentence to show, in the server's words.
  std::optional<std::string> instruction() const;

 private:
  std::optional<QVStreet> street_;
};

}  // namespace quorvelkit
