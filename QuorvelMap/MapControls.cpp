// SPDX-License-Identifier: Apache-2.0
#include <QuorvelMap/MGLMapView.h>
#include <QuorvelMap/MapControls_p.h>
#include <QuorvelMap/ScaleBar_p.h>

#include <QPainter>
#include <QToolButton>
#include <algorithm>
#include <memory>

namespace quorvelkit {

namespace {

constexpr int cornerMargin = 10;
constexpr int buttonSize = 34;

// A button with a plus or a minus sign. Uses the colors of the palette.
class ZoomButton : public QToolButton {
 public:
  ZoomButton(QWidget* parent, bool isPlus) : QToolButton(parent), isPlus_(isPlus) {
    setFixedSize(buttonSize, buttonSize);
    setFocusPolicy(Qt::TabFocus);
    // Otherwise the map view would handle the touch and the button would not be clicked.
    setAttribute(Qt::WA_NoMousePropagation);
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool isHighlighted = underMouse() || isDown();
    painter.setPen(QPen(palette().color(QPalette::Mid), 1));
    painter.setBrush(palette().color(isHighlighted ? QPalette::Button : QPalette::Base));
    const QRectF background = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.drawRoundedRect(background, 5, 5);
    if (hasFocus()) {
      painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
      painter.drawRoundedRect(background.adjusted(1.5, 1.5, -1.5, -1.5), 4, 4);
    }
    painter.setPen(QPen(palette().color(QPalette::Text), 2));
    const QPointF center = background.center();
    const double arm = 7;
    painter.drawLine(center - QPointF(arm, 0), center + QPointF(arm, 0));
    if (isPlus_) painter.drawLine(center - QPointF(0, arm), center + QPointF(0, arm));
  }

 private:
  const bool isPlus_;
};

// A frame around the map view.
class FocusFrame : public QWidget {
 public:
  explicit FocusFrame(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("focusFrame"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
  }

 protected:
  // The inner, light line makes the frame visible on a map of any color.
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setPen(QPen(palette().color(QPalette::Highlight), 3));
    painter.drawRect(QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5));
    painter.setPen(QPen(palette().color(QPalette::Base), 1));
    painter.drawRect(QRectF(rect()).adjusted(3.5, 3.5, -3.5, -3.5));
  }
};

}  // namespace

MapControls::MapControls(MGLMapView& view, MapInput& input)
    : view_(view),
      zoomIn_(makeButton("zoomIn", MGLMapView::tr("Zoom in"), input, 1)),
      zoomOut_(makeButton("zoomOut", MGLMapView::tr("Zoom out"), input, -1)),
      scaleBar_(std::make_unique<ScaleBar>(&view).release()),
      focusFrame_(std::make_unique<FocusFrame>(&view).release()) {}

QWidget* MapControls::makeButton(const char* name, const QString& text, MapInput& input,
                                 double levels) {
  ZoomButton* const button = std::make_unique<ZoomButton>(&view_, levels > 0).release();
  button->setObjectName(QLatin1String(name));
  button->setAccessibleName(text);
  button->setToolTip(text);
  button->setAutoRepeat(true);
  QObject::connect(button, &QToolButton::clicked, &view_, [&input, levels] { input.zoom(levels); });
  return button;
}

bool MapControls::showsButtons() const { return !zoomIn_->isHidden(); }

void MapControls::setShowsButtons(bool shown) {
  zoomIn_->setVisible(shown);
  zoomOut_->setVisible(shown);
}

bool MapControls::showsScaleBar() const { return !scaleBar_->isHidden(); }
void MapControls::setShowsScaleBar(bool shown) { scaleBar_->setVisible(shown); }
void MapControls::setFocusShown(bool shown) { focusFrame_->setVisible(shown); }

void MapControls::layOut(const QRect& attribution) {
  attribution_ = attribution;
  const int right = view_.width() - cornerMargin - buttonSize;
  zoomIn_->move(right, cornerMargin);
  zoomOut_->move(right, cornerMargin + buttonSize + 4);
  focusFrame_->setGeometry(view_.rect());
  for (QWidget* const widget : {zoomIn_, zoomOut_, static_cast<QWidget*>(scaleBar_), focusFrame_})
    widget->raise();
  updateScale();
}

void MapControls::updateScale() {
  scaleBar_->showScale(view_.centerCoordinate().latitude, view_.zoomLevel());
  QRect bar = scaleBar_->rect();
  bar.moveBottomLeft({cornerMargin, view_.height() - 1 - cornerMargin});
  if (bar.intersects(attribution_)) bar.moveBottom(attribution_.top() - cornerMargin);
  scaleBar_->move(bar.topLeft());
}

std::vector<QRect> MapControls::areas() const {
  std::vector<QRect> areas;
  for (const QWidget* const widget : {zoomIn_, zoomOut_, static_cast<QWidget*>(scaleBar_)})
    if (!widget->isHidden()) areas.push_back(widget->geometry());
  if (!attribution_.isEmpty()) areas.push_back(attribution_);
  return areas;
}

QMargins MapControls::margins() const {
  QMargins margins(0, 0, 0, attribution_.height());
  if (showsButtons()) margins.setRight(cornerMargin + buttonSize);
  if (!showsScaleBar()) return margins;
  const bool canMeetAttribution =
      !attribution_.isEmpty() && attribution_.left() < cornerMargin + ScaleBar::maximumWidth;
  const int below = canMeetAttribution ? attribution_.height() : 0;
  margins.setBottom(std::max(margins.bottom(), below + cornerMargin + scaleBar_->height()));
  return margins;
}

}  // namespace quorvelkit
