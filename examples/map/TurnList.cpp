// SPDX-License-Identifier: Apache-2.0
#include "TurnList.h"

#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>
#include <cmath>
#include <memory>

using namespace quorvelkit;

namespace {

QString distanceText(double miles, const QLocale& locale) {
  const bool isMetric = locale.measurementSystem() == QLocale::MetricSystem;
  const double large = isMetric ? miles * 1.609344 : miles;
  if (large >= 0.1) return locale.toString(large, 'f', 1) + (isMetric ? " km" : " mi");
  const double small = isMetric ? large * 1000 : large * 5280;
  return locale.toString(std::round(small / 10) * 10, 'f', 0) + (isMetric ? " m" : " ft");
}

QString instructionText(const QVTurn& turn) {
  return QString::fromStdString(
      turn.instruction().value_or(std::string(rawValue(turn.direction()))));
}

}  // namespace

TurnList::TurnList(std::function<void(Coordinate turn)> selected)
    : selected_(std::move(selected)), text_(new QLabel(this)), list_(new QListWidget(this)) {
  auto layout = std::make_unique<QVBoxLayout>();
  layout->addWidget(text_);
  layout->addWidget(list_);
  setLayout(layout.release());
  text_->setObjectName("message");
  text_->setWordWrap(true);
  text_->setMargin(4);
  list_->setWordWrap(true);
  list_->setAlternatingRowColors(true);
  list_->setSpacing(3);
  list_->setFrameShape(QFrame::NoFrame);
  list_->setAccessibleName("Turns");
  // A click on the current turn does not change the current row.
  connect(list_, &QListWidget::currentRowChanged, this, &TurnList::select);
  connect(list_, &QListWidget::clicked, this,
          [this](const QModelIndex& index) { select(index.row()); });
}

void TurnList::showMessage(const QString& message) {
  coordinates_.clear();
  list_->clear();
  list_->hide();
  text_->setAlignment(Qt::AlignCenter);
  text_->setText(message);
}

void TurnList::showRoute(const QVRoute& route) {
  showMessage(QString());
  list_->show();
  double previous = 0;
  for (const QVPoint& point : route.points()) {
    if (point.turn() == nullptr) continue;
    const double here = point.distanceInMiles().value_or(previous);
    coordinates_.push_back(point.location());
    const QString distance =
        coordinates_.size() == 1 ? "Start" : distanceText(here - previous, locale());
    list_->addItem(distance + '\n' + instructionText(*point.turn()));
    previous = here;
  }
  text_->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  text_->setText(QString("%1, %2 min, %3 turns")
                     .arg(distanceText(route.totalDistanceInMiles().value_or(0), locale()))
                     .arg(std::lround(route.totalDurationInMinutes().value_or(0)))
                     .arg(list_->count()));
}

void TurnList::select(int row) {
  if (row >= 0) selected_(coordinates_.at(static_cast<std::size_t>(row)));
}
