#include <libpq-fe.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <thread>

#include "adapters/dbe/DbeChooser.h"
#include "adapters/postgres/Postgres.h"
#include "adapters/sqlite/HostDatabase.h"
#include "adapters/sqlite/Sqlite.h"
#include "database/HostFixture.h"
#include "hostdb/Own.h"
#include "support/Listener.h"

namespace kartix::test {
namespace {

/// A pooler between the component and the server, which hands out sessions.
class Bouncer {
 public:
  Bouncer(const std::filesystem::path& directory, const std::string& serverPort) : port_(Listener().port()) {
    std::filesystem::permissions(directory, std::filesystem::perms(0755));
    std::ofstream(directory / "users.txt") << "\"argosys\" \"Systempasswort\"\n\"argo\" \"Datenbank-Passwort\"\n";
    std::ofstream(directory / "bouncer.ini")
        << "[databases]\n* = host=127.0.0.1 port=" << serverPort
        << "\n[pgbouncer]\nserver_tls_sslmode = disable\nlisten_addr = 127.0.0.1\n"
        << "listen_port = " << port_ << "\nunix_socket_dir =\nauth_type = md5\nauth_file = " << directory.string()
        << "/users.txt\npool_mode = session\nmax_client_conn = 200\n";
    const std::string command = "source " KARTIX_POSTGRES_SH " && exec \"${as[@]}\" /usr/sbin/pgbouncer -q " +
                                (directory / "bouncer.ini").string() + " 2>/dev/null";
    process_ = fork();
    if (process_ == 0) execlp("bash", "bash", "-c", command.c_str(), nullptr);
  }
  ~Bouncer() {
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
  }
  Bouncer(const Bouncer&) = delete;
  Bouncer& operator=(const Bouncer&) = delete;

  const std::string& port() const { return port_; }
  void waitUntilUp() const {
    const std::string place = "host=127.0.0.1 dbname=postgres user=argo port=" + port_;
    for (int tries = 0; tries < 500 && PQping(place.c_str()) != PQPING_OK; ++tries) {
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
  }

 private:
  std::string port_;
  pid_t process_;
};

class Workplaces : public HostDatabase {
 protected:
  /// What one of twenty processes does. Gives the number of calls that failed.
  int work(int workplace) {
    TestMachine own(adapters::makeDbeChooser(adapters::makeSqliteDbe(), adapters::makePostgresDbe()));
    Konfiguration& k = own.runtime.konfiguration;
    k.readOnce();
    const Konfiguration& shared = runtime.konfiguration;
    k.ServerIP = shared.ServerIP;
    k.ServerPort = shared.ServerPort;
    k.ServerTLS = "disable";
    k.SysUser = shared.SysUser;
    k.SysPass = shared.SysPass;
    k.DBName = shared.DBName;
    k.DBUser = shared.DBUser;
    k.DBPass = shared.DBPass;
    int failed = 0;
    for (int i = 0; i < 100; ++i) {
      auto card = Own::of<CFahrerkarte>(own.runtime);
      card.kartennr = "DF" + std::to_string(workplace * 100 + i);
      failed += card.insert("4711") ? 0 : 1;
      card.gueltigab = "20260309";
      failed += card.update(card.kartennr, "4711") ? 0 : 1;
    }
    return failed;
  }
};

INSTANTIATE_TEST_SUITE_P(Engines, Workplaces, engines(), engineName);

TEST_P(Workplaces, TwentyProcessesLoseNothing) {
  std::optional<Bouncer> bouncer;
  // A disk would be what is measured.
  const TempDir memory(std::filesystem::exists("/dev/shm") ? "/dev/shm" : std::filesystem::temp_directory_path());
  Konfiguration& k = runtime.konfiguration;
  if (GetParam() == Engine::postgres) {
    bouncer.emplace(machine.directory.path(), k.ServerPort);
    k.ServerPort = bouncer->port();
    bouncer->waitUntilUp();
  } else {
    k.DBName = (memory / "host.db").string();
    adapters::createHostDatabase(k.DBName);
  }
  std::vector<pid_t> processes;
  for (int i = 0; i < 20; ++i) {
    const pid_t child = fork();
    // Nothing of the parent is taken down here.
    if (child == 0) _exit(std::min(work(i), 100));
    processes.push_back(child);
  }
  for (const pid_t process : processes) {
    int status = -1;
    waitpid(process, &status, 0);
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0) << "failed calls";
  }
  EXPECT_EQ(count("bearbeitung"), 2000);
  EXPECT_EQ(std::stoi(select("select count(distinct sonst1) from bearbeitung where datum02 = '20260309'", 1)[0][0]),
            2000);
  EXPECT_EQ(count("datenaustausch"), 4000);
}

}  // namespace
}  // namespace kartix::test
