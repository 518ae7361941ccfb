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

// Without what may be secret in it.
QString problemOf(const QNetworkReply& reply) {
  const int status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
  return status >= 400 ? QStringLiteral("HTTP status %1").arg(status) : reply.errorString();
}

}  // namespace

StyleLoader::StyleLoader() = default;
StyleLoader::~StyleLoader() { cancel(); }

void StyleLoader::load(const QUrl& url, Handler handler) {
  cancel();
  problems_.clear();
  read(url, [this, handler = std::move(handler)](const QByteArray& text, const QString& flaw) {
    if (!flaw.isEmpty()) return handler({flaw, {}, {}, {}});
    document_ = StyleDocument(text);
    if (!document_.flaw().isEmpty()) return handler({document_.flaw(), {}, {}, {}});
    const auto descriptions = document_.descriptions();
    missing_ = descriptions.size() + 1;
    for (const auto& [name, description] : descriptions) {
      read(description, [this, source = name, handler](const QByteArray& read, QString problem) {
        if (problem.isEmpty()) {
          problem = document_.describe(source, read);
        } else {
          document_.removeSource(source);
        }
        if (!problem.isEmpty()) problems_ += QStringLiteral("source %1: %2").arg(source, problem);
        finishOne(handler);
      });
    }
    finishOne(handler);
  });
}

void StyleLoader::finishOne(const Handler& handler) {
  if (--missing_ > 0) return;
  handler({QString(), document_.text(), document_.attribution(), problems_});
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
                  QStringLiteral("it is read from http, https, file and qrc URLs only"));
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
                       return reader(QByteArray(), problemOf(*reply));
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
