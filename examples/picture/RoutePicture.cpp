// SPDX-License-Identifier: Apache-2.0
#include "RoutePicture.h"

#include <QFile>
#include <utility>

using namespace quorvelkit;

namespace {

// So that the pins, which stand above the ends, are inside the picture.
constexpr QMargins margins(40, 70, 40, 40);

QString pin(const QPointF& at, const QColor& color) {
  return QStringLiteral(
             "<path transform=\"translate(%1 %2)\" d=\"M0 0C-4-8-11-13-11-21a11 11 0 0 1 22 "
             "0C11-13 4-8 "
             "0 0z\" fill=\"%3\" stroke=\"#fff\" stroke-width=\"1.5\"/>\n")
      .arg(at.x(), 0, 'f', 1)
      .arg(at.y(), 0, 'f', 1)
      .arg(color.name());
}

}  // namespace

RoutePicture::RoutePicture(Line line, const QUrl& style, const QSize& size)
    : line_(std::move(line)), delegate_(std::make_shared<RouteDelegate>(lightTheme())) {
  map_.setDelegate(delegate_);
  map_.setShowsZoomButtons(false);
  map_.resize(size);
  if (!style.isEmpty()) map_.setStyleURL(style);
}

void RoutePicture::addAnnotations() {
  const auto route = std::make_shared<MGLPolyline>(line_);
  MGLMapView::Annotations annotations{delegate_->makeOutline(*route), route};
  for (const Coordinate& end : {line_.front(), line_.back()}) {
    auto marker = std::make_shared<MGLPointAnnotation>();
    marker->setCoordinate(end);
    annotations.push_back(marker);
  }
  map_.addAnnotations(annotations);
}

void RoutePicture::save(const QString& file, std::function<void(QString problem)> handler) {
  const bool isSVG = file.endsWith(QStringLiteral(".svg"), Qt::CaseInsensitive);
  if (!isSVG) addAnnotations();
  map_.show();
  map_.setVisibleCoordinates(line_, margins);
  const QString mapFile = isSVG ? folder_.filePath(QStringLiteral("map.png")) : file;
  screenshot_.emplace(
      map_, mapFile, [] { return true; },
      [this, isSVG, file, mapFile, moved = std::move(handler)](const QString& problem) {
        moved(isSVG && problem.isEmpty() ? saveSVG(file, mapFile) : problem);
      });
}

QString RoutePicture::shapes() const {
  QString points;
  for (const Coordinate& coordinate : line_) {
    const QPointF at = map_.convertCoordinate(coordinate);
    points += QStringLiteral("%1,%2 ").arg(at.x(), 0, 'f', 1).arg(at.y(), 0, 'f', 1);
  }
  const Theme theme = lightTheme();
  QString text;
  for (const auto& [color, width] : {std::pair(theme.outline, 9), std::pair(theme.line, 5)}) {
    text += QStringLiteral(
                "<polyline points=\"%1\" fill=\"none\" stroke=\"%2\" stroke-width=\"%3\" "
                "stroke-linecap=\"round\" stroke-linejoin=\"round\"/>\n")
                .arg(points.trimmed(), color.name())
                .arg(width);
  }
  return text + pin(map_.convertCoordinate(line_.front()), QColor(0x1b, 0x8a, 0x4b)) +
         pin(map_.convertCoordinate(line_.back()), QColor(0xd6, 0x33, 0x3f));
}

QString RoutePicture::saveSVG(const QString& file, const QString& mapFile) const {
  QFile map(mapFile), output(file);
  QString failure = QStringLiteral("%1 cannot be written").arg(file);
  if (!map.open(QIODevice::ReadOnly) || !output.open(QIODevice::WriteOnly)) return failure;
  const QString text =
      QStringLiteral(
          "<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\" "
          "width=\"%1\" height=\"%2\" viewBox=\"0 0 %1 %2\">\n"
          "<image width=\"%1\" height=\"%2\" xlink:href=\"data:image/png;base64,%3\"/>\n%4</svg>\n")
          .arg(map_.width())
          .arg(map_.height())
          .arg(QString::fromLatin1(map.readAll().toBase64()), shapes());
  output.write(text.toUtf8());
  return output.flush() ? QString() : failure;
}
