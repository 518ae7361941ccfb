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

/// Asks for the places that a line of text may mean, an address or a name, near a location.
class QUORVELKIT_EXPORT QVAddressCandidatesRequest : public QVBaseRequest {
 public:
  QVAddressCandidatesRequest() = delete;
  QVAddressCandidatesRequest(std::string singleLine, Coordinate location,
                             std::optional<QVSearchExtent> searchExtent = std::nullopt,
                             std::optional<std::string> magicKey = std::nullopt);
  ~QVAddressCandidatesRequest() override;

  /// The text, sent percent-encoded as urlEncode() does. It must be UTF-8: url() of any other text
  /// is a programming error and stops the process. Check a text from outside, of a file or a
  /// command line say, with isUTF8() of QuorvelPlatform/UTF8.h first.
  const std::string& singleLine() const { return singleLine_; }
  void setSingleLine(std::string singleLine) { singleLine_ = std::move(singleLine); }
  Coordinate location() const { return location_; }
  void setLocation(Coordinate location) { location_ = location; }
  /// Where the places must be. Not sent when absent.
  const std::optional<QVSearchExtent>& searchExtent() const { return searchExtent_; }
  void setSearchExtent(std::optional<QVSearchExtent> extent) { searchExtent_ = extent; }
  /// The key of a suggestion (QVSuggestion::magicKey), for exactly the place that it means. Sent
  /// like the text, so it must be UTF-8 as well; not sent when absent.
  const std::optional<std::string>& magicKey() const { return magicKey_; }
  void setMagicKey(std::optional<std::string> magicKey) { magicKey_ = std::move(magicKey); }

  /// The resource under the find root of the cached configuration, with the values above as
  /// parameters(), which each call replaces. Absent while there is no such root.
  std::optional<URL> url() override;

 private:
  std::string singleLine_;
  Coordinate location_;
  std::optional<QVSearchExtent> searchExtent_;
  std::optional<std::string> magicKey_;
};

}  // namespace quorvelkit
