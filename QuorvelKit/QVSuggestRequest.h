// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseRequest.h>
#include <QuorvelKit/QVSearchExtent.h>
#include <QuorvelPlatform/Coordinate.h>
#include <QuorvelPlatform/Export.h>

#include <optional>
#include <string>
#include <utility>

namespace quorvelkit {

/// Asks how a text that is being typed may go on, near a location.
class QUORVELKIT_EXPORT QVSuggestRequest : public QVBaseRequest {
 public:
  QVSuggestRequest() = delete;
  QVSuggestRequest(std::string text, Coordinate location,
                   std::optional<QVSearchExtent> searchExtent = std::nullopt);
  ~QVSuggestRequest() override;

  /// The text, which goes into the address exactly as it stands. One with a character that no URL
  /// may hold (a space, a quotation mark, a letter beyond ASCII) therefore makes a request without
  /// url(), and its call ends without a response. "&", "=" and "#" make one that asks for
  /// something else. An application encodes what its user types, and asks whether there is a URL
  /// once the configuration is loaded (before, there is none for any text):
  ///
  ///     auto request = std::make_shared<QVSuggestRequest>(urlEncode("fells po"), here);
  ///     QVBaseService::loadConfiguration([request] {
  ///       if (!request->url()) return report("No configuration, or no text that makes a URL.");
  ///       QVFind::suggest(request, show);
  ///     });
  const std::string& text() const { return text_; }
  void setText(std::string text) { text_ = std::move(text); }
  Coordinate location() const { return location_; }
  void setLocation(Coordinate location) { location_ = location; }
  /// Where the places must be. Not sent when absent.
  const std::optional<QVSearchExtent>& searchExtent() const { return searchExtent_; }
  void setSearchExtent(std::optional<QVSearchExtent> extent) { searchExtent_ = extent; }

  /// The resource under the find root of the cached configuration, with the values above as
  /// parameters(), which each call replaces. Absent while there is no such root, and for a text
  /// that makes no URL.
  std::optional<URL> url() override;

 private:
  std::string text_;
  Coordinate location_;
  std::optional<QVSearchExtent> searchExtent_;
};

}  // namespace quorvelkit
