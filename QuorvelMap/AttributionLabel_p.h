// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QLabel>
#include <QString>
#include <vector>

namespace quorvelkit {

/// The notice of map data in the lower right corner of a view: text and links to http and https
/// URLs only, whatever HTML it is given, on two lines at most. What does not fit there is shown in
/// a window of its own when the sign at the end of the second line is clicked.
class AttributionLabel : public QLabel {
 public:
  explicit AttributionLabel(QWidget* view);

  /// Hides the label when there is no text in it.
  void setNotice(const QString& html);
  /// Fits the notice into the view.
  void layOut();

 private:
  struct Part {
    QString text;
    // Empty outside links.
    QString url;
  };

  static std::vector<Part> partsOf(const QString& html);
  QString firstCharacters(int count) const;
  bool fits(const QString& html);
  void open(const QString& link);

  std::vector<Part> parts_;
  int length_ = 0;
};

}  // namespace quorvelkit
