// SPDX-License-Identifier: Apache-2.0
#include <QuorvelMap/MGLMapView.h>
#include <QuorvelMap/MGLPointAnnotation.h>
#include <QuorvelMap/MapAccessible_p.h>

#include <QAccessible>
#include <QAccessibleWidget>
#include <QLabel>
#include <QLocale>
#include <QPointer>
#include <algorithm>
#include <memory>
#include <vector>

namespace quorvelkit {

namespace {

// The area of the standard pin, relative to its tip.
constexpr QRect markerRect(-13, -36, 26, 36);

class AccessibleMarker : public QAccessibleInterface {
 public:
  AccessibleMarker(MGLMapView& view, std::weak_ptr<const MGLPointAnnotation> marker)
      : view_(&view), marker_(std::move(marker)) {}

  bool isValid() const override { return !view_.isNull() && !marker_.expired(); }
  QObject* object() const override { return nullptr; }
  QAccessibleInterface* parent() const override {
    return QAccessible::queryAccessibleInterface(view_);
  }
  QAccessibleInterface* child(int) const override { return nullptr; }
  QAccessibleInterface* childAt(int, int) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface*) const override { return -1; }
  QAccessible::Role role() const override { return QAccessible::Graphic; }
  void setText(QAccessible::Text, const QString&) override {}

  QAccessible::State state() const override {
    QAccessible::State state;
    state.readOnly = true;
    state.invisible = !isValid() || !view_->isVisible();
    state.offscreen = !isValid() || !view_->rect().intersects(viewRect());
    return state;
  }

  QString text(QAccessible::Text kind) const override {
    const auto marker = marker_.lock();
    if (!marker || view_.isNull()) return QString();
    if (kind == QAccessible::Name) {
      const QString title = QString::fromStdString(marker->title());
      return title.isEmpty() ? MGLMapView::tr("Marker") : title;
    }
    if (kind != QAccessible::Description) return QString();
    const Coordinate at = marker->coordinate();
    const QLocale locale = view_->locale();
    return MGLMapView::tr("Latitude %1, longitude %2")
        .arg(locale.toString(at.latitude, 'f', 5), locale.toString(at.longitude, 'f', 5));
  }

  QRect rect() const override {
    if (!isValid()) return QRect();
    return QRect(view_->mapToGlobal(viewRect().topLeft()), viewRect().size());
  }

 private:
  // Requires isValid().
  QRect viewRect() const {
    return markerRect.translated(view_->convertCoordinate(marker_.lock()->coordinate()).toPoint());
  }

  const QPointer<MGLMapView> view_;
  const std::weak_ptr<const MGLPointAnnotation> marker_;
};

// The accessible map view. Its children are the widgets with an accessible name, the attribution,
// and the markers, in this order.
class AccessibleMap : public QAccessibleWidget {
 public:
  explicit AccessibleMap(MGLMapView& view)
      : QAccessibleWidget(&view, QAccessible::Grouping), view_(view) {}
  AccessibleMap(const AccessibleMap&) = delete;
  AccessibleMap& operator=(const AccessibleMap&) = delete;
  ~AccessibleMap() override { deleteMarkers(); }

  int childCount() const override {
    return accessibleWidgets().size() + static_cast<int>(markers().size());
  }

  QAccessibleInterface* child(int index) const override {
    const auto widgets = accessibleWidgets();
    if (index < 0 || index >= childCount()) return nullptr;
    if (index < widgets.size()) return QAccessible::queryAccessibleInterface(widgets[index]);
    return QAccessible::accessibleInterface(
        markers()[static_cast<std::size_t>(index - widgets.size())]);
  }

  int indexOfChild(const QAccessibleInterface* wanted) const override {
    for (int index = 0, count = childCount(); index < count; ++index) {
      if (child(index) == wanted) return index;
    }
    return -1;
  }

  // Starts with the last marker, because it is drawn above the others.
  QAccessibleInterface* childAt(int x, int y) const override {
    const auto count = accessibleWidgets().size();
    for (int index = 0; index < count; ++index) {
      if (child(index)->rect().contains(x, y)) return child(index);
    }
    for (int index = childCount() - 1; index >= count; --index) {
      if (child(index)->rect().contains(x, y)) return child(index);
    }
    return nullptr;
  }

 private:
  QList<QWidget*> accessibleWidgets() const {
    QList<QWidget*> widgets;
    for (QWidget* const widget :
         view_.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
      const bool isAccessible =
          !widget->accessibleName().isEmpty() || qobject_cast<QLabel*>(widget);
      if (isAccessible && !widget->isHidden()) widgets.append(widget);
    }
    return widgets;
  }

  const std::vector<QAccessible::Id>& markers() const {
    const auto& present = view_.annotations();
    if (std::equal(present.begin(), present.end(), annotations_.begin(), annotations_.end(),
                   [](const auto& one, const auto& other) { return one == other.lock(); })) {
      return markers_;
    }
    deleteMarkers();
    annotations_.assign(present.begin(), present.end());
    for (const auto& annotation : present) {
      auto marker = std::dynamic_pointer_cast<const MGLPointAnnotation>(annotation);
      if (!marker) continue;
      // Qt owns registered objects.
      markers_.push_back(QAccessible::registerAccessibleInterface(
          std::make_unique<AccessibleMarker>(view_, std::move(marker)).release()));
    }
    return markers_;
  }

  void deleteMarkers() const {
    for (const QAccessible::Id id : markers_)
      QAccessible::deleteAccessibleInterface(id);
    markers_.clear();
  }

  MGLMapView& view_;
  mutable std::vector<std::weak_ptr<const MGLAnnotation>> annotations_;
  mutable std::vector<QAccessible::Id> markers_;
};

QAccessibleInterface* makeAccessibleMap(const QString& className, QObject* object) {
  if (className != QLatin1String(MGLMapView::staticMetaObject.className())) return nullptr;
  auto* const view = qobject_cast<MGLMapView*>(object);
  return view == nullptr ? nullptr : std::make_unique<AccessibleMap>(*view).release();
}

}  // namespace

void installMapAccessibility() { QAccessible::installFactory(makeAccessibleMap); }

}  // namespace quorvelkit
