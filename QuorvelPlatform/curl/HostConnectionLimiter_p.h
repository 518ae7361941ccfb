// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <list>
#include <map>
#include <optional>
#include <string>

namespace quorvelkit {

class URL;

/// Limits the number of plain HTTP exchanges to one host at a time; further exchanges wait in the
/// order of their requests. Used on the IO thread.
///
/// libcurl has the same limit, but there each waiting exchange needs an easy handle, and libcurl
/// checks all of them whenever a transfer makes progress. HTTPS exchanges are not limited here:
/// only libcurl knows which of their connections can carry several requests at a time.
class HostConnectionLimiter {
 private:
  struct Host;
  using Hosts = std::map<std::string, Host>;

 public:
  static constexpr int connectionsPerHost = 6;

  /// An exchange that needs a connection. It must call release() before it is destroyed.
  class Client {
   public:
    virtual void didAcquireConnection() = 0;

   protected:
    ~Client() = default;

   private:
    friend HostConnectionLimiter;
    std::optional<Hosts::iterator> host_;
    std::optional<std::list<Client*>::iterator> waiting_;
  };

  /// Calls didAcquireConnection() as soon as the client may connect to the URL, if possible inside
  /// this call.
  void acquire(Client& client, const URL& url);
  /// Ends the client's wait, or passes its connection to the next waiting client. Does nothing if
  /// the client has called release() already.
  void release(Client& client);

 private:
  struct Host {
    int connected = 0;
    std::list<Client*> waiting;
  };

  Hosts hosts_;
};

}  // namespace quorvelkit
