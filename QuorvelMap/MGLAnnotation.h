// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <string>
#include <utility>

namespace quorvelkit {

/// What a map view draws besides its map: the base of MGLPointAnnotation and MGLPolyline. Fill an
/// annotation before it is added, on any thread; a map view that has it does not see later changes,
/// and shares in owning it until it is removed.
class QUORVELKIT_EXPORT MGLAnnotation {
 public:
  virtual ~MGLAnnotation();

  MGLAnnotation(const MGLAnnotation&) = delete;
  MGLAnnotation& operator=(const MGLAnnotation&) = delete;

  /// UTF-8. A point's title is drawn beside its marker; a polyline's is not drawn.
  const std::string& title() const { return title_; }
  void setTitle(std::string title) { title_ = std::move(title); }

 protected:
  MGLAnnotation();

 private:
  std::string title_;
};

}  // namespace quorvelkit
