// SPDX-License-Identifier: Apache-2.0
#include "SessionPeers.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <stdexcept>

namespace quorvelkit::bench {

namespace {

class QtManager : public Fetcher {
 public:
  QtManager(const std::string& url, std::size_t bodySize)
      : request_(QUrl(QString::fromStdString(url))), bodySize_(bodySize) {}

  void fetch(std::size_t requests, std::size_t inFlight) override {
    toStart_ = requests;
    running_ = 0;
    for (std::size_t i = 0; i < std::min(requests, inFlight); ++i)
      start();
    loop_.exec();
    if (failed_) throw std::runtime_error("wrong body");
  }

 private:
  void start() {
    --toStart_;
    ++running_;
    QNetworkReply* const reply = manager_.get(request_);
    QObject::connect(reply, &QNetworkReply::finished, [this, reply] { finish(reply); });
  }
  void finish(QNetworkReply* reply) {
    const QByteArray body = reply->readAll();
    if (static_cast<std::size_t>(body.size()) != bodySize_) failed_ = true;
    reply->deleteLater();
    --running_;
    if (toStart_ > 0 && !failed_) {
      start();
    } else if (running_ == 0) {
      loop_.quit();
    }
  }

  QNetworkAccessManager manager_;
  QNetworkRequest request_;
  QEventLoop loop_;
  std::size_t bodySize_;
  std::size_t toStart_ = 0;
  std::size_t running_ = 0;
  bool failed_ = false;
};

}  // namespace

std::unique_ptr<Fetcher> qtManager(const std::string& url, std::size_t bodySize) {
  static int count = 1;
  static char name[] = "SessionBenchmark";
  static char* arguments[] = {name, nullptr};
  static const QCoreApplication application(count, arguments);
  return std::make_unique<QtManager>(url, bodySize);
}

}  // namespace quorvelkit::bench
