// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelMap/MGLAnnotation.h>
#include <QuorvelPlatform/Coordinate.h>
#include <QuorvelPlatform/Export.h>

#include <QColor>
#include <QMargins>
#include <QPointF>
#include <QRect>
#include <QString>
#include <QUrl>
#include <QWidget>
#include <memory>
#include <vector>

namespace quorvelkit {

class MGLMapViewDelegate;

/// A widget that shows a map with annotations. The user can move and zoom the map.
///
/// Dragging moves the map. The mouse wheel, two fingers, a double click and a double tap zoom about
/// their position. With the keyboard focus, the arrow keys move the map, the plus and minus keys
/// zoom, and Home shows all lines (all markers if there are no lines). Assistive programs get the
/// accessible name of the view (default: "Map") and the titles of its markers.
///
/// The Mapbox GL engine of Qt Location draws the map. If it cannot run (no OpenGL, or a plugin or a
/// driver is missing), a simpler engine is used. The last choice is a painter of this library that
/// always works and draws the lines and markers on a plain background. engineNote() names the
/// engine and the reason. With the default style the view sends nothing to the network; docs/map.md
/// lists the system calls of the engine. The view keeps map data in memory and writes none to disk.
///
/// The engine starts when the view is shown for the first time, and stops when
/// QCoreApplication::exec() ends. Use the view on the GUI thread, and destroy it before the
/// QApplication.
class QUORVELKIT_EXPORT MGLMapView : public QWidget {
  Q_OBJECT

 public:
  /// A list of annotations.
  using Annotations = std::vector<std::shared_ptr<const MGLAnnotation>>;

  /// Makes a view with this position and size in the parent widget.
  explicit MGLMapView(const QRect& frame = QRect(), QWidget* parent = nullptr);
  ~MGLMapView() override;

  /// The position in the parent widget, and the size.
  QRect frame() const { return geometry(); }
  void setFrame(const QRect& frame) { setGeometry(frame); }

  /// The color of lines for which the delegate returns no color. Default, also after setting an
  /// invalid color: the highlight color of the palette. Does not change lines that were added
  /// before.
  QColor tintColor() const;
  void setTintColor(const QColor& color);

  /// Decides the appearance of annotations when they are added. The view does not own it.
  std::shared_ptr<MGLMapViewDelegate> delegate() const;
  void setDelegate(std::weak_ptr<MGLMapViewDelegate> delegate);

  /// The http, https, file or qrc URL of a Mapbox style (version 8). The view shows the style when
  /// it is loaded. If that fails, the view shows the default style, and engineNote() contains the
  /// reason. An empty URL means the default style: a plain background. The view shows the
  /// "attribution" of the style's sources and of the TileJSON documents at their "url".
  QUrl styleURL() const;
  void setStyleURL(const QUrl& url);

  /// A server of raster tiles at URL/{z}/{x}/{y}.png, used if the Mapbox GL engine cannot run.
  /// Default: none. The view shows the attribution (HTML) while it uses the tiles. Takes effect
  /// when the engine starts.
  QUrl tileHost() const;
  void setTileHost(const QUrl& url, const QString& attribution = QString());

  /// The coordinate at the center of the view. Default: (0, 0). The engine moves it if the view
  /// would show the upper or lower edge of the world, so the value can differ from the one that was
  /// set. Setting a coordinate that is not finite has no effect.
  Coordinate centerCoordinate() const;
  void setCenterCoordinate(Coordinate center);
  /// At level 0, the world is 512 device-independent pixels wide; each level doubles the width.
  /// Clamped to [0, 20]. Setting NaN has no effect. Default: 0.
  double zoomLevel() const;
  void setZoomLevel(double level);
  /// Sets the center and the largest zoom level, at most 17, at which the view shows all
  /// coordinates inside the margins (device-independent pixels). Uses the current size of the view.
  /// Ignores coordinates that are not finite, and has no effect if there are no others.
  void setVisibleCoordinates(const std::vector<Coordinate>& coordinates,
                             const QMargins& edgePadding = QMargins());
  /// Shows all lines (all markers if there are no lines), with space for markers and their labels.
  /// If the view is large enough, the visible zoom buttons, the scale bar and the attribution do
  /// not cover markers. Uses the current size of the view. Returns false and has no effect if there
  /// is nothing to show. The Home key does the same.
  bool showAnnotations();
  /// Converts between coordinates and points of this view. Units of points: device-independent
  /// pixels from the upper left corner.
  QPointF convertCoordinate(Coordinate coordinate) const;
  Coordinate convertPoint(const QPointF& point) const;

  /// In the order in which they were added.
  const Annotations& annotations() const;
  /// Adds and draws annotations. Later lines are drawn above earlier ones, later markers above
  /// earlier ones, and all markers above all lines. Ignores null pointers and annotations that the
  /// view already contains.
  void addAnnotations(const Annotations& annotations);
  /// Removes annotations. Ignores those that the view does not contain.
  void removeAnnotations(const Annotations& annotations);

  /// A text for humans: the engine in use, why the preferred engines cannot run, and the errors of
  /// the style. It changes when the engine or the style changes or fails. The Mapbox GL engine does
  /// not say to which view an error belongs. Therefore each note contains its errors in all views.
  QString engineNote() const;

  /// The zoom buttons in the upper right corner and the scale bar in the lower left corner. The
  /// scale bar uses meters and kilometers, or feet and miles, by the widget's locale(). Default:
  /// both are shown.
  bool showsZoomButtons() const;
  void setShowsZoomButtons(bool shown);
  bool showsScaleBar() const;
  void setShowsScaleBar(bool shown);

  /// The size hints of QWidget.
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  /// Event handlers of QWidget.
  bool event(QEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  struct Private;
  const std::unique_ptr<Private> d_;
};

}  // namespace quorvelkit
