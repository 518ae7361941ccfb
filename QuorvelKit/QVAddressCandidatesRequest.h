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

/// Requests the places that match an address or a name, near a location.
class QUORVELKIT_EXPORT QVAddressCandidatesRequest : public QVBaseRequest {
 public:
  QVAddressCandidatesRequest() = delete;
  /// Makes a request with these values. The setters below describe them.
  QVAddressCandidatesRequest(std::string singleLine, Coordinate location,
                             std::optional<QVSearchExtent> searchExtent = std::nullopt,
                             std::optional<std::string> magicKey = std::nullopt);
  /// As with setSingleLine(encodeQueryValue(...)).
  QVAddressCandidatesRequest(const QueryValue& singleLine, Coordinate location,
                             std::optional<QVSearchExtent> searchExtent = std::nullopt);
  ~QVAddressCandidatesRequest() override;

  /// The address or name. Sent percent-encoded, as by urlEncode(), which does not encode "&", "="
  /// and "+": the server reads them as separators. It must be UTF-8: with any other text url() is a
  /// programming error and stops the process.
  const std::string& singleLine() const { return singleLine_; }
  void setSingleLine(std::string singleLine) {
    singleLine_ = std::move(singleLine);
    isSingleLineEncoded_ = false;
  }
  /// Sets a text that a user typed or that contains separators. Sent as encodeQueryValue() returned
  /// it; singleLine() returns this encoded text.
  void setSingleLine(const QueryValue& singleLine) {
    singleLine_ = singleLine.encoded();
    isSingleLineEncoded_ = true;
  }
  /// The location near which the server searches, in degrees.
  Coordinate location() const { return location_; }
  void setLocation(Coordinate location) { location_ = location; }
  /// The box that contains the places. Not sent if absent.
  const std::optional<QVSearchExtent>& searchExtent() const { return searchExtent_; }
  void setSearchExtent(std::optional<QVSearchExtent> extent) { searchExtent_ = extent; }
  /// The key of a suggestion (QVSuggestion::magicKey); the result is then its place only. Sent
  /// as singleLine() is. Not sent if absent.
  const std::optional<std::string>& magicKey() const { return magicKey_; }
  void setMagicKey(std::optional<std::string> magicKey) {
    magicKey_ = std::move(magicKey);
    isMagicKeyEncoded_ = false;
  }
  void setMagicKey(const QueryValue& magicKey) {
    magicKey_ = magicKey.encoded();
    isMagicKeyEncoded_ = true;
  }

  /// Returns the URL on the find server and replaces parameters() by the values above. Absent if
  /// the cached configuration has no root URL of the find server.
  std::optional<URL> url() override;

 private:
  std::string singleLine_;
  Coordinate location_;
  std::optional<QVSearchExtent> searchExtent_;
  std::optional<std::string> magicKey_;
  bool isSingleLineEncoded_ = false;
  bool isMagicKeyEncoded_ = false;
};

}  // namespace quorvelkit
