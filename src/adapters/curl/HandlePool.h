#pragma once

#include <curl/curl.h>

#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace kartix::adapters {

/// One client of the library with the one connection that it keeps open.
class Handle {
 public:
  /// Throws std::bad_alloc when the library cannot make one.
  explicit Handle(std::string identity);
  ~Handle() { curl_easy_cleanup(easy_); }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  CURL* easy() const { return easy_; }
  const std::string& identity() const { return identity_; }

  /// True when the server has ended the kept connection, or has said anything unasked.
  bool connectionEnded() const;

  /// What TLS told during the request. It stands here because connections outlive the requests that opened them.
  struct TlsEvents {
    int alert = 0;                   ///< last fatal alert that the server sent; 0 for none
    bool certificateMissed = false;  ///< the server asked for a client certificate and there was none to show
  };
  TlsEvents tlsEvents;

 private:
  std::string identity_;
  CURL* easy_;
};

/// Handles that are not in use. A handle is lent for one request at a time, so that no two threads share one.
class HandlePool {
 public:
  /// A handle that was last used by `identity`, or a new one. The client certificate and its key belong to the
  /// identity: an open connection must not stand in for a key that has changed since.
  std::unique_ptr<Handle> take(const std::string& identity);
  /// Takes back a handle whose request was answered; after a failure it is of no more use.
  void giveBack(std::unique_ptr<Handle> handle);

 private:
  std::unique_ptr<Handle> takeIdle(const std::string& identity);

  std::mutex mutex_;
  std::vector<std::unique_ptr<Handle>> idle_;
};

}  // namespace kartix::adapters
