// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVViewController.h>
#include <QuorvelPlatform/Export.h>

#include <QWidget>
#include <memory>

namespace quorvelkit {

/// A QVViewController as a plain widget, for forms and layouts. Set its controller's origin and
/// destination before the widget is shown first: that loads the screen. Its size hints are those of
/// the map, and it takes the keyboard focus for the map.
class QUORVELKIT_EXPORT QVRouteWidget : public QWidget {
  Q_OBJECT

 public:
  explicit QVRouteWidget(QWidget* parent = nullptr);
  ~QVRouteWidget() override;

  const std::shared_ptr<QVViewController>& controller() const { return controller_; }

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  const std::shared_ptr<QVViewController> controller_;
};

}  // namespace quorvelkit
