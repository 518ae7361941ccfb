// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVRouteWidget.h>

namespace quorvelkit {

QVRouteWidget::QVRouteWidget(QWidget* parent)
    : QWidget(parent), controller_(QVViewController::make()) {}

QVRouteWidget::~QVRouteWidget() = default;

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
