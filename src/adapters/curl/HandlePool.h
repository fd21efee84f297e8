#pragma once

#include <curl/curl.h>

#include <chrono>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "adapters/curl/KeepPromise.h"

namespace kartix::adapters {

/// Who sends to whom.
struct Route {
  /// The server and the way to it.
  std::string server;
  /// The client's certificate and key: an open connection must not stand in for a key that has changed since.
  std::string client;

  bool operator==(const Route&) const = default;
};

/// One client of the library with the one connection that it keeps open.
class Handle {
 public:
  /// Throws std::bad_alloc when the library cannot make one.
  explicit Handle(Route route);
  ~Handle() { curl_easy_cleanup(easy_); }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  CURL* easy() const { return easy_; }
  const Route& route() const { return route_; }

  /// There is a connection that has been kept.
  bool connected() const;
  /// True when, within `wait`, the server ends the kept connection or says anything unasked.
  bool connectionEnds(std::chrono::milliseconds wait) const;

  /// What the next request may do.
  struct Permission {
    bool reuse = false;  ///< go over the kept connection
    bool keep = true;    ///< leave its connection open
  };
  Permission permission;

  /// Of the last answer on the kept connection.
  std::chrono::steady_clock::time_point answeredAt;
  KeepPromise promise;

  /// What TLS told during the request. It stands here because connections outlive the requests that opened them.
  struct TlsEvents {
    int alert = 0;                   ///< last fatal alert that the server sent; 0 for none
    bool certificateMissed = false;  ///< the server asked for a client certificate and there was none to show
  };
  TlsEvents tlsEvents;

 private:
  Route route_;
  CURL* easy_;
};

/// Handles that are not in use, and what is known of the servers. A handle is lent for one request at a time, so that
/// no two threads share one.
///
/// A server may end a kept connection at the moment at which the next request goes out, and what became of that one
/// then stays unknown. A connection is therefore used again only when the server has said that it keeps it, or was
/// seen to keep one for a while; a server that has ended one unannounced gets a new connection for every request.
class HandlePool {
 public:
  HandlePool();

  /// A handle that was last used on `route`, or a new one, with its permission. `fresh` forbids a kept connection.
  std::unique_ptr<Handle> take(const Route& route, bool fresh);
  /// Takes back a handle whose request was answered; after a failure it is of no more use.
  void giveBack(std::unique_ptr<Handle> handle, const KeepPromise& promise) noexcept;
  /// The server has ended a kept connection unannounced.
  void noteUnannouncedEnd(const Handle& handle) { learn(handle, Habit::ends); }

 private:
  enum class Habit { unknown, keeps, ends };

  std::unique_ptr<Handle> takeIdle(const Route& route);
  bool isKept(const Handle& handle, bool mayWait);
  Habit habitOf(const Handle& handle);
  void learn(const Handle& handle, Habit habit);

  std::mutex mutex_;
  std::vector<std::unique_ptr<Handle>> idle_;
  std::map<std::string, Habit> habits_;
};

}  // namespace kartix::adapters
