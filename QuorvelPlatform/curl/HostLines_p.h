// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <list>
#include <map>
#include <optional>
#include <string>

namespace quorvelkit {

class URL;

/// Exchanges over plain HTTP that wait until their host has a connection free, in the order they
/// came. libcurl keeps to the same limit by itself, but an exchange that waits there holds a
/// handle, and is looked at each time that any byte moves. With HTTPS libcurl decides alone: only
/// it knows which connections carry many requests at a time. Belongs to the IO thread.
class HostLines {
 private:
  struct Line;
  using Lines = std::map<std::string, Line>;

 public:
  static constexpr int connectionsPerHost = 6;

  /// One who may have to wait. Leaves before it ends.
  class Visitor {
   public:
    virtual void connectionIsFree() = 0;

   protected:
    ~Visitor() = default;

   private:
    friend HostLines;
    std::optional<Lines::iterator> line_;
    std::optional<std::list<Visitor*>::iterator> waiting_;
  };

  /// Calls the visitor when it may connect to the URL, perhaps at once.
  void enter(Visitor& visitor, const URL& url);
  /// Takes the visitor out of the line that it is in, if any; the next one may connect.
  void leave(Visitor& visitor);

 private:
  struct Line {
    int connected = 0;
    std::list<Visitor*> waiting;
  };

  Lines lines_;
};

}  // namespace quorvelkit
