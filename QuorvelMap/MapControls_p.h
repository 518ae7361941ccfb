// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelMap/MapInput_p.h>

#include <QMargins>
#include <QRect>
#include <vector>

class QWidget;

namespace quorvelkit {

class ScaleBar;

/// The widgets above the map: the zoom buttons, the scale bar, and the frame that shows the
/// keyboard focus. They are children of the map view, which deletes them.
class MapControls {
 public:
  MapControls(MGLMapView& view, MapInput& input);

  /// Default: true.
  bool showsButtons() const;
  void setShowsButtons(bool shown);
  /// Default: true.
  bool showsScaleBar() const;
  void setShowsScaleBar(bool shown);
  void setFocusShown(bool shown);

  /// Moves the widgets to their corners and above their siblings. The scale bar does not overlap
  /// the attribution; an empty rectangle means no attribution.
  void layOut(const QRect& attribution);
  /// Updates the scale bar for the camera of the view.
  void updateScale();

  /// The areas of the visible controls and of the attribution.
  std::vector<QRect> areas() const;
  /// The space at the edges of the view that the visible controls and the attribution need. For the
  /// scale bar, this is the space below its upper edge at every scale.
  QMargins margins() const;

 private:
  QWidget* makeButton(const char* name, const QString& text, MapInput& input, double levels);

  MGLMapView& view_;
  QRect attribution_;
  QWidget* const zoomIn_;
  QWidget* const zoomOut_;
  ScaleBar* const scaleBar_;
  QWidget* const focusFrame_;
};

}  // namespace quorvelkit
