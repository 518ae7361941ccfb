// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVViewController.h>
#include <QuorvelPlatform/Export.h>

#include <QWidget>
#include <memory>

namespace quorvelkit {

/// A widget that shows a QVViewController, for forms and layouts. Set the origin and the
/// destination of its controller before the widget is shown for the first time, because that loads
/// the view. The widget has the size hints of the map view and passes the keyboard focus to it.
class QUORVELKIT_EXPORT QVRouteWidget : public QWidget {
  Q_OBJECT

 public:
  /// Makes the widget and its controller.
  explicit QVRouteWidget(QWidget* parent = nullptr);
  ~QVRouteWidget() override;

  /// The controller, never null.
  const std::shared_ptr<QVViewController>& controller() const { return controller_; }

  /// The size hints of the map view.
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  /// Event handlers of QWidget.
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  const std::shared_ptr<QVViewController> controller_;
};

}  // namespace quorvelkit
