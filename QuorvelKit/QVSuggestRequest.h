// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseRequest.h>
#include <QuorvelKit/QVSearchExtent.h>
#include <QuorvelPlatform/Coordinate.h>
#include <QuorvelPlatform/Export.h>
#include <QuorvelPlatform/PercentEncoding.h>

#include <optional>
#include <string>
#include <utility>

namespace quorvelkit {

/// Requests suggestions for an incomplete search text, near a location.
class QUORVELKIT_EXPORT QVSuggestRequest : public QVBaseRequest {
 public:
  QVSuggestRequest() = delete;
  /// Makes a request with these values. The setters below describe them.
  QVSuggestRequest(std::string text, Coordinate location,
                   std::optional<QVSearchExtent> searchExtent = std::nullopt);
  ~QVSuggestRequest() override;

  /// The search text. It is sent unchanged, without percent-encoding. With a character that is not
  /// allowed in a URL (a space, a quotation mark, a non-ASCII letter) the request has no url() and
  /// is not sent; "&", "=" and "#" change the meaning of the URL. An application therefore encodes
  /// the text by encodeQueryValue() and checks url() after the configuration is loaded:
  ///
  ///     auto request = std::make_shared<QVSuggestRequest>(encodeQueryValue("fells po"), here);
  ///     QVBaseService::loadConfiguration([request] {
  ///       if (!request->url()) return report("There is no configuration.");
  ///       QVFind::suggest(request, show);
  ///     });
  const std::string& text() const { return text_; }
  /// Sets the text that text() describes.
  void setText(std::string text) { text_ = std::move(text); }
  /// The location near which the server searches, in degrees.
  Coordinate location() const { return location_; }
  void setLocation(Coordinate location) { location_ = location; }
  /// The box that contains the places. Not sent if absent.
  const std::optional<QVSearchExtent>& searchExtent() const { return searchExtent_; }
  void setSearchExtent(std::optional<QVSearchExtent> extent) { searchExtent_ = extent; }

  /// Returns the URL on the find server and replaces parameters() by the values above. Absent if
  /// the cached configuration has no root URL of the find server or the text makes no URL.
  std::optional<URL> url() override;

 private:
  std::string text_;
  Coordinate location_;
  std::optional<QVSearchExtent> searchExtent_;
};

}  // namespace quorvelkit
