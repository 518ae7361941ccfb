// SPDX-License-Identifier: Apache-2.0
#include <QuorvelMap/StyleLoader_p.h>

#include <QFile>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <algorithm>
#include <utility>

namespace quorvelkit {

namespace {

constexpr int timeoutInMilliseconds = 15000;

// Does not contain the URL, because its query may contain a secret.
QString errorText(const QNetworkReply& reply) {
  const int status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
  return status >= 400 ? QStringLiteral("HTTP status %1").arg(status) : reply.errorString();
}

}  // namespace

StyleLoader::StyleLoader() = default;
StyleLoader::~StyleLoader() { cancel(); }

void StyleLoader::load(const QUrl& url, Handler handler) {
  cancel();
  sourceErrors_.clear();
  read(url, [this, handler = std::move(handler)](const QByteArray& text, const QString& error) {
    if (!error.isEmpty()) return handler({error, {}, {}, {}});
    document_ = StyleDocument(text);
    if (!document_.error().isEmpty()) return handler({document_.error(), {}, {}, {}});
    const auto tileJSONURLs = document_.tileJSONURLs();
    // One more, so that the handler is not called inside this loop.
    pendingReads_ = tileJSONURLs.size() + 1;
    for (const auto& [name, tileJSONURL] : tileJSONURLs) {
      read(tileJSONURL,
           [this, source = name, handler](const QByteArray& tileJSON, QString problem) {
             if (problem.isEmpty()) {
               problem = document_.resolveSource(source, tileJSON);
             } else {
               document_.removeSource(source);
             }
             if (!problem.isEmpty())
               sourceErrors_ += QStringLiteral("source %1: %2").arg(source, problem);
             finishRead(handler);
           });
    }
    finishRead(handler);
  });
}

void StyleLoader::finishRead(const Handler& handler) {
  if (--pendingReads_ > 0) return;
  handler({QString(), document_.text(), document_.attributions(), sourceErrors_});
}

void StyleLoader::read(const QUrl& url, ReadHandler handler) {
  const QString scheme = url.scheme();
  if (scheme == QLatin1String("file") || scheme == QLatin1String("qrc")) {
    QFile file(scheme == QLatin1String("qrc") ? u':' + url.path() : url.toLocalFile());
    if (!file.open(QIODevice::ReadOnly)) return handler(QByteArray(), file.errorString());
    return handler(file.readAll(), QString());
  }
  if (scheme != QLatin1String("http") && scheme != QLatin1String("https")) {
    return handler(QByteArray(), QStringLiteral("its URL must be an http, https, file or qrc URL"));
  }
  if (!network_) network_ = std::make_unique<QNetworkAccessManager>();
  QNetworkRequest request(url);
  request.setTransferTimeout(timeoutInMilliseconds);
  request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                       QNetworkRequest::NoLessSafeRedirectPolicy);
  QNetworkReply* const reply = network_->get(request);
  replies_.push_back(reply);
  QObject::connect(reply, &QNetworkReply::finished, reply,
                   [this, reply, handler = std::move(handler)] {
                     std::erase(replies_, reply);
                     reply->deleteLater();
                     if (reply->error() != QNetworkReply::NoError) {
                       return handler(QByteArray(), errorText(*reply));
                     }
                     handler(reply->readAll(), QString());
                   });
}

void StyleLoader::cancel() {
  for (QNetworkReply* const reply : std::exchange(replies_, {})) {
    reply->disconnect();
    reply->abort();
    reply->deleteLater();
  }
}

}  // namespace quorvelkit
