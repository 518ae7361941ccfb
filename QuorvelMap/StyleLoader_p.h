// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>
#include <functional>
#include <memory>

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

  StyleLoader();
  ~StyleLoader();

  /// Calls the handler once, inside the call for local files and resources, later for http and
  /// https; not at all when another check or the loader's end comes first.
  void check(const QUrl& url, Handler handler);

 private:
  void cancel();

  std::unique_ptr<QNetworkAccessManager> network_;
  QNetworkReply* reply_ = nullptr;
};

}  // namespace quorvelkit
