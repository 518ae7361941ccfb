// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <QWidget>

namespace quorvelkit {

/// Shows a round distance and a bar of that length at the scale of the map. Units: meters and
/// kilometers, or feet and miles, by the locale of the widget.
class ScaleBar : public QWidget {
 public:
  /// In device-independent pixels.
  static constexpr int maximumWidth = 132;

  explicit ScaleBar(QWidget* parent);

  /// Uses the scale at this latitude, in degrees.
  void showScale(double latitude, double zoomLevel);

 protected:
  void changeEvent(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void updateDistance();

  double metersPerPixel_ = 0;
  QString text_;
  // In device-independent pixels.
  double length_ = 0;
};

}  // namespace quorvelkit
