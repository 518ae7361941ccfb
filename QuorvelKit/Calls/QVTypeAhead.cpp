// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/Calls/QVCall.h>
#include <QuorvelKit/Calls/QVMainQueueBlock_p.h>
#include <QuorvelKit/Calls/QVTypeAhead.h>
#include <QuorvelKit/QVFind.h>
#include <QuorvelPlatform/PercentEncoding.h>

#include <new>
#include <utility>

namespace quorvelkit {

// The functions that run later do not own the state, so they do nothing after the destruction of
// the QVTypeAhead.
struct QVTypeAhead::State : std::enable_shared_from_this<State> {
  using Call = QVCall<QVSuggestResponse>;

  Handler handler;
  std::chrono::milliseconds debounce;
  std::shared_ptr<Scheduler> scheduler;
  Coordinate location;
  std::optional<QVSearchExtent> extent;

  std::optional<std::string> waitingText;   // Not sent yet.
  std::unique_ptr<Scheduler::Timer> timer;  // Of the debounce.
  std::optional<Call> call;
  std::string text;  // Of the call.
  bool isSuperseded = false;

  void setText(std::string newText) {
    timer = nullptr;
    waitingText.reset();
    isSuperseded = true;
    if (call) call->cancel();
    if (newText.empty()) return;
    waitingText = std::move(newText);
    if (debounce.count() <= 0) return sendWaitingText();
    Scheduler& clock = scheduler ? *scheduler : Scheduler::shared();
    timer = clock.schedule(clock.now() + debounce, addingToMainQueue([weak = weak_from_this()] {
                             const auto state = weak.lock();
                             if (!state) return;
                             state->timer = nullptr;
                             state->sendWaitingText();
                           }));
  }

  // Sends the waiting text unless it must wait for a call or for the debounce.
  void sendWaitingText() {
    if (!waitingText || call || timer) return;
    const auto request =
        std::make_shared<QVSuggestRequest>(encodeQueryValue(*waitingText), location, extent);
    text = *std::exchange(waitingText, std::nullopt);
    isSuperseded = false;
    call.emplace(QVFind::suggest, request);
    call->onResult([weak = weak_from_this()](const Call::Result& result) {
      if (const auto state = weak.lock()) state->receive(result);
    });
  }

  void receive(const Call::Result& result) {
    call.reset();
    if (!isSuperseded) return handler(text, result);
    sendWaitingText();
  }
};

QVTypeAhead::QVTypeAhead(Coordinate location, Handler handler, std::chrono::milliseconds debounce,
                         std::shared_ptr<Scheduler> scheduler)
    : state_(std::make_shared<State>()) {
  state_->handler = std::move(handler);
  state_->debounce = debounce;
  state_->scheduler = std::move(scheduler);
  state_->location = location;
}

QVTypeAhead::~QVTypeAhead() {
  try {
    if (state_->call) state_->call->cancel();
  } catch (const std::bad_alloc&) {  // The call continues; its result is ignored.
  }
}

void QVTypeAhead::setText(std::string text) { state_->setText(std::move(text)); }
void QVTypeAhead::setLocation(Coordinate location) { state_->location = location; }
void QVTypeAhead::setSearchExtent(std::optional<QVSearchExtent> extent) { state_->extent = extent; }

}  // namespace quorvelkit
