// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVFind.h>
#include <QuorvelPlatform/PercentEncoding.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// Suggests how a text may go on, while it is being typed. Only the last text is ever answered.
/// Used on the main thread.
class TypeAhead {
 public:
  /// Takes the suggestions; when there are none, with the reason.
  using Show =
      std::function<void(const std::vector<quorvelkit::QVSuggestion>&, const std::string& whyNone)>;

  TypeAhead(quorvelkit::Coordinate near, Show show)
      : state_(std::make_shared<State>(State{near, std::move(show), nullptr, nullptr})) {}
  TypeAhead(const TypeAhead&) = delete;
  TypeAhead& operator=(const TypeAhead&) = delete;
  ~TypeAhead() { cancel(); }

  void typed(const std::string& text) {
    using namespace quorvelkit;
    cancel();
    const auto request = std::make_shared<QVSuggestRequest>(asQueryValue(text), state_->near);
    state_->latest = request;
    // Nothing keeps the state alive but this object: what comes after its end finds nothing.
    QVBaseService::loadConfiguration([request, weak = std::weak_ptr(state_)] {
      const auto state = weak.lock();
      if (!state || state->latest != request) return;
      if (!request->url()) return state->show({}, "The configuration names no find server.");
      state->task = QVFind::suggest(request, [request, weak](const auto& response) {
        const auto still = weak.lock();
        if (!still || still->latest != request) return;
        const auto& error = response->error();
        const std::string none =
            error ? "The search failed: " + error->localizedDescription() : "There are none.";
        still->show(response->suggestions(), response->suggestions().empty() ? none : "");
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

  // The text goes into the address as it stands, so it is encoded here; urlEncode() leaves three
  // characters alone that mean something between the values of a query.
  static std::string asQueryValue(const std::string& text) {
    std::string value;
    for (const char c : quorvelkit::urlEncode(text)) {
      if (c == '&') {
        value += "%26";
      } else if (c == '+') {
        value += "%2B";
      } else if (c == '=') {
        value += "%3D";
      } else {
        value += c;
      }
    }
    return value;
  }

  std::shared_ptr<State> state_;
};
