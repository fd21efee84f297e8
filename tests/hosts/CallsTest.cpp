#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <memory>
#include <thread>

#include "adapters/settings/Settings.h"
#include "adapters/sqlite/HostDatabase.h"
#include "component/Component.h"
#include "hostdb/Own.h"
#include "hostdb/Session.h"
#include "kartix/CFahrerkarte.h"
#include "kartix/CPersonalien.h"
#include "kartix/DBETXTDatabase.h"
#include "kartix/Kartix.h"
#include "platform/forms/Form.h"
#include "runtime/Konfiguration.h"
#include "support/Files.h"
#include "support/TestMachine.h"

namespace kartix::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

/// A front end in which something else happens while the inquiry's window is open.
struct Meanwhile : IdleParts {
  ShowResult showModal(forms::Form& form) override {
    if (form.name() == "StartForm") {
      ++windows;
      if (happens) happens();
    }
    return ShowResult::ended;
  }
  int windows = 0;
  std::function<void()> happens;
};

/// A component with the trace on, used in ways in which no host should.
class Calls : public testing::Test {
 protected:
  Calls() {
    adapters::createHostDatabase(directory / "host.db");
    const auto registry = adapters::makeRegFile(directory / "registry.reg");
    const std::string root(productKey);
    registry->RegSetValueEx(root + "ZFER", "DebugLevel", "1");
    registry->RegSetValueEx(root + "ZFER", "DebugFile", traceFile.string());
    registry->RegSetValueEx(root + "FS", "DBName", (directory / "host.db").string());
    kartix::Setup setup;
    setup.registryFile = directory / "registry.reg";
    setup.userInterface = &clerk;
    setup.sounds = &clerk;
    component = std::make_unique<Component>(setup);
    kartix = Own::newOf<Kartix>(*component);
    EXPECT_TRUE(kartix->init("Meier", "4711"));
  }

  std::string trace() const { return readBytes(traceFile); }
  bool connect(DBETXTDatabase& database) const {
    return database.init("", "", "", "", directory / "host.db", "", "");
  }

  const TempDir directory;
  const std::filesystem::path traceFile = directory / "trace.txt";
  Meanwhile clerk;
  std::unique_ptr<Component> component;
  std::unique_ptr<Kartix> kartix;
};

TEST_F(Calls, WhileOneRunsOthersAreRefusedAndTheSessionStays) {
  auto other = Own::newOf<Kartix>(*component);
  ASSERT_TRUE(other->init("Meier", "4711"));
  clerk.happens = [&] {
    component->session().ResultCard.kartennr = "DF1";
    EXPECT_EQ(kartix->ZKRAnfrage("2"), -1);
    EXPECT_EQ(other->KartenStorno("2"), -1);
    EXPECT_FALSE(other->init("Schulz", "4712"));
    EXPECT_EQ(other->KartenMitteilung("2"), -1);
    EXPECT_EQ(Own::of<Kartix>(*component).FahrerKartenBestellung("2"), -1);
    other.reset();
    EXPECT_EQ(kartix->kartennr(), "DF1");
  };
  EXPECT_EQ(kartix->ZKRAnfrage("1"), -1);
  EXPECT_EQ(clerk.windows, 1);
  const Session& session = component->session();
  EXPECT_EQ(session.CurrentPerson.personennummer + "/" + session.CurrentLfdnr, "4711/1");
  EXPECT_EQ(kartix->kartennr(), "DF1");
  EXPECT_EQ(component->runtime().ClerkName, "Meier");
  std::vector<testing::Matcher<std::string>> lines;
  for (const char* call : {"Class_Initialize", "Function init", "Function ZKRAnfrage", "Function KartenStorno",
                           "Function KartenMitteilung", "Function FahrerKartenBestellung", "Class_Terminate"}) {
    lines.push_back(HasSubstr(std::string(call) + ": abgewiesen, ein anderer Aufruf l\xE4uft noch\r\n"));
  }
  EXPECT_THAT(trace(), AllOf(testing::AllOfArray(lines), Not(HasSubstr("TERMINATED"))));
  kartix.reset();
  EXPECT_THAT(trace(), HasSubstr("TERMINATED"));
}

TEST_F(Calls, AnObjectThatGoesInItsOwnOperationIsReleasedAfterwards) {
  clerk.happens = [&] {
    kartix.reset();
    EXPECT_TRUE(component->session().ready());
    EXPECT_THAT(trace(), Not(HasSubstr("TERMINATED")));
  };
  EXPECT_EQ(kartix->ZKRAnfrage("1"), -1);
  EXPECT_FALSE(component->session().ready());
  EXPECT_THAT(trace(), testing::EndsWith("EOF\r\n"));
}

TEST_F(Calls, OnAnotherThreadAllAreRefused) {
  auto ours = Own::of<DBETXTDatabase>(component->runtime());
  ASSERT_TRUE(connect(ours));
  auto left = Own::newOf<DBETXTDatabase>(component->runtime());
  ASSERT_TRUE(connect(*left));
  ASSERT_EQ(left->executeSQL("insert into fahrerkarte (personennummer, lfdnr) values ('1', '1')"), 0);
  component->session().ResultCard.kartennr = "DF1";
  std::atomic<bool> done = false;
  std::thread thread([&] {
    {
      auto third = Own::of<Kartix>(*component);
      EXPECT_FALSE(third.init("Schulz", "4712"));
      EXPECT_FALSE(kartix->init("Schulz", "4712"));
      EXPECT_EQ(kartix->ZKRAnfrage("1"), -1);
      EXPECT_EQ(kartix->kartennr(), "");
    }
    auto person = Own::of<CPersonalien>(component->runtime());
    person.titel = "Dr.";
    EXPECT_FALSE(person.update("4711"));
    auto card = Own::of<CFahrerkarte>(component->runtime());
    EXPECT_FALSE(card.insert("4711"));
    auto theirs = Own::of<DBETXTDatabase>(component->runtime());
    EXPECT_FALSE(connect(theirs));
    EXPECT_EQ(ours.executeSQL("delete from fahrerkarte", true), -1);
    left.reset();
    done = true;
  });
  // Neither gets into the way of the other.
  do EXPECT_EQ(kartix->kartennr(), "DF1");
  while (!done);
  thread.join();
  EXPECT_EQ(clerk.windows, 0);
  EXPECT_EQ(component->session().CurrentPerson.personennummer, "4711");
  EXPECT_THAT(trace(), AllOf(HasSubstr("Function init: abgewiesen, Aufruf aus einem anderen Thread"),
                             HasSubstr("CPersonalien::update: abgewiesen"), Not(HasSubstr("TERMINATED"))));
  EXPECT_EQ(kartix->ZKRAnfrage("1"), -1);
  EXPECT_EQ(clerk.windows, 1);
  EXPECT_EQ(ours.executeSQL("delete from fahrerkarte", true), 0)
      << "the connection left by the thread holds the file";
}

}  // namespace
}  // namespace kartix::test
