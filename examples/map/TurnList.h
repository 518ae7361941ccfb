// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVRoute.h>

#include <QWidget>
#include <functional>
#include <vector>

class QLabel;
class QListWidget;

/// A route's totals and turns as text, or a message in their place.
class TurnList : public QWidget {
 public:
  /// Called with the place of the turn that the user chooses.
  explicit TurnList(std::function<void(quorvelkit::Coordinate place)> chosen);

  void showMessage(const QString& message);
  void showRoute(const quorvelkit::QVRoute& route);

 private:
  void choose(int row);

  const std::function<void(quorvelkit::Coordinate place)> chosen_;
  QLabel* const text_;
  QListWidget* const list_;
  std::vector<quorvelkit::Coordinate> places_;
};
