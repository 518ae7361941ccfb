// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <string>
#include <utility>

namespace quorvelkit {

/// A marker or a line on a map view: the base class of MGLPointAnnotation and MGLPolyline. Set its
/// properties before you add it to a map view, on any thread; the map view ignores later changes.
/// The map view shares the ownership until the annotation is removed.
class QUORVELKIT_EXPORT MGLAnnotation {
 public:
  virtual ~MGLAnnotation();

  MGLAnnotation(const MGLAnnotation&) = delete;
  MGLAnnotation& operator=(const MGLAnnotation&) = delete;

  /// UTF-8. The map view draws the title of a point annotation as a label at its marker. It does
  /// not draw the title of a polyline.
  const std::string& title() const { return title_; }
  void setTitle(std::string title) { title_ = std::move(title); }

 protected:
  MGLAnnotation();

 private:
  std::string title_;
};

}  // namespace quorvelkit
