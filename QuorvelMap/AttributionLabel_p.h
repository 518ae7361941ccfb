// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QLabel>
#include <QString>
#include <QStringList>
#include <vector>

namespace quorvelkit {

/// A label that shows the attributions in the lower right corner of a map view. Shows only the text
/// of the HTML and its links to http and https URLs. Uses at most two lines. If the text is longer,
/// the second line ends with a "…" link that opens the whole text in a popup window.
class AttributionLabel : public QLabel {
 public:
  explicit AttributionLabel(QWidget* view);

  /// Each text is a separate document, so that one with an open tag or comment does not change the
  /// others. Hides the label if they contain no text.
  void setHtml(const QStringList& texts);
  /// Fits the text into the view.
  void layOut();

 private:
  struct Fragment {
    QString text;
    // Empty if the text is not a link.
    QString url;
  };

  void append(const QString& html);
  QString htmlOfFirst(int characterCount) const;
  bool setTextAndFit(const QString& html);
  void open(const QString& link);

  std::vector<Fragment> fragments_;
  int length_ = 0;
};

}  // namespace quorvelkit
