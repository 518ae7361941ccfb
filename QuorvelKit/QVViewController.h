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

/// Requests the route between two coordinates and shows it on a map view, with a marker at each
/// end. The application sets the style and the viewport of the map. The controller shows no message
/// if there is no route.
///
///     const auto screen = QVViewController::make();
///     screen->setOrigin({39.30, -76.54});
///     screen->setDestination({39.27, -76.60});
///     screen->view()->show();
///
/// The controller is not a widget. It owns the widget view(), which can be part of any layout. The
/// completion handler of the request shares the ownership of the controller. Use it on the GUI
/// thread. The application needs no event-loop code for it (see MainQueueHook.h). Destroy it before
/// the QApplication, and not inside an event of its own widgets. The process may end while the
/// request runs. Then nothing is drawn, and the controller is never destroyed.
class QUORVELKIT_EXPORT QVViewController : public MGLMapViewDelegate,
                                           public std::enable_shared_from_this<QVViewController> {
  class Construction {
    friend class QVViewController;
    Construction() = default;
  };

 public:
  /// Makes a controller. An application's subclass needs the line `using
  /// QVViewController::QVViewController`. Returns null if there is no QApplication.
  template <std::derived_from<QVViewController> Controller = QVViewController>
  static std::shared_ptr<Controller> make() {
    if (!canMake()) return nullptr;
    auto controller = std::make_shared<Controller>(Construction());
    controller->mapview()->setDelegate(std::weak_ptr<MGLMapViewDelegate>(controller));
    return controller;
  }
  /// Only make() calls it.
  explicit QVViewController(Construction);
  QVViewController(std::string nibName, std::string bundle) = delete;
  ~QVViewController() override;

  QVViewController(const QVViewController&) = delete;
  QVViewController& operator=(const QVViewController&) = delete;

  /// The map view. This object owns it and is its delegate. Before the first layout it has the size
  /// of the primary screen. Set the style and the viewport of the map here.
  MGLMapView* mapview() const { return mapview_; }

  /// The ends of the route. If one is not set when the view loads, the process stops ("Origin must
  /// be set.", "Destination must be set."). A getter also stops the process if its value is not
  /// set. Later changes take effect when the view loads again.
  Coordinate origin() const;
  void setOrigin(Coordinate origin) { origin_ = origin; }
  Coordinate destination() const;
  void setDestination(Coordinate destination) { destination_ = destination; }

  /// Absent before the response arrives and if the response contains no route. A request that
  /// cannot be sent (docs/async.md) has no response.
  const std::optional<QVRoute>& route() const { return route_; }

  /// Decides the appearance of the route. The controller does not own it.
  std::shared_ptr<MGLMapViewDelegate> delegate() const { return delegate_.lock(); }
  void setDelegate(std::weak_ptr<MGLMapViewDelegate> delegate) { delegate_ = std::move(delegate); }

  /// The root widget. The first call makes it and requests the route. So does the first call after
  /// a Qt parent has deleted the widget.
  QWidget* view();
  /// Returns true if the root widget exists.
  bool isViewLoaded() const { return !view_.isNull(); }

  /// These functions call the delegate with mapview() and ignore their argument `mapView`. If the
  /// delegate returns no value, they return the default: no image, 3 pixels, the tint color of
  /// mapview(), alpha 1. After mapview() was deleted, they do not call the delegate, and the
  /// default color is the tint color of `mapView`.
  std::optional<MGLAnnotationImage> imageForAnnotation(MGLMapView& mapView,
                                                       const MGLAnnotation& annotation) override;
  std::optional<double> lineWidthForPolylineAnnotation(MGLMapView& mapView,
                                                       const MGLPolyline& annotation) override;
  std::optional<QColor> strokeColorForShapeAnnotation(MGLMapView& mapView,
                                                      const MGLAnnotation& annotation) override;
  std::optional<double> alphaForShapeAnnotation(MGLMapView& mapView,
                                                const MGLAnnotation& annotation) override;

 protected:
  /// Called once per load, after view() was made. Adds the map view to it and requests the route.
  /// An override must call this function.
  virtual void viewDidLoad();
  /// Called when view() was resized. Resizes the map view to it.
  virtual void viewDidLayoutSubviews();
  /// Called on the GUI thread once for each response, after route() was set and the annotations of
  /// the route were added to mapview(). An override can move the map, add annotations, or show that
  /// there is no route (`response->error()`, or a route without points). Not called for a request
  /// that cannot be sent. The base function does nothing. Must not throw.
  virtual void didReceiveRoute(const std::shared_ptr<QVRouteResponse>& response);

 private:
  class View;

  static bool canMake();
  void drawRoute();
  // Null if the delegate or the map view was deleted.
  std::shared_ptr<MGLMapViewDelegate> activeDelegate() const;

  QPointer<MGLMapView> mapview_;
  QPointer<View> view_;
  std::optional<Coordinate> origin_;
  std::optional<Coordinate> destination_;
  std::optional<QVRoute> route_;
  std::weak_ptr<MGLMapViewDelegate> delegate_;
};

}  // namespace quorvelkit
