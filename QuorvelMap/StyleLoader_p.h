// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelMap/StyleDocument_p.h>

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

class QNetworkAccessManager;
class QNetworkReply;

namespace quorvelkit {

struct LoadedStyle {
  /// Why the style cannot be used; empty when it can.
  QString flaw;
  /// What to give to the engine: the style with the descriptions of its sources in it.
  QByteArray text;
  /// What the style's sources want said about their data, as HTML.
  QString attribution;
  /// The sources that are left out, and why.
  QStringList problems;
};

/// Reads a style and the documents (TileJSON) that describe its sources, so that the engine is
/// given what has been read and checked: it draws nothing at all, not even lines, when it cannot
/// read its style, and does not tell.
class StyleLoader {
 public:
  using Handler = std::function<void(const LoadedStyle& style)>;

  StyleLoader();
  ~StyleLoader();

  /// Calls the handler once, inside the call when all is in local files and resources, later for
  /// http and https; not at all when another load, cancel() or the loader's end comes first.
  void load(const QUrl& url, Handler handler);
  void cancel();

 private:
  using Reader = std::function<void(const QByteArray& text, const QString& flaw)>;

  void read(const QUrl& url, Reader reader);
  void finishOne(const Handler& handler);

  std::unique_ptr<QNetworkAccessManager> network_;
  std::vector<QNetworkReply*> replies_;
  StyleDocument document_;
  QStringList problems_;
  // Descriptions on the way.
  std::size_t missing_ = 0;
};

}  // namespace quorvelkit
