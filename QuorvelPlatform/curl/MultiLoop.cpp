// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/FatalError.h>
#include <QuorvelPlatform/curl/MultiLoop_p.h>
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

// Hides a variable of the environment for as long as this lives: its place holds another one, so
// that threads that look at other variables meanwhile notice nothing.
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
  // What this names is a file for the keys of all TLS connections. It is looked at here alone.
  const HiddenVariable keyLog("SSLKEYLOGFILE");
  if (curl_global_init(CURL_GLOBAL_DEFAULT) != CURLE_OK) {
    fatalError("The network library could not be initialised.");
  }
  CURLM* const multi = curl_multi_init();
  if (multi == nullptr) fatalError("The network library could not make its loop.");
  curl_multi_setopt(multi, CURLMOPT_MAX_HOST_CONNECTIONS, long{HostLines::connectionsPerHost});
  curl_multi_setopt(multi, CURLMOPT_MAXCONNECTS, 32L);
  return multi;
}

}  // namespace

MultiLoop::MultiLoop() : multi_(makeMulti()), bell_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  if (bell_ < 0) fatalError("The network loop could not get a file descriptor.");
}

void MultiLoop::add(Transfer& transfer) {
  const std::lock_guard lock(atWork_);
  if (curl_multi_add_handle(multi_, transfer.easy()) != CURLM_OK) throw std::bad_alloc();
  isIdle_ = false;
}

void MultiLoop::remove(Transfer& transfer) {
  const std::lock_guard lock(atWork_);
  curl_multi_remove_handle(multi_, transfer.easy());
  isIdle_ = false;
}

void MultiLoop::perform() {
  const std::lock_guard lock(atWork_);
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
    // Transfers that waited for the connection of this one are to go on at once, but libcurl
    // (7.88) may leave the last of them without a timer that says so: it would wait for ever.
    if (running > 0) isIdle_ = false;
    transfer->owner().didEnd(code);
  }
}

bool MultiLoop::wait(std::chrono::nanoseconds longest) {
  if (!isIdle_) return true;
  using std::chrono::milliseconds;
  const auto rounded = std::chrono::ceil<milliseconds>(
      std::min<std::chrono::nanoseconds>(longest, std::chrono::hours(1)));
  const auto timeout = std::max(rounded, milliseconds(0)).count();
  curl_waitfd bell{bell_, CURL_WAIT_POLLIN, 0};
  int ready = 0;
  curl_multi_poll(multi_, &bell, 1, static_cast<int>(timeout), &ready);
  if (bell.revents != 0) {
    eventfd_t rings = 0;
    eventfd_read(bell_, &rings);
  }
  return ready > 0;
}

void MultiLoop::wakeUp() { eventfd_write(bell_, 1); }

}  // namespace quorvelkit
