// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/HTTPMessage.h"
#include "sandbox/MapData.h"
#include "sandbox/find/FindQuery.h"
#include "sandbox/find/PlaceSearch.h"
#include "sandbox/find/ReverseGeocoder.h"

#include <memory>
#include <optional>

namespace quorvelkit::sandbox {

/// The find server: searches the places and addresses of a map. Any threads at once.
class FindService {
 public:
  explicit FindService(std::shared_ptr<const MapData> map);

  /// Answers what is addressed to this service.
  std::optional<HTTPAnswer> answer(const HTTPRequest& request) const;

 private:
  HTTPAnswer candidates(const FindQuery& query) const;
  HTTPAnswer suggestions(const FindQuery& query) const;
  HTTPAnswer address(const FindQuery& query) const;

  std::shared_ptr<const Gazetteer> gazetteer_;
  PlaceSearch search_;
  ReverseGeocoder geocoder_;
};

}  // namespace quorvelkit::sandbox
