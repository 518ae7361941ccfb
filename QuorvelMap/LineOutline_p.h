// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QPainterPath>
#include <QPolygonF>

namespace quorvelkit {

/// Returns the outline of a line with round joins and caps, to be filled. Used instead of Qt's own
/// round joins: where the direction of a line passes the horizontal, Qt 5.15 adds almost a full
/// circle, and the edge of the line has a dark spot there.
QPainterPath outlineOf(const QPolygonF& line, double width);

}  // namespace quorvelkit
