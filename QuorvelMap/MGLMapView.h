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

/// A map to move and zoom with mouse, wheel, fingers and keys, and the annotations drawn on it.
///
/// Dragging moves the map. The wheel, two fingers and a double click or tap zoom about their place.
/// With the keyboard focus, the arrow keys move the map, plus and minus zoom, and Home shows all
/// lines (all markers if there are no lines). Assistive programs read the accessible name of the
/// view ("Map" unless set), and its markers by their titles.
///
/// The map is drawn by Qt Location's Mapbox GL engine. Where that cannot run (no OpenGL, a plugin
/// or driver missing) a simpler engine takes its place, at the last a plain one of this library's
/// own, so that lines and markers are always seen; engineNote() tells which and why. With the
/// default style nothing goes out to the network (docs/map.md says what the engine asks the system
/// about it), and map data are kept in memory, never on disk.
///
/// The engine starts when the view is shown first, and ends with QCoreApplication::exec(). Use the
/// view on the GUI thread only, and destroy it before the QApplication.
class QUORVELKIT_EXPORT MGLMapView : public QWidget {
  Q_OBJECT

 public:
  using Annotations = std::vector<std::shared_ptr<const MGLAnnotation>>;

  explicit MGLMapView(const QRect& frame = QRect(), QWidget* parent = nullptr);
  ~MGLMapView() override;

  /// Position in the parent, and size.
  QRect frame() const { return geometry(); }
  void setFrame(const QRect& frame) { setGeometry(frame); }

  /// The colour of lines for which the delegate names none: the palette's highlight colour unless
  /// set. An invalid colour goes back to that. Lines drawn already keep theirs.
  QColor tintColor() const;
  void setTintColor(const QColor& color);

  /// Asked for the looks of annotations while they are added. Held weakly.
  std::shared_ptr<MGLMapViewDelegate> delegate() const;
  void setDelegate(std::weak_ptr<MGLMapViewDelegate> delegate);

  /// A Mapbox style (version 8) at an http, https, file or qrc URL; the map goes over to it once
  /// it has been read. One that cannot be read leaves the map on the default style and its reason
  /// in engineNote(). An empty URL means the default style: a plain background. The "attribution"
  /// of the style's sources, and of the TileJSON documents that their "url" names, is kept in
  /// sight.
  QUrl styleURL() const;
  void setStyleURL(const QUrl& url);

  /// A server of raster tiles at <URL>/{z}/{x}/{y}.png for machines without the Mapbox GL engine.
  /// None unless set. The attribution is what the tiles' data want said about them; it is kept in
  /// sight while they are. Takes effect when the engine starts.
  QUrl tileHost() const;
  void setTileHost(const QUrl& url, const QString& attribution = QString());

  /// The middle of the view; (0, 0) at first. Engines keep the world's edges out of sight, so what
  /// is read back can differ from what was set.
  Coordinate centerCoordinate() const;
  void setCenterCoordinate(Coordinate center);
  /// The whole world is 512 device-independent pixels wide at level 0, twice that at 1, and so on.
  double zoomLevel() const;
  void setZoomLevel(double level);
  /// Moves and zooms so that the positions are in view, as large as the present size allows when
  /// the given margins (device-independent pixels) stay free, but not beyond level 17. Positions
  /// that are not finite are left out; does nothing when there are no others.
  void setVisibleCoordinates(const std::vector<Coordinate>& coordinates,
                             const QMargins& edgePadding = QMargins());
  /// Where a position is in this view, in device-independent pixels from its upper left corner, and
  /// the position at such a place.
  QPointF convertCoordinate(Coordinate coordinate) const;
  Coordinate convertPoint(const QPointF& point) const;

  /// In the order they were added.
  const Annotations& annotations() const;
  /// Adds and draws them, later ones above, but markers always above lines. Empty pointers and
  /// those the view has already are left out.
  void addAnnotations(const Annotations& annotations);
  void removeAnnotations(const Annotations& annotations);

  /// Which engine draws, and what was missing when it is not the first choice. For people to read;
  /// an engine that fails later, or a style that arrives, changes it.
  QString engineNote() const;

  /// The buttons for zooming in the upper right corner, and the scale bar in the lower left one, in
  /// meters or in feet and miles as the widget's locale() has it. Both are shown unless hidden.
  bool showsZoomButtons() const;
  void setShowsZoomButtons(bool shown);
  bool showsScaleBar() const;
  void setShowsScaleBar(bool shown);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
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
