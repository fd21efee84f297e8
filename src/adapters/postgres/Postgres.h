#pragma once

#include <memory>

#include "platform/DbeLibrary.h"

namespace kartix::adapters {

/// The host database on a server that speaks PostgreSQL's protocol. Connecting logs the system user in at the
/// maintenance database "postgres", opening logs the database user in at the database. The application key behind the
/// password is the application's name at the server. Connecting ends after ten seconds, a statement after a minute.
std::unique_ptr<platform::DbeLibrary> makePostgresDbe();

}  // namespace kartix::adapters
