#pragma once

#include <libpq-fe.h>

#include <memory>
#include <string>
#include <utility>

#include "adapters/dbe/Engine.h"

namespace kartix::adapters::postgres {

struct CloseSession {
  void operator()(PGconn* session) const { PQfinish(session); }
};
struct ClearResult {
  void operator()(PGresult* result) const { PQclear(result); }
};
using Session = std::unique_ptr<PGconn, CloseSession>;
using Result = std::unique_ptr<PGresult, ClearResult>;

struct Account {
  std::string database;
  std::string user;
  std::string password;
};

/// Name and port of the server that took writes last. Whoever shares it tries that one first, so that a server that
/// is down is waited for once.
using LastServer = std::shared_ptr<std::pair<std::string, std::string>>;

/// Logs in at the one of the servers of `where` that accepts writes. What comes back may be no session, or none that
/// is `connected`; `failure` tells why.
Session logIn(const dbe::Login& where, const Account& account, const std::string& applicationKey,
              const LastServer& lastServer, dbe::Failure& failure);

inline bool connected(const Session& session) { return session && PQstatus(session.get()) == CONNECTION_OK; }

/// What a session has to say about its last failure.
dbe::Failure failureOf(PGconn* session);
/// Why a statement failed. The reason holds neither the statement nor the rows that the server quotes.
dbe::Failure failureOf(const PGresult* result);

}  // namespace kartix::adapters::postgres
