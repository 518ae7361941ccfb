// SPDX-License-Identifier: Apache-2.0
#include <QuorvelMap/AttributionLabel_p.h>

#include <QDesktopServices>
#include <QFontMetrics>
#include <QScrollArea>
#include <QTextBlock>
#include <QTextDocument>
#include <QUrl>
#include <algorithm>
#include <memory>

namespace quorvelkit {

namespace {

constexpr int maximumLines = 2;
constexpr int horizontalPadding = 4;
constexpr int verticalPadding = 1;
constexpr QSize wholeNoticeSize(360, 200);

// The URL behind the sign that the notice goes on.
QString moreLink() { return QStringLiteral("more:"); }

// Reads nothing but the text that it is given: no images, no style sheets.
class TextOnly : public QTextDocument {
 protected:
  QVariant loadResource(int, const QUrl&) override { return QVariant(); }
};

QString linkTo(const QString& url, const QString& html) {
  return QStringLiteral("<a href=\"%1\">%2</a>").arg(url.toHtmlEscaped(), html);
}

}  // namespace

AttributionLabel::AttributionLabel(QWidget* view) : QLabel(view) {
  setStyleSheet(
      QStringLiteral("background: rgba(255, 255, 255, 200); color: #303030; padding: %1px %2px;")
          .arg(verticalPadding)
          .arg(horizontalPadding));
  setTextFormat(Qt::RichText);
  connect(this, &QLabel::linkActivated, this, &AttributionLabel::open);
  hide();
}

void AttributionLabel::setNotice(const QString& html) {
  parts_ = partsOf(html);
  length_ = 0;
  for (const Part& part : parts_)
    length_ += part.text.size();
  setVisible(length_ > 0);
  raise();
  layOut();
}

// Line breaks and runs of spaces become one space.
std::vector<AttributionLabel::Part> AttributionLabel::partsOf(const QString& html) {
  TextOnly document;
  document.setUndoRedoEnabled(false);
  document.setHtml(html);
  std::vector<Part> parts;
  bool endsWithSpace = true;
  for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
    for (auto i = block.begin(); !i.atEnd(); ++i) {
      // The parser leaves what stands between single quotes as it is.
      QString address = i.fragment().charFormat().anchorHref();
      address.replace(QLatin1String("&amp;"), QLatin1String("&"));
      const QUrl url(address);
      const bool isLink =
          url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https");
      const QString target = isLink ? url.toString(QUrl::FullyEncoded) : QString();
      if (parts.empty() || parts.back().url != target) parts.push_back({QString(), target});
      for (const QChar c : i.fragment().text()) {
        // An image counts as a space.
        const bool isSpace = c.isSpace() || c == QChar::ObjectReplacementCharacter;
        if (isSpace && endsWithSpace) continue;
        endsWithSpace = isSpace;
        parts.back().text += endsWithSpace ? QChar(u' ') : c;
      }
    }
    if (!endsWithSpace) parts.push_back({QStringLiteral(" "), QString()});
    endsWithSpace = true;
  }
  std::erase_if(parts, [](const Part& part) { return part.text.isEmpty(); });
  if (!parts.empty() && parts.back().text == QLatin1String(" ")) parts.pop_back();
  return parts;
}

QString AttributionLabel::firstCharacters(int count) const {
  QString html;
  for (const Part& part : parts_) {
    const QString text = part.text.left(count).toHtmlEscaped();
    html += part.url.isEmpty() ? text : linkTo(part.url, text);
    count -= part.text.size();
    if (count <= 0) break;
  }
  return html;
}

bool AttributionLabel::fits(const QString& html) {
  setText(html);
  setWordWrap(false);
  const int width = parentWidget()->width();
  if (sizeHint().width() <= width) return true;
  setWordWrap(true);
  return heightForWidth(width) <= maximumLines * fontMetrics().lineSpacing() + 2 * verticalPadding +
                                      fontMetrics().lineSpacing() / 2;
}

void AttributionLabel::layOut() {
  if (length_ == 0) return;
  if (!fits(firstCharacters(length_))) {
    const QString more = linkTo(moreLink(), QStringLiteral("…"));
    // The longest beginning that fits lies in [shortest, longest).
    int shortest = 0;
    int longest = std::min(length_, 1000);
    while (longest - shortest > 1) {
      const int middle = (shortest + longest) / 2;
      (fits(firstCharacters(middle) + more) ? shortest : longest) = middle;
    }
    fits(firstCharacters(shortest) + more);
  }
  const QSize view = parentWidget()->size();
  QSize size = sizeHint();
  if (wordWrap()) size = QSize(view.width(), heightForWidth(view.width()));
  resize(size);
  move(view.width() - width(), view.height() - height());
}

void AttributionLabel::open(const QString& link) {
  if (link != moreLink()) {
    QDesktopServices::openUrl(QUrl(link));
    return;
  }
  // Closed by a click outside; Qt destroys it then.
  auto* const whole = std::make_unique<QScrollArea>(this).release();
  whole->setWindowFlags(Qt::Popup);
  whole->setAttribute(Qt::WA_DeleteOnClose);
  auto notice = std::make_unique<QLabel>(firstCharacters(length_));
  notice->setTextFormat(Qt::RichText);
  notice->setWordWrap(true);
  notice->setOpenExternalLinks(true);
  notice->setMargin(horizontalPadding);
  whole->setWidget(notice.release());
  whole->setWidgetResizable(true);
  whole->resize(wholeNoticeSize);
  whole->move(mapToGlobal(rect().bottomRight()) -
              QPoint(wholeNoticeSize.width(), wholeNoticeSize.height()));
  whole->show();
}

}  // namespace quorvelkit
