// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelMap/MapInput_p.h>

#include <QRect>

class QWidget;

namespace quorvelkit {

class ScaleBar;

/// The widgets above the map: the buttons for zooming, the scale bar, and the frame that shows the
/// keyboard focus. The map view owns them as its children.
class MapControls {
 public:
  /// The buttons zoom through the input.
  MapControls(MGLMapView& view, MapInput& input);

  /// Both are shown unless hidden.
  bool hasButtons() const;
  void showButtons(bool shown);
  bool hasScaleBar() const;
  void showScaleBar(bool shown);
  void showFocus(bool shown);

  /// Puts the controls into their corners, above a canvas that was made after them. The scale bar
  /// keeps clear of the notice about the data; an empty rectangle stands for no notice.
  void layOut(const QRect& notice);
  /// Call it when the camera has moved.
  void updateScale();

 private:
  QWidget* makeButton(const char* name, const QString& text, MapInput& input, double levels);

  MGLMapView& view_;
  QRect notice_;
  QWidget* const zoomIn_;
  QWidget* const zoomOut_;
  ScaleBar* const scaleBar_;
  QWidget* const focusFrame_;
};

}  // namespace quorvelkit
