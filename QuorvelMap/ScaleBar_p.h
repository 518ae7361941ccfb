// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <QWidget>

namespace quorvelkit {

/// A bar that is as long as a round distance in the middle of the map, in meters and kilometers or
/// in feet and miles as the widget's locale has it.
class ScaleBar : public QWidget {
 public:
  explicit ScaleBar(QWidget* parent);

  void showScale(double latitude, double zoomLevel);

 protected:
  void changeEvent(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void chooseDistance();

  double metersPerPixel_ = 0;
  QString text_;
  double length_ = 0;
};

}  // namespace quorvelkit
