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

/// Finds out whether a style can be read before the engine is given its URL: the engine itself
/// draws nothing at all, not even lines, when it cannot read its style, and does not tell.
class StyleLoader {
 public:
  /// With an empty reason the style is sound.
  using Handler = std::function<void(const QString& reason)>;

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
