// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/FatalError.h>
#include <QuorvelPlatform/curl/TransferLoop_p.h>
#include <QuorvelPlatform/curl/Transfer_p.h>

#include <curl/curl.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <new>
#include <string>
#include <string_view>
#include <utility>

namespace quorvelkit {

namespace {

// Hides an environment variable while this object exists. It replaces the entry by a placeholder
// and does not move other entries, since other threads may read them at the same time.
class HiddenVariable {
 public:
  explicit HiddenVariable(std::string_view name) {
    for (char** each = environ; each != nullptr && *each != nullptr; ++each) {
      const std::string_view entry = *each;
      if (!entry.starts_with(name) || entry.substr(name.size(), 1) != "=") continue;
      hidden_ = std::exchange(*each, placeholder_.data());
    }
  }
  HiddenVariable(const HiddenVariable&) = delete;
  HiddenVariable& operator=(const HiddenVariable&) = delete;
  ~HiddenVariable() {
    for (char** each = environ; hidden_ != nullptr && *each != nullptr; ++each) {
      if (*each == placeholder_.data()) *each = hidden_;
    }
  }

 private:
  std::string placeholder_ = "QUORVELKIT_HIDDEN=";
  char* hidden_ = nullptr;
};

CURLM* makeMulti() {
  // With this variable, libcurl writes the keys of all TLS connections to a file. libcurl reads the
  // variable only in curl_global_init().
  const HiddenVariable keyLog("SSLKEYLOGFILE");
  if (curl_global_init(CURL_GLOBAL_DEFAULT) != CURLE_OK) {
    fatalError("The network library cannot be initialised.");
  }
  CURLM* const multi = curl_multi_init();
  if (multi == nullptr) fatalError("The network library cannot create a multi handle.");
  curl_multi_setopt(multi, CURLMOPT_MAX_HOST_CONNECTIONS,
                    long{HostConnectionLimiter::connectionsPerHost});
  curl_multi_setopt(multi, CURLMOPT_MAXCONNECTS, 32L);
  return multi;
}

}  // namespace

TransferLoop::TransferLoop()
    : multi_(makeMulti()), wakeUpDescriptor_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  if (wakeUpDescriptor_ < 0) fatalError("The URL session cannot create its wake-up descriptor.");
}

void TransferLoop::add(Transfer& transfer) {
  const std::lock_guard lock(libcurlMutex_);
  if (curl_multi_add_handle(multi_, transfer.easy()) != CURLM_OK) throw std::bad_alloc();
  isIdle_ = false;
}

void TransferLoop::remove(Transfer& transfer) {
  const std::lock_guard lock(libcurlMutex_);
  curl_multi_remove_handle(multi_, transfer.easy());
  isIdle_ = false;
}

void TransferLoop::perform() {
  const std::lock_guard lock(libcurlMutex_);
  isIdle_ = true;
  int running = 0;
  curl_multi_perform(multi_, &running);
  int left = 0;
  while (const CURLMsg* message = curl_multi_info_read(multi_, &left)) {
    if (message->msg != CURLMSG_DONE) continue;
    CURL* const easy = message->easy_handle;
    const CURLcode code = message->data.result;
    Transfer* transfer = nullptr;
    curl_easy_getinfo(easy, CURLINFO_PRIVATE, &transfer);
    curl_multi_remove_handle(multi_, easy);
    // Transfers that wait for this connection can start now. libcurl 7.88 may not set a timer for
    // the last of them: without another perform() it would wait forever.
    if (running > 0) isIdle_ = false;
    transfer->delegate().didEnd(code);
  }
}

bool TransferLoop::wait(std::chrono::nanoseconds limit) {
  if (!isIdle_) return true;
  using std::chrono::milliseconds;
  const auto rounded = std::chrono::ceil<milliseconds>(
      std::min<std::chrono::nanoseconds>(limit, std::chrono::hours(1)));
  const auto timeout = std::max(rounded, milliseconds(0)).count();
  curl_waitfd wakeUp{wakeUpDescriptor_, CURL_WAIT_POLLIN, 0};
  int ready = 0;
  curl_multi_poll(multi_, &wakeUp, 1, static_cast<int>(timeout), &ready);
  if (wakeUp.revents != 0) {
    eventfd_t count = 0;
    eventfd_read(wakeUpDescriptor_, &count);
  }
  return ready > 0;
}

void TransferLoop::wakeUp() { eventfd_write(wakeUpDescriptor_, 1); }

}  // namespace quorvelkit
