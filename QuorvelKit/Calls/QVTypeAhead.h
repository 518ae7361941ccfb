// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/Calls/QVCallResult.h>
#include <QuorvelKit/QVSearchExtent.h>
#include <QuorvelKit/QVSuggestResponse.h>
#include <QuorvelPlatform/Coordinate.h>
#include <QuorvelPlatform/Export.h>
#include <QuorvelPlatform/Scheduler.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace quorvelkit {

/// Finds suggestions while the user types. At most one call is in flight: a new text cancels the
/// call for the previous text and starts its own when that one has ended. Only the results for the
/// newest text are delivered.
///
/// Used on the thread of the main queue. The handler runs on the main queue, never inside
/// setText() and never after the destruction of this object, which cancels the call. It may destroy
/// this object or set another text.
class QUORVELKIT_EXPORT QVTypeAhead {
 public:
  /// Receives a text and its result: a response, or the reason why nothing was sent.
  using Handler =
      std::function<void(const std::string& text, const QVCallResult<QVSuggestResponse>& result)>;

  /// Looks for places near a location. With a debounce, a text is sent when no other text has
  /// followed for that time. A null scheduler is Scheduler::shared().
  QVTypeAhead(Coordinate location, Handler handler,
              std::chrono::milliseconds debounce = std::chrono::milliseconds(0),
              std::shared_ptr<Scheduler> scheduler = nullptr);
  QVTypeAhead(const QVTypeAhead&) = delete;
  QVTypeAhead& operator=(const QVTypeAhead&) = delete;
  ~QVTypeAhead();

  /// The text that the user has typed, not encoded. An empty text cancels the call and sends
  /// nothing.
  void setText(std::string text);
  /// Location and box of the calls that start from now on (QVSuggestRequest).
  void setLocation(Coordinate location);
  void setSearchExtent(std::optional<QVSearchExtent> extent);

 private:
  struct State;
  std::shared_ptr<State> state_;
};

}  // namespace quorvelkit
