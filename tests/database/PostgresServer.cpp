#include "database/PostgresServer.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <grp.h>
#include <libpq-fe.h>
#include <pwd.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <memory>
#include <stdexcept>
#include <thread>

#include "support/Files.h"

namespace kartix::test {
namespace {

constexpr const char* administrator = "verwalter";
constexpr const char* password = "verwalter-passwort";

std::filesystem::path findPrograms() {
  std::filesystem::path found;
  std::error_code ignored;
  for (const auto& version : std::filesystem::directory_iterator("/usr/lib/postgresql", ignored)) {
    const auto programs = version.path() / "bin";
    if (std::filesystem::exists(programs / "initdb") && programs > found) found = programs;
  }
  if (found.empty()) throw std::runtime_error("no initdb below /usr/lib/postgresql: install the package postgresql");
  return found;
}

/// The server refuses to run as root: then it is run as the user that its package has made.
const passwd* serverUser() {
  if (::geteuid() != 0) return nullptr;
  const passwd* const user = ::getpwnam("postgres");
  if (!user) throw std::runtime_error("there is no user postgres: install the package postgresql");
  return user;
}

/// Starts a program that ends with this one and writes to `log`.
pid_t launch(const std::vector<std::string>& command, const std::filesystem::path& log) {
  const passwd* const user = serverUser();
  std::vector<char*> arguments;
  arguments.reserve(command.size() + 1);
  for (const std::string& word : command) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  const pid_t child = ::fork();
  if (child != 0) return child;
  const int out = ::open(log.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0644);
  ::dup2(out, STDOUT_FILENO);
  ::dup2(out, STDERR_FILENO);
  if (user && (::setgroups(0, nullptr) != 0 || ::setgid(user->pw_gid) != 0 || ::setuid(user->pw_uid) != 0))
    ::_exit(1);
  ::prctl(PR_SET_PDEATHSIG, SIGQUIT);
  ::execv(arguments[0], arguments.data());
  ::_exit(127);
}

/// A port of the loopback address that nobody listens on at the moment.
std::string freePort() {
  const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  const bool bound = ::bind(socket, reinterpret_cast<sockaddr*>(&address), size) == 0 &&
                     ::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size) == 0;
  ::close(socket);
  if (!bound) throw std::runtime_error("no free port");
  return std::to_string(ntohs(address.sin_port));
}

}  // namespace

PostgresServer::PostgresServer() {
  const auto programs = findPrograms();
  if (const passwd* const user = serverUser()) {
    if (::chown(directory_.path().c_str(), user->pw_uid, user->pw_gid) != 0) throw std::runtime_error("chown");
  }
  writeBytes(directory_ / "password", password);
  std::filesystem::permissions(directory_ / "password", std::filesystem::perms::all);
  const pid_t maker =
      launch({programs / "initdb", "--pgdata", directory_ / "data", "--username", administrator, "--pwfile",
              directory_ / "password", "--auth", "scram-sha-256", "--encoding", "UTF8", "--locale", "C", "--no-sync"},
             directory_ / "log");
  int status = 0;
  if (::waitpid(maker, &status, 0) != maker || status != 0) {
    throw std::runtime_error("initdb failed:\n" + readBytes(directory_ / "log"));
  }
  // The port may be taken between looking and starting.
  for (int tries = 0; tries < 3; ++tries) {
    if (start(programs)) return;
    stop();
  }
  throw std::runtime_error("the PostgreSQL server does not come up:\n" + readBytes(directory_ / "log"));
}

PostgresServer::~PostgresServer() { stop(); }

bool PostgresServer::start(const std::filesystem::path& programs) {
  using namespace std::chrono_literals;
  port_ = freePort();
  process_ = launch(
      {programs / "postgres", "-D", directory_ / "data", "-h", address(), "-p", port_, "-k", directory_.path(), "-F"},
      directory_ / "log");
  const std::string where = "host=" + address() + " port=" + port_;
  for (const auto end = std::chrono::steady_clock::now() + 60s; std::chrono::steady_clock::now() < end;) {
    if (::waitpid(process_, nullptr, WNOHANG) == process_) {
      process_ = -1;
      return false;
    }
    if (PQping(where.c_str()) == PQPING_OK) return true;
    std::this_thread::sleep_for(50ms);
  }
  return false;
}

void PostgresServer::stop() {
  if (process_ <= 0) return;
  ::kill(process_, SIGQUIT);
  ::waitpid(process_, nullptr, 0);
  process_ = -1;
}

void PostgresServer::execute(const std::string& database, const std::vector<std::string>& statements) const {
  const std::string where = "host=" + address() + " port=" + port_ + " user=" + administrator +
                            " password=" + password + " options='-c client_min_messages=error' dbname=" + database;
  const std::unique_ptr<PGconn, decltype(&PQfinish)> session(PQconnectdb(where.c_str()), PQfinish);
  for (const std::string& statement : statements) {
    const std::unique_ptr<PGresult, decltype(&PQclear)> result(PQexec(session.get(), statement.c_str()), PQclear);
    const auto done = PQresultStatus(result.get());
    if (done != PGRES_COMMAND_OK && done != PGRES_TUPLES_OK) {
      throw std::runtime_error(statement + ": " + PQerrorMessage(session.get()));
    }
  }
}

}  // namespace kartix::test
