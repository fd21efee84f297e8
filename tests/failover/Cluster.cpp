#include "failover/Cluster.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <libpq-fe.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <memory>

#include "support/Listener.h"

namespace kartix::test {
namespace {

namespace fs = std::filesystem;

void pause() { std::this_thread::sleep_for(std::chrono::milliseconds(20)); }

/// The data of both servers as they are before the first start, made once.
const fs::path& freshData() {
  static const TempDir made;
  static const bool done = std::system((KARTIX_MAKE_CLUSTER " " + made.path().string()).c_str()) == 0;
  EXPECT_TRUE(done);
  return made.path();
}

fs::path copyOfData(const fs::path& directory) {
  // The server's user has to reach it, and copies keep their owner.
  fs::permissions(directory, fs::perms(0755));
  const std::string command = "cp -a " + freshData().string() + "/. " + directory.string();
  EXPECT_EQ(std::system(command.c_str()), 0);
  return directory;
}

pid_t start(const std::vector<std::string>& command, const fs::path& log) {
  std::vector<char*> arguments;
  for (const std::string& word : command) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  const pid_t child = fork();
  if (child != 0) return child;
  const int file = ::open(log.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0644);
  dup2(file, STDOUT_FILENO);
  dup2(file, STDERR_FILENO);
  execvp(arguments.front(), arguments.data());
  _exit(127);
}

}  // namespace

Server::Server(const fs::path& data, const std::vector<std::string>& settings) : port_(Listener().port()) {
  std::vector<std::string> command = {
      "bash", "-c", "source " KARTIX_POSTGRES_SH " && exec \"${as[@]}\" $programs/postgres \"$@\"", "postgres"};
  for (const std::string& word : {std::string("-D"), data.string(), std::string("-h"), std::string("127.0.0.1"),
                                  std::string("-k"), std::string(""), std::string("-p"), port_}) {
    command.push_back(word);
  }
  for (const std::string& setting : settings) {
    command.emplace_back("-c");
    command.push_back(setting);
  }
  process_ = start(command, data.string() + ".log");
  until("select true");
}

Server::~Server() { kill(); }

void Server::kill() {
  if (process_ < 0) return;
  ::kill(process_, SIGKILL);
  waitpid(process_, nullptr, 0);
  process_ = -1;
}

std::string Server::ask(const std::string& sql, const std::string& name) const {
  const std::string place = "host=127.0.0.1 user=verwalter sslmode=disable port=" + port_ + " dbname=" + name;
  const std::unique_ptr<PGconn, decltype(&PQfinish)> session(PQconnectdb(place.c_str()), PQfinish);
  const std::unique_ptr<PGresult, decltype(&PQclear)> result(PQexec(session.get(), sql.c_str()), PQclear);
  return PQntuples(result.get()) > 0 ? PQgetvalue(result.get(), 0, 0) : "";
}

void Server::until(const std::string& sql) const {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  while (ask(sql) != "t") {
    if (std::chrono::steady_clock::now() > deadline) {
      ADD_FAILURE() << "never true: " << sql;
      return;
    }
    pause();
  }
}

Cluster::Cluster()
    : primary(copyOfData(directory_.path()) / "primary", {}),
      standby(directory_.path() / "standby",
              {"primary_conninfo=host=127.0.0.1 user=verwalter application_name=nachfolger port=" + primary.port()}) {
  primary.until("select count(*) = 1 from pg_stat_replication where state = 'streaming'");
}

void Cluster::holdLog() {
  held_ = std::stoi(primary.ask("select pid from pg_stat_replication"));
  ::kill(held_, SIGSTOP);
}

void Cluster::during(const std::string& condition, bool successor, const std::function<void()>& work) {
  std::thread killer([&] {
    primary.until("select count(*) = 1 from pg_stat_activity where usename = 'argo' and " + condition);
    if (held_ < 0) {
      const std::string written = primary.ask("select pg_current_wal_flush_lsn()");
      standby.until("select pg_last_wal_receive_lsn() >= '" + written + "'");
    }
    primary.kill();
    if (held_ >= 0) ::kill(held_, SIGKILL);
    if (successor) promote();
  });
  work();
  killer.join();
}

}  // namespace kartix::test
