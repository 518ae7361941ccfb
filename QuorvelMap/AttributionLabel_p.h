// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QLabel>
#include <QString>
#include <vector>

namespace quorvelkit {

/// A label that shows the attribution in the lower right corner of a map view. Shows only the text
/// of the HTML and its links to http and https URLs. Uses at most two lines. If the text is longer,
/// the second line ends with a "…" link that opens the whole text in a popup window.
class AttributionLabel : public QLabel {
 public:
  explicit AttributionLabel(QWidget* view);

  /// Hides the label if the HTML contains no text.
  void setHtml(const QString& html);
  /// Fits the text into the view.
  void layOut();

 private:
  struct Fragment {
    QString text;
    // Empty if the text is not a link.
    QString url;
  };

  static std::vector<Fragment> parseFragments(const QString& html);
  QString htmlOfFirst(int characterCount) const;
  bool setTextAndFit(const QString& html);
  void open(const QString& link);

  std::vector<Fragment> fragments_;
  int length_ = 0;
};

}  // namespace quorvelkit
