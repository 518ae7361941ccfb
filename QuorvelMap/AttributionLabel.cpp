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
constexpr QSize popupSize(360, 200);

// The URL of the "…" link.
QString moreLink() { return QStringLiteral("more:"); }

// Loads no images and no style sheets.
class TextOnlyDocument : public QTextDocument {
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

void AttributionLabel::setHtml(const QStringList& texts) {
  fragments_.clear();
  for (const QString& html : texts)
    append(html);
  if (!fragments_.empty() && fragments_.back().text == QLatin1String(" ")) fragments_.pop_back();
  length_ = 0;
  for (const Fragment& fragment : fragments_)
    length_ += fragment.text.size();
  setVisible(length_ > 0);
  raise();
  layOut();
}

// Replaces line breaks and sequences of spaces by one space.
void AttributionLabel::append(const QString& html) {
  TextOnlyDocument document;
  document.setUndoRedoEnabled(false);
  document.setHtml(html);
  bool endsWithSpace = true;
  for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
    for (auto i = block.begin(); !i.atEnd(); ++i) {
      // QTextDocument does not unescape attributes in single quotes.
      QString href = i.fragment().charFormat().anchorHref();
      href.replace(QLatin1String("&amp;"), QLatin1String("&"));
      const QUrl url(href);
      const bool isLink = !url.host().isEmpty() && (url.scheme() == QLatin1String("http") ||
                                                    url.scheme() == QLatin1String("https"));
      const QString target = isLink ? url.toString(QUrl::FullyEncoded) : QString();
      if (fragments_.empty() || fragments_.back().url != target)
        fragments_.push_back({QString(), target});
      for (const QChar c : i.fragment().text()) {
        const bool isImage = c == QChar::ObjectReplacementCharacter;
        const bool isSpace = c.isSpace() || isImage;
        if (isSpace && endsWithSpace) continue;
        endsWithSpace = isSpace;
        fragments_.back().text += endsWithSpace ? QChar(u' ') : c;
      }
    }
    if (!endsWithSpace) fragments_.push_back({QStringLiteral(" "), QString()});
    endsWithSpace = true;
  }
  std::erase_if(fragments_, [](const Fragment& fragment) { return fragment.text.isEmpty(); });
}

QString AttributionLabel::htmlOfFirst(int characterCount) const {
  QString html;
  for (const Fragment& fragment : fragments_) {
    const QString text = fragment.text.left(characterCount).toHtmlEscaped();
    html += fragment.url.isEmpty() ? text : linkTo(fragment.url, text);
    characterCount -= fragment.text.size();
    if (characterCount <= 0) break;
  }
  return html;
}

// Returns false if the text needs more than the maximum number of lines.
bool AttributionLabel::setTextAndFit(const QString& html) {
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
  if (!setTextAndFit(htmlOfFirst(length_))) {
    const QString more = linkTo(moreLink(), QStringLiteral("…"));
    // Binary search for the largest number of characters that fits, in [fitting, tooLong).
    int fitting = 0;
    int tooLong = std::min(length_, 1000);
    while (tooLong - fitting > 1) {
      const int middle = (fitting + tooLong) / 2;
      (setTextAndFit(htmlOfFirst(middle) + more) ? fitting : tooLong) = middle;
    }
    setTextAndFit(htmlOfFirst(fitting) + more);
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
  // Qt closes the popup on a click outside and deletes it then.
  auto* const popup = std::make_unique<QScrollArea>(this).release();
  popup->setWindowFlags(Qt::Popup);
  popup->setAttribute(Qt::WA_DeleteOnClose);
  auto label = std::make_unique<QLabel>(htmlOfFirst(length_));
  label->setTextFormat(Qt::RichText);
  label->setWordWrap(true);
  label->setOpenExternalLinks(true);
  label->setMargin(horizontalPadding);
  popup->setWidget(label.release());
  popup->setWidgetResizable(true);
  popup->resize(popupSize);
  popup->move(mapToGlobal(rect().bottomRight()) - QPoint(popupSize.width(), popupSize.height()));
  popup->show();
}

}  // namespace quorvelkit
