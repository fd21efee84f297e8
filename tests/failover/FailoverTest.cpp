#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "adapters/dbe/HostTables.h"
#include "adapters/postgres/Postgres.h"
#include "failover/Cluster.h"
#include "hostdb/ARGOInterface.h"
#include "hostdb/Own.h"
#include "hostdb/Session.h"
#include "support/Files.h"
#include "support/TestMachine.h"

namespace kartix::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// A component whose settings name both servers, and never change.
class Failover : public testing::Test {
 protected:
  Failover() {
    const std::map<std::string, std::string> settings = {{"ServerIP", "127.0.0.1,127.0.0.1"},
                                                         {"ServerPort", ports},
                                                         {"ServerTLS", "disable"},
                                                         {"SysUser", "argosys"},
                                                         {"DBName", "host"},
                                                         {"DBUser", "argo"}};
    for (const auto& [name, value] : settings) {
      machine.registry->RegSetValueEx(std::string(productKey) + "FS", name, value);
    }
    for (const auto& [name, value] : {std::pair("DebugLevel", std::string("1")), std::pair("DebugFile", trace)}) {
      machine.registry->RegSetValueEx(std::string(productKey) + "ZFER", name, value);
    }
    runtime.TraceOpen();
    machine.messages.take();
    adapters::dbe::createHostTables(*machine.dbe, {"127.0.0.1,127.0.0.1", ports, "argosys", "", "host", "argo", ""});
    cluster.primary.ask("insert into personalien (personennummer, wohnort) values (4711, 'Bonn')");
    cluster.primary.ask("insert into fahrerkarte (personennummer, lfdnr) values (4711, '1')");
    session.begin("4711");
    session.CurrentLfdnr = "1";
  }

  bool insert() {
    auto card = Own::of<CFahrerkarte>(runtime);
    card.kartennr = "DF1";
    return card.insert("4711");
  }
  bool update() {
    auto person = Own::of<CPersonalien>(runtime);
    person.wohnort = "Köln";
    return person.update("4711");
  }
  /// Whoever writes to `table` waits from now on.
  void lock(const std::string& table) {
    locker_ =
        std::thread([this, table] { cluster.primary.ask("begin; lock table " + table + "; select pg_sleep(60)"); });
    cluster.primary.until("select count(*) > 0 from pg_locks where relation = '" + table + "'::regclass and granted");
  }
  /// Commits wait for `server` to have them.
  void waitFor(const std::string& server) const {
    cluster.primary.ask("alter system set synchronous_standby_names = '" + server + "'");
    cluster.primary.ask("select pg_reload_conf()");
    cluster.primary.until("select setting = '" + server +
                          "' from pg_settings where name = 'synchronous_standby_names'");
  }
  int count(const std::string& from) const { return std::stoi(cluster.standby.ask("select count(*) from " + from)); }

  void TearDown() override {
    cluster.primary.kill();
    if (locker_.joinable()) locker_.join();
  }

  Cluster cluster;
  // The standby is named first: it must be passed over.
  const std::string ports = cluster.standby.port() + "," + cluster.primary.port();
  TestMachine machine{adapters::makePostgresDbe(std::chrono::seconds(3))};
  const std::string trace = machine.directory / "trace.txt";
  Runtime& runtime = machine.runtime;
  Session session{runtime};
  ARGOInterface argo{runtime, session};

 private:
  std::thread locker_;
};

TEST_F(Failover, DuringALoad) {
  lock("fahrerkarte");
  cluster.during("wait_event_type = 'Lock'", true, [&] { EXPECT_FALSE(argo.Load()); });
  EXPECT_THAT(machine.messages.take(),
              ElementsAre("ARGO Kartix: Fehler|(1003)\r\nDatenbankfehler: Abfragen der Kartendaten fehlgeschlagen."));
  EXPECT_THAT(readBytes(trace), HasSubstr("Datenbank: "));
  session.begin("4711");
  EXPECT_TRUE(argo.Load());
  EXPECT_EQ(session.CardCount, 1);
}

TEST_F(Failover, DuringAnUpdate) {
  lock("personalien");
  cluster.during("wait_event_type = 'Lock'", true, [&] { EXPECT_FALSE(update()); });
  EXPECT_EQ(count("personalien where wohnort = 'Bonn'"), 1);
  EXPECT_EQ(count("datenaustausch"), 0);
  EXPECT_TRUE(update());
  EXPECT_EQ(count("personalien where wohnort = 'Köln'"), 1);
  EXPECT_EQ(count("datenaustausch"), 1);
  EXPECT_THAT(machine.messages.take(), IsEmpty());
}

TEST_F(Failover, DuringAnInsert) {
  lock("bearbeitung");
  cluster.during("wait_event_type = 'Lock'", true, [&] { EXPECT_FALSE(insert()); });
  EXPECT_EQ(count("bearbeitung"), 0);
  EXPECT_TRUE(insert());
  EXPECT_EQ(count("bearbeitung"), 1);
  EXPECT_EQ(count("datenaustausch"), 1);
  EXPECT_THAT(machine.messages.take(), IsEmpty());
}

TEST_F(Failover, CommitThatTheSuccessorHasIsWritten) {
  waitFor("keiner");
  cluster.during("wait_event = 'SyncRep'", true, [&] { EXPECT_TRUE(insert()); });
  EXPECT_EQ(count("bearbeitung"), 1);
  EXPECT_EQ(count("datenaustausch"), 1) << "the log row goes to the successor";
  EXPECT_THAT(machine.messages.take(), IsEmpty());
}

TEST_F(Failover, UpdateThatTheSuccessorHasIsWritten) {
  waitFor("keiner");
  cluster.during("wait_event = 'SyncRep'", true, [&] { EXPECT_TRUE(update()); });
  EXPECT_EQ(count("personalien where wohnort = 'Köln'"), 1);
  EXPECT_EQ(count("datenaustausch"), 1);
}

TEST_F(Failover, CommitThatTheSuccessorHasNotIsNotWritten) {
  waitFor("nachfolger");
  cluster.holdLog();
  cluster.during("wait_event = 'SyncRep'", true, [&] { EXPECT_FALSE(insert()); });
  EXPECT_EQ(count("bearbeitung"), 0);
  EXPECT_TRUE(insert());
  EXPECT_EQ(count("bearbeitung"), 1);
  EXPECT_EQ(count("datenaustausch"), 1);
  EXPECT_THAT(machine.messages.take(), IsEmpty()) << "known is known";
}

TEST_F(Failover, CommitOfWhichNobodyKnowsIsToldToTheClerk) {
  waitFor("keiner");
  cluster.during("wait_event = 'SyncRep'", false, [&] { EXPECT_FALSE(insert()); });
  EXPECT_THAT(machine.messages.take(),
              ElementsAre(AllOf(HasSubstr("Fehler beim Schreiben"), HasSubstr("nicht bekannt"))));
  EXPECT_THAT(readBytes(trace), HasSubstr("Ausgang unklar: Fahrerkarte Nr. DF1"));
  cluster.promote();
  EXPECT_EQ(count("bearbeitung"), 1);
  EXPECT_EQ(count("datenaustausch"), 0);
}

TEST_F(Failover, LostSessionAtTheSameServerLosesNothing) {
  waitFor("keiner");
  std::thread breaker([&] {
    const std::string waiting = " from pg_stat_activity where usename = 'argo' and wait_event = 'SyncRep'";
    cluster.primary.until("select count(*) = 1" + waiting);
    cluster.primary.ask("select pg_terminate_backend(pid)" + waiting);
    cluster.primary.ask("alter system reset synchronous_standby_names");
    cluster.primary.ask("select pg_reload_conf()");
  });
  EXPECT_TRUE(insert());
  breaker.join();
  EXPECT_EQ(cluster.primary.ask("select count(*) from bearbeitung"), "1");
  EXPECT_EQ(cluster.primary.ask("select count(*) from datenaustausch"), "1");
}

}  // namespace
}  // namespace kartix::test
