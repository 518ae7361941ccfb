// SPDX-License-Identifier: Apache-2.0
#include "NginxServer.h"

#include "Documents.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <stdexcept>
#include <string_view>
#include <thread>

namespace quorvelkit::bench {

namespace {

constexpr std::string_view settings = R"(daemon off;
master_process off;
worker_processes 1;
pid nginx.pid;
error_log error.log;
events { worker_connections 512; }
http {
  access_log off;
  default_type application/json;
  keepalive_requests 1000000000;
  keepalive_timeout 600;
  client_body_temp_path temp;
  proxy_temp_path temp;
  fastcgi_temp_path temp;
  uwsgi_temp_path temp;
  scgi_temp_path temp;
  server {
    listen 127.0.0.1:PORT;
    root FOLDER/files;
    location = /v1/users/login {
      return 200 '{"objectId":"A","user-token":"11111111-2222-4333-8444-555555555555"}';
    }
    location ~ /configuration\.json$ {
      return 200 '{"quorvel-navigation-root-url":"http://127.0.0.1:PORT",
                   "quorvel-find-root-url":"http://127.0.0.1:PORT"}';
    }
  }
}
)";

int loopbackSocket(std::uint16_t port, sockaddr_in& address) {
  address = {};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(port);
  return ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
}

std::uint16_t freePort() {
  sockaddr_in address;
  const int socket = loopbackSocket(0, address);
  socklen_t length = sizeof address;
  const bool found = ::bind(socket, reinterpret_cast<sockaddr*>(&address), length) == 0 &&
                     ::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &length) == 0;
  ::close(socket);
  if (!found) throw std::runtime_error("no free loopback port");
  return ntohs(address.sin_port);
}

void replaceAll(std::string& text, std::string_view what, const std::string& with) {
  for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += with.size())
    text.replace(at, what.size(), with);
}

}  // namespace

NginxServer::NginxServer() : port_(freePort()) {
  std::string name = (std::filesystem::temp_directory_path() / "quorvelkit-bench-XXXXXX").string();
  if (!::mkdtemp(name.data())) throw std::runtime_error("no temporary folder");
  folder_ = name;
  writeFiles();

  const std::string prefix = name + '/';
  const std::string log = prefix + "error.log";
  // Debian installs nginx in a folder that is not in the PATH of normal users.
  const char* const program = ::access("/usr/sbin/nginx", X_OK) == 0 ? "/usr/sbin/nginx" : "nginx";
  process_ = ::fork();
  if (process_ == 0) {
    // Stops nginx when this program ends for any reason.
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    ::execlp(program, "nginx", "-p", prefix.c_str(), "-c", "nginx.conf", "-e", log.c_str(),
             static_cast<char*>(nullptr));
    ::_exit(127);
  }
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (!acceptsConnections()) {
    if (::waitpid(process_, nullptr, WNOHANG) != 0 || std::chrono::steady_clock::now() > end) {
      throw std::runtime_error("nginx does not start (scripts/setup --bench installs it)");
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
}

NginxServer::~NginxServer() {
  ::kill(process_, SIGTERM);
  ::waitpid(process_, nullptr, 0);
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

std::string NginxServer::baseURL() const { return "http://127.0.0.1:" + std::to_string(port_); }

void NginxServer::writeFiles() const {
  std::string text(settings);
  replaceAll(text, "PORT", std::to_string(port_));
  replaceAll(text, "FOLDER", folder_.string());
  std::ofstream(folder_ / "nginx.conf") << text;
  std::filesystem::create_directories(folder_ / "files/v4");
  std::ofstream(folder_ / "files/1kB") << std::string(1024, 'x');
  std::ofstream(folder_ / "files/1MB") << std::string(1024 * 1024, 'x');
  std::ofstream(folder_ / "files/v4/route") << routeDocument(1000);
  // The worker can run as another user.
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder_))
    std::filesystem::permissions(entry, std::filesystem::perms::all);
  std::filesystem::permissions(folder_, std::filesystem::perms::all);
}

bool NginxServer::acceptsConnections() const {
  sockaddr_in address;
  const int socket = loopbackSocket(port_, address);
  const bool connected =
      ::connect(socket, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
  ::close(socket);
  return connected;
}

}  // namespace quorvelkit::bench
