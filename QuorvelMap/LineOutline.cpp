// SPDX-License-Identifier: Apache-2.0
#include <QuorvelMap/LineOutline_p.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace quorvelkit {

namespace {

constexpr double pi = std::numbers::pi;
// The largest distance between an arc and a straight line that replaces it, in pixels.
constexpr double tolerance = 0.02;

double lengthOf(QPointF vector) { return std::hypot(vector.x(), vector.y()); }

// A part of the outline on the left side of the line: the offset edge of one segment.
struct Edge {
  Edge(QPointF from, QPointF to, double radius) : length(lengthOf(to - from)) {
    const QPointF step = to - from;
    normal = QPointF(step.y(), -step.x()) * (radius / length);
  }
  double length;
  // From the line to its edge.
  QPointF normal;
};

// Adds an arc around the center, clockwise on the screen.
void addArc(QPainterPath& path, QPointF center, QPointF start, double angle, double radius) {
  const double startAngle = std::atan2(-start.y(), start.x());
  const QPointF corner(radius, radius);
  path.arcTo(QRectF(center - corner, center + corner), startAngle * 180 / pi, -angle * 180 / pi);
}

// Adds the outline between two edges at their common point. If the line turns to the right, it
// needs an arc on its left side. Otherwise the edges meet, unless a segment is too short.
void addJoin(QPainterPath& path, QPointF point, const Edge& before, const Edge& after,
             double radius) {
  const QPointF a = before.normal;
  const QPointF b = after.normal;
  const double angle = std::atan2(a.x() * b.y() - a.y() * b.x(), QPointF::dotProduct(a, b));
  const double meeting = radius * std::tan(std::abs(angle) / 2);
  if (angle >= 0 && radius * (1 - std::cos(angle / 2)) > tolerance) {
    addArc(path, point, a, angle, radius);
  } else if (angle < 0 && meeting <= std::min(before.length, after.length) / 2) {
    path.lineTo(point + (a + b) / (1 + std::cos(angle)));
    return;
  } else {
    path.lineTo(point + a);
    if (angle < 0) path.lineTo(point);
  }
  path.lineTo(point + b);
}

// Adds the outline on the left side of the line and the cap at its end.
void addSide(QPainterPath& path, const QPolygonF& line, double radius) {
  Edge edge(line[0], line[1], radius);
  for (int i = 2; i < line.size(); ++i) {
    const Edge next(line[i - 1], line[i], radius);
    addJoin(path, line[i - 1], edge, next, radius);
    edge = next;
  }
  addArc(path, line.back(), edge.normal, pi, radius);
}

}  // namespace

QPainterPath outlineOf(const QPolygonF& line, double width) {
  QPolygonF points = line;
  points.erase(std::unique(points.begin(), points.end()), points.end());
  QPainterPath path;
  path.setFillRule(Qt::WindingFill);
  const double radius = width / 2;
  if (points.size() < 2) {
    if (!points.isEmpty()) path.addEllipse(points.front(), radius, radius);
    return path;
  }
  path.moveTo(points[0] + Edge(points[0], points[1], radius).normal);
  addSide(path, points, radius);
  std::reverse(points.begin(), points.end());
  addSide(path, points, radius);
  path.closeSubpath();
  return path;
}

}  // namespace quorvelkit
