// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVRoute.h>
#include <QuorvelKit/QVRouteResponse.h>
#include <QuorvelMap/MGLMapView.h>
#include <QuorvelMap/MGLMapViewDelegate.h>
#include <QuorvelPlatform/Coordinate.h>
#include <QuorvelPlatform/Export.h>

#include <QPointer>
#include <concepts>
#include <memory>
#include <optional>
#include <string>
#include <utility>

class QWidget;

namespace quorvelkit {

/// A ready-made screen: requests the route between two coordinates and shows it on a map, with a
/// marker at each end. It leaves the map's style and viewport to the application, and it shows no
/// message when there is no route.
///
///     const auto screen = QVViewController::make();
///     screen->setOrigin({39.30, -76.54});
///     screen->setDestination({39.27, -76.60});
///     screen->view()->show();
///
/// It is no widget itself: it owns the widget view(), which may stand in any layout, and lives as
/// long as somebody holds it or its request is under way. Everything happens on the GUI thread; no
/// event-loop code is needed (see MainQueueHook.h). It goes before the QApplication does, and not
/// inside an event of its own widgets. A program may end, in whatever way, while the request is
/// under way: nothing is drawn or said any more, and the screen is left as it is, never destroyed.
class QUORVELKIT_EXPORT QVViewController : public MGLMapViewDelegate,
                                           public std::enable_shared_from_this<QVViewController> {
  class Construction {
    friend class QVViewController;
    Construction() = default;
  };

 public:
  /// A new screen, or one of an application's own subclass, which has `using
  /// QVViewController::QVViewController`. Gives nothing when there is no QApplication.
  template <std::derived_from<QVViewController> Controller = QVViewController>
  static std::shared_ptr<Controller> make() {
    if (!canMake()) return nullptr;
    auto controller = std::make_shared<Controller>(Construction());
    controller->mapview()->setDelegate(std::weak_ptr<MGLMapViewDelegate>(controller));
    return controller;
  }
  explicit QVViewController(Construction);
  QVViewController(std::string nibName, std::string bundle) = delete;
  ~QVViewController() override;

  QVViewController(const QVViewController&) = delete;
  QVViewController& operator=(const QVViewController&) = delete;

  /// The map, of the size of the primary screen until it is laid out. It belongs to this object.
  /// The place to set the map's style and viewport. This object is its delegate.
  MGLMapView* mapview() const { return mapview_; }

  /// The ends of the route. Both must be set before the view loads: it stops the process otherwise
  /// ("Origin must be set.", "Destination must be set."), as does reading one that is not set. Set
  /// later, they have no effect until the view loads again.
  Coordinate origin() const;
  void setOrigin(Coordinate origin) { origin_ = origin; }
  Coordinate destination() const;
  void setDestination(Coordinate destination) { destination_ = destination; }

  /// Absent until the answer is there, and when it brought none; a request that cannot be sent at
  /// all (docs/async.md) is never answered.
  const std::optional<QVRoute>& route() const { return route_; }

  /// The application's say in how the route looks. Held weakly.
  std::shared_ptr<MGLMapViewDelegate> delegate() const { return delegate_.lock(); }
  void setDelegate(std::weak_ptr<MGLMapViewDelegate> delegate) { delegate_ = std::move(delegate); }

  /// The screen's widget. The first call loads it, and so does the first one after a Qt parent has
  /// destroyed it; loading requests the route.
  QWidget* view();
  bool isViewLoaded() const { return !view_.isNull(); }

  /// Each asks the delegate with mapview(), whatever map view it was given, and answers for it
  /// where it has no answer: no image, 3 pixels, mapview()'s tint colour, alpha 1. Once mapview()
  /// is destroyed the delegate is not asked, and the colour is that of the map view given.
  std::optional<MGLAnnotationImage> imageForAnnotation(MGLMapView& mapView,
                                                       const MGLAnnotation& annotation) override;
  std::optional<double> lineWidthForPolylineAnnotation(MGLMapView& mapView,
                                                       const MGLPolyline& annotation) override;
  std::optional<QColor> strokeColorForShapeAnnotation(MGLMapView& mapView,
                                                      const MGLAnnotation& annotation) override;
  std::optional<double> alphaForShapeAnnotation(MGLMapView& mapView,
                                                const MGLAnnotation& annotation) override;

 protected:
  /// Runs once per load, when view() exists: puts the map into it and requests the route. An
  /// override calls this one.
  virtual void viewDidLoad();
  /// Runs whenever view() is laid out: gives the map its whole area.
  virtual void viewDidLayoutSubviews();
  /// Runs once for each answer, on the GUI thread, when route() is set and what it brought has been
  /// added to mapview(): the place to move the map, to add more to it, or to say that there is no
  /// route (`response->error()`, or a route without points). A request that cannot be sent at all
  /// has no answer. Does nothing unless overridden; no exception may leave it.
  virtual void didReceiveRoute(const std::shared_ptr<QVRouteResponse>& response);

 private:
  class View;

  static bool canMake();
  void drawRoute();
  // The delegate, when there is one to ask and a map view to ask it with.
  std::shared_ptr<MGLMapViewDelegate> asked() const;

  QPointer<MGLMapView> mapview_;
  QPointer<View> view_;
  std::optional<Coordinate> origin_;
  std::optional<Coordinate> destination_;
  std::optional<QVRoute> route_;
  std::weak_ptr<MGLMapViewDelegate> delegate_;
};

}  // namespace quorvelkit
