// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <functional>
#include <memory>
#include <vector>

class QNetworkAccessManager;
class QNetworkReply;

namespace quorvelkit {

struct CheckedStyle {
  /// Why the style cannot be used; empty when it can.
  QString flaw;
  /// What the style's sources want said about their data, as HTML: the engine leaves it out.
  QString attribution;
};

/// Finds out whether a style can be read before the engine is given its URL: the engine itself
/// draws nothing at all, not even lines, when it cannot read its style, and does not tell.
class StyleLoader {
 public:
  using Handler = std::function<void(const CheckedStyle& style)>;
  using NoticeHandler = std::function<void(const QString& attribution)>;

  StyleLoader();
  ~StyleLoader();

  /// Calls the handler once, inside the call for local files and resources, later for http and
  /// https; not at all when another check or the loader's end comes first. A source that is
  /// described by a document of its own (TileJSON) has its notice there: when one has been read,
  /// after the handler, the other one is called with the whole attribution known by then.
  void check(const QUrl& url, Handler handler, NoticeHandler noticeHandler);

 private:
  using Reader = std::function<void(const QByteArray& text, const QString& flaw)>;

  void read(const QUrl& url, Reader reader);
  void readDescriptions(const std::vector<QUrl>& urls, const NoticeHandler& handler);
  void cancel();

  std::unique_ptr<QNetworkAccessManager> network_;
  std::vector<QNetworkReply*> replies_;
  // One for each source, empty where it has none.
  QStringList notices_;
};

}  // namespace quorvelkit
