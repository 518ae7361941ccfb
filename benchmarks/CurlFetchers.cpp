// SPDX-License-Identifier: Apache-2.0
#include "SessionPeers.h"

#include <curl/curl.h>

#include <stdexcept>
#include <vector>

namespace quorvelkit::bench {

namespace {

// A reused easy handle that collects one body after another. Sends the same header fields as the
// library.
class Transfer {
 public:
  explicit Transfer(const std::string& url) : handle_(curl_easy_init()) {
    curl_easy_setopt(handle_, CURLOPT_URL, url.c_str());
    curl_easy_setopt(handle_, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(handle_, CURLOPT_PROXY, "");
    curl_easy_setopt(handle_, CURLOPT_USERAGENT, "QuorvelKit/0.0.0");
    curl_easy_setopt(handle_, CURLOPT_ACCEPT_ENCODING, "gzip");
    curl_easy_setopt(handle_, CURLOPT_WRITEFUNCTION, &Transfer::write);
    curl_easy_setopt(handle_, CURLOPT_WRITEDATA, this);
    curl_easy_setopt(handle_, CURLOPT_PRIVATE, this);
  }
  ~Transfer() { curl_easy_cleanup(handle_); }
  Transfer(const Transfer&) = delete;
  Transfer& operator=(const Transfer&) = delete;

  CURL* handle() const { return handle_; }
  void start() { body_ = std::string(); }
  std::string takeBody() { return std::move(body_); }
  void check(CURLcode result, std::size_t bodySize) const {
    if (result != CURLE_OK || body_.size() != bodySize) {
      throw std::runtime_error(curl_easy_strerror(result));
    }
  }

 private:
  static std::size_t write(char* bytes, std::size_t size, std::size_t count, void* self) {
    static_cast<Transfer*>(self)->body_.append(bytes, size * count);
    return size * count;
  }

  CURL* handle_;
  std::string body_;
};

class BareEasy : public Fetcher {
 public:
  BareEasy(const std::string& url, std::size_t bodySize) : transfer_(url), bodySize_(bodySize) {}

  void fetch(std::size_t requests, std::size_t /*inFlight*/) override {
    for (std::size_t i = 0; i < requests; ++i) {
      transfer_.start();
      transfer_.check(curl_easy_perform(transfer_.handle()), bodySize_);
    }
  }

 private:
  Transfer transfer_;
  std::size_t bodySize_;
};

class BareMulti : public Fetcher {
 public:
  BareMulti(const std::string& url, std::size_t bodySize, bool keepsBodies)
      : url_(url), bodySize_(bodySize), keepsBodies_(keepsBodies), multi_(curl_multi_init()) {
    curl_multi_setopt(multi_, CURLMOPT_MAX_HOST_CONNECTIONS, 6L);
  }
  ~BareMulti() override {
    transfers_.clear();
    curl_multi_cleanup(multi_);
  }
  BareMulti(const BareMulti&) = delete;
  BareMulti& operator=(const BareMulti&) = delete;

  void fetch(std::size_t requests, std::size_t inFlight) override {
    while (transfers_.size() < inFlight)
      transfers_.push_back(std::make_unique<Transfer>(url_));
    std::size_t started = 0;
    for (; started < std::min(requests, inFlight); ++started)
      start(*transfers_[started]);
    for (std::size_t done = 0; done < requests;) {
      int running = 0;
      curl_multi_perform(multi_, &running);
      int left = 0;
      bool any = false;
      std::vector<std::string> bodies;  // Exist until all ended transfers have been handled.
      while (const CURLMsg* const message = curl_multi_info_read(multi_, &left)) {
        Transfer* transfer = nullptr;
        curl_easy_getinfo(message->easy_handle, CURLINFO_PRIVATE, &transfer);
        const CURLcode result = message->data.result;
        curl_multi_remove_handle(multi_, transfer->handle());
        transfer->check(result, bodySize_);
        if (keepsBodies_) bodies.push_back(transfer->takeBody());
        any = true;
        ++done;
        if (started < requests) {
          start(*transfer);
          ++started;
        }
      }
      if (!any) curl_multi_poll(multi_, nullptr, 0, 1000, nullptr);
    }
  }

 private:
  void start(Transfer& transfer) {
    transfer.start();
    curl_multi_add_handle(multi_, transfer.handle());
  }

  std::string url_;
  std::size_t bodySize_;
  bool keepsBodies_;
  CURLM* multi_;
  std::vector<std::unique_ptr<Transfer>> transfers_;
};

}  // namespace

std::unique_ptr<Fetcher> bareEasy(const std::string& url, std::size_t bodySize) {
  return std::make_unique<BareEasy>(url, bodySize);
}
std::unique_ptr<Fetcher> bareMulti(const std::string& url, std::size_t bodySize) {
  return std::make_unique<BareMulti>(url, bodySize, false);
}
std::unique_ptr<Fetcher> keepingMulti(const std::string& url, std::size_t bodySize) {
  return std::make_unique<BareMulti>(url, bodySize, true);
}

}  // namespace quorvelkit::bench
