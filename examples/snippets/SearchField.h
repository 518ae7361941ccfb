// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/Calls/QVTypeAhead.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

/// Shows suggestions below a text field, 100 milliseconds after the last key.
class SearchField {
 public:
  /// Receives the suggestions or, if there are none, the reason.
  using Show =
      std::function<void(const std::vector<quorvelkit::QVSuggestion>&, const std::string& reason)>;

  SearchField(quorvelkit::Coordinate near, Show show)
      : typeAhead_(
            near,
            [moved = std::move(show)](const std::string&, const auto& result) {
              if (const auto error = result.error())
                return moved({}, "The search failed: " + error->localizedDescription());
              const auto& found = result->suggestions();
              moved(found, found.empty() ? "There are no suggestions." : "");
            },
            std::chrono::milliseconds(100)) {}

  void textChanged(const std::string& text) { typeAhead_.setText(text); }

 private:
  quorvelkit::QVTypeAhead typeAhead_;
};
