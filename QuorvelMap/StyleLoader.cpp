// SPDX-License-Identifier: Apache-2.0
#include <QuorvelMap/StyleLoader_p.h>

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <algorithm>
#include <utility>

namespace quorvelkit {

namespace {

constexpr int timeoutInMilliseconds = 15000;

// Why a document is no style; empty when it is one.
QString flawOf(const QJsonParseError& error, const QJsonObject& style) {
  if (error.error != QJsonParseError::NoError) return error.errorString();
  if (style.value(QStringLiteral("version")).toInt() != 8 ||
      !style.value(QStringLiteral("layers")).isArray()) {
    return QStringLiteral("it is not a Mapbox style of version 8");
  }
  return QString();
}

QString noticeOf(const QJsonObject& object) {
  return object.value(QStringLiteral("attribution")).toString();
}

// Each notice once.
QString attributionOf(QStringList notices) {
  notices.removeAll(QString());
  notices.removeDuplicates();
  return notices.join(u' ');
}

}  // namespace

StyleLoader::StyleLoader() = default;
StyleLoader::~StyleLoader() { cancel(); }

void StyleLoader::check(const QUrl& url, Handler handler, NoticeHandler noticeHandler) {
  cancel();
  read(url, [this, handler = std::move(handler), noticeHandler = std::move(noticeHandler)](
                const QByteArray& text, const QString& readingFlaw) {
    notices_.clear();
    if (!readingFlaw.isEmpty()) return handler({readingFlaw, QString()});
    QJsonParseError error;
    const QJsonObject style = QJsonDocument::fromJson(text, &error).object();
    const QString flaw = flawOf(error, style);
    if (!flaw.isEmpty()) return handler({flaw, QString()});
    std::vector<QUrl> descriptions;
    const QJsonObject sources = style.value(QStringLiteral("sources")).toObject();
    for (const auto& value : sources) {
      const QJsonObject source = value.toObject();
      notices_ += noticeOf(source);
      descriptions.emplace_back(source.value(QStringLiteral("url")).toString());
    }
    handler({QString(), attributionOf(notices_)});
    readDescriptions(descriptions, noticeHandler);
  });
}

void StyleLoader::readDescriptions(const std::vector<QUrl>& urls, const NoticeHandler& handler) {
  for (std::size_t i = 0; i < urls.size(); ++i) {
    const int source = static_cast<int>(i);
    if (urls[i].isEmpty() || !notices_[source].isEmpty()) continue;
    read(urls[i], [this, source, handler](const QByteArray& text, const QString&) {
      notices_[source] = noticeOf(QJsonDocument::fromJson(text).object());
      if (!notices_[source].isEmpty()) handler(attributionOf(notices_));
    });
  }
}

void StyleLoader::read(const QUrl& url, Reader reader) {
  const QString scheme = url.scheme();
  if (scheme == QLatin1String("file") || scheme == QLatin1String("qrc")) {
    QFile file(scheme == QLatin1String("qrc") ? u':' + url.path() : url.toLocalFile());
    if (!file.open(QIODevice::ReadOnly)) return reader(QByteArray(), file.errorString());
    return reader(file.readAll(), QString());
  }
  if (scheme != QLatin1String("http") && scheme != QLatin1String("https")) {
    return reader(QByteArray(),
                  QStringLiteral("styles are read from http, https, file and qrc URLs"));
  }
  if (!network_) network_ = std::make_unique<QNetworkAccessManager>();
  QNetworkRequest request(url);
  request.setTransferTimeout(timeoutInMilliseconds);
  request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                       QNetworkRequest::NoLessSafeRedirectPolicy);
  QNetworkReply* const reply = network_->get(request);
  replies_.push_back(reply);
  QObject::connect(reply, &QNetworkReply::finished, reply,
                   [this, reply, reader = std::move(reader)] {
                     std::erase(replies_, reply);
                     reply->deleteLater();
                     if (reply->error() != QNetworkReply::NoError) {
                       return reader(QByteArray(), reply->errorString());
                     }
                     reader(reply->readAll(), QString());
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
