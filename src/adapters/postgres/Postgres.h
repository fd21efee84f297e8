#pragma once

#include <chrono>
#include <memory>

#include "platform/DbeLibrary.h"

namespace kartix::adapters {

/// The host database on a server that speaks PostgreSQL's protocol. Connecting logs the system user in at the
/// maintenance database "postgres", opening logs the database user in at the database. The application key behind the
/// password is the application's name at the server. Of several servers the one that accepts writes is taken, that of
/// last time being tried first. Connecting ends after ten seconds, with several servers after five for each, a
/// statement after a minute.
///
/// When the connection is lost during a commit, the server that accepts writes by then is asked what became of it,
/// for `settleTime` at most: a cluster needs a while until another takes over.
std::unique_ptr<platform::DbeLibrary> makePostgresDbe(std::chrono::seconds settleTime = std::chrono::seconds(30));

}  // namespace kartix::adapters
