// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVRoute.h>

#include <QWidget>
#include <functional>
#include <vector>

class QLabel;
class QListWidget;

/// Shows the totals and the turns of a route as text, or a message.
class TurnList : public QWidget {
 public:
  /// The handler is called when the user selects a turn.
  explicit TurnList(std::function<void(quorvelkit::Coordinate turn)> selected);

  void showMessage(const QString& message);
  void showRoute(const quorvelkit::QVRoute& route);

 private:
  void select(int row);

  const std::function<void(quorvelkit::Coordinate turn)> selected_;
  QLabel* const text_;
  QListWidget* const list_;
  std::vector<quorvelkit::Coordinate> coordinates_;
};
