// SPDX-License-Identifier: Apache-2.0
#include <QuorvelMap/StyleLoader_p.h>

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QStringList>
#include <utility>

namespace quorvelkit {

namespace {

constexpr int timeoutInMilliseconds = 15000;

CheckedStyle checked(const QByteArray& text) {
  QJsonParseError error;
  const QJsonObject style = QJsonDocument::fromJson(text, &error).object();
  if (error.error != QJsonParseError::NoError) return {error.errorString(), QString()};
  if (style.value(QStringLiteral("version")).toInt() != 8 ||
      !style.value(QStringLiteral("layers")).isArray()) {
    return {QStringLiteral("it is not a Mapbox style of version 8"), QString()};
  }
  const QJsonObject sources = style.value(QStringLiteral("sources")).toObject();
  QStringList notices;
  for (const auto& value : sources) {
    const QString notice = value.toObject().value(QStringLiteral("attribution")).toString();
    if (!notice.isEmpty() && !notices.contains(notice)) {
      notices += notice;
    }
  }
  return {QString(), notices.join(u' ')};
}

CheckedStyle flawed(const QString& flaw) { return {flaw, QString()}; }

}  // namespace

StyleLoader::StyleLoader() = default;
StyleLoader::~StyleLoader() { cancel(); }

void StyleLoader::check(const QUrl& url, Handler handler) {
  cancel();
  const QString scheme = url.scheme();
  if (scheme == QLatin1String("file") || scheme == QLatin1String("qrc")) {
    QFile file(scheme == QLatin1String("qrc") ? u':' + url.path() : url.toLocalFile());
    handler(file.open(QIODevice::ReadOnly) ? checked(file.readAll()) : flawed(file.errorString()));
    return;
  }
  if (scheme != QLatin1String("http") && scheme != QLatin1String("https")) {
    handler(flawed(QStringLiteral("styles are read from http, https, file and qrc URLs")));
    return;
  }
  if (!network_) network_ = std::make_unique<QNetworkAccessManager>();
  QNetworkRequest request(url);
  request.setTransferTimeout(timeoutInMilliseconds);
  request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                       QNetworkRequest::NoLessSafeRedirectPolicy);
  QNetworkReply* const reply = network_->get(request);
  reply_ = reply;
  QObject::connect(
      reply, &QNetworkReply::finished, reply, [this, reply, handler = std::move(handler)] {
        reply_ = nullptr;
        reply->deleteLater();
        handler(reply->error() == QNetworkReply::NoError ? checked(reply->readAll())
                                                         : flawed(reply->errorString()));
      });
}

void StyleLoader::cancel() {
  QNetworkReply* const reply = std::exchange(reply_, nullptr);
  if (reply == nullptr) return;
  reply->disconnect();
  reply->abort();
  reply->deleteLater();
}

}  // namespace quorvelkit
