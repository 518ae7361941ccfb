// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVRouteWidget.h>

namespace quorvelkit {

QVRouteWidget::QVRouteWidget(QWidget* parent)
    : QWidget(parent), controller_(QVViewController::make()) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  setFocusPolicy(Qt::StrongFocus);
  setFocusProxy(controller_->mapview());
}

QVRouteWidget::~QVRouteWidget() = default;

QSize QVRouteWidget::sizeHint() const {
  const MGLMapView* const map = controller_->mapview();
  return map != nullptr ? map->sizeHint() : QWidget::sizeHint();
}

QSize QVRouteWidget::minimumSizeHint() const {
  const MGLMapView* const map = controller_->mapview();
  return map != nullptr ? map->minimumSizeHint() : QWidget::minimumSizeHint();
}

void QVRouteWidget::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  if (controller_->isViewLoaded()) controller_->view()->setGeometry(rect());
}

void QVRouteWidget::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  QWidget* const view = controller_->view();
  if (view->parentWidget() == this) return;
  view->setParent(this);
  view->setGeometry(rect());
  view->show();
}

}  // namespace quorvelkit
