// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVFind.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// Shows suggestions while the user types. Only the suggestions for the last text are shown. Used
/// on the main thread.
class TypeAhead {
 public:
  /// Receives the suggestions or, if there are none, the reason.
  using Show =
      std::function<void(const std::vector<quorvelkit::QVSuggestion>&, const std::string& reason)>;

  TypeAhead(quorvelkit::Coordinate near, Show show)
      : state_(std::make_shared<State>(State{near, std::move(show), nullptr, nullptr})) {}
  TypeAhead(const TypeAhead&) = delete;
  TypeAhead& operator=(const TypeAhead&) = delete;
  ~TypeAhead() { cancel(); }

  void setText(const std::string& text) {
    using namespace quorvelkit;
    cancel();
    const auto request = std::make_shared<QVSuggestRequest>(encodeQueryValue(text), state_->near);
    state_->latest = request;
    // Only this object owns the state. A response after its destruction is ignored.
    QVBaseService::loadConfiguration([request, weak = std::weak_ptr(state_)] {
      const auto state = weak.lock();
      if (!state || state->latest != request) return;
      if (!request->url()) return state->show({}, "The configuration names no find server.");
      state->task = QVFind::suggest(request, [request, weak](const auto& response) {
        const auto current = weak.lock();
        if (!current || current->latest != request) return;
        const auto& error = response->error();
        const std::string reason = error ? "The search failed: " + error->localizedDescription()
                                         : "There are no suggestions.";
        current->show(response->suggestions(), response->suggestions().empty() ? reason : "");
      });
    });
  }

 private:
  struct State {
    quorvelkit::Coordinate near;
    Show show;
    std::shared_ptr<quorvelkit::QVSuggestRequest> latest;
    std::shared_ptr<quorvelkit::URLSessionDataTask> task;
  };

  void cancel() {
    if (state_->task) state_->task->cancel();
    state_->task = nullptr;
  }

  std::shared_ptr<State> state_;
};
