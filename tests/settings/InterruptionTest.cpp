#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <random>
#include <thread>

#include "adapters/settings/Settings.h"
#include "support/Files.h"
#include "support/TempDir.h"

namespace kartix::adapters {
namespace {

using test::readBytes;
using test::writeBytes;

const std::string key = R"(Software\Tessel\ARGO KBA ONLINE\ZKR)";

/// A registry file and an ini file side by side, each holding the same password.
class Interruption : public testing::Test {
 protected:
  Interruption() {
    writeBytes(ini, "; remark\r\n[ZKR]\r\nZEVISPass=old\n; end");
    EXPECT_TRUE(writeReg("old"));
  }

  bool writeReg(const std::string& value) const { return makeRegFile(reg)->RegSetValueEx(key, "ZEVISPass", value); }
  bool writeIni(const std::string& value) const {
    return makeIniFiles()->WritePrivateProfileString("ZKR", "ZEVISPass", value, ini.string());
  }
  long files() const { return std::distance(std::filesystem::directory_iterator(directory.path()), {}); }

  test::TempDir directory;
  const std::filesystem::path reg = directory / "store.reg";
  const std::filesystem::path ini = directory / "host.ini";
};

enum class End { killed, refused };

/// Runs `write` in a process that may write no more than `limit` bytes to a file: at that byte it is killed, or the
/// system refuses to write on.
template <typename Write>
void interruptedAt(std::size_t limit, End end, Write write) {
  const pid_t child = ::fork();
  if (child == 0) {
    const rlimit bound{limit, limit};
    ::setrlimit(RLIMIT_FSIZE, &bound);
    std::signal(SIGXFSZ, end == End::killed ? SIG_DFL : SIG_IGN);
    ::_exit(write("newer") ? 0 : 1);
  }
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ASSERT_TRUE(end == End::killed ? WIFSIGNALED(status) : WIFEXITED(status) && WEXITSTATUS(status) == 1) << limit;
}

TEST_F(Interruption, AtAnyByteLeavesTheOldFile) {
  const auto interrupt = [&](const std::filesystem::path& file, auto write) {
    const std::string before = readBytes(file);
    ASSERT_TRUE(write("newer"));
    const std::string after = readBytes(file);
    ASSERT_TRUE(write("old"));
    ASSERT_EQ(readBytes(file), before);
    for (const End end : {End::killed, End::refused}) {
      for (std::size_t limit = 0; limit < after.size(); ++limit) {
        ASSERT_NO_FATAL_FAILURE(interruptedAt(limit, end, write));
        ASSERT_EQ(readBytes(file), before) << limit;
      }
    }
    ASSERT_TRUE(write("newer"));
    EXPECT_EQ(readBytes(file), after);
  };
  ASSERT_NO_FATAL_FAILURE(interrupt(reg, [&](const char* value) { return writeReg(value); }));
  ASSERT_NO_FATAL_FAILURE(interrupt(ini, [&](const char* value) { return writeIni(value); }));
  EXPECT_EQ(files(), 2) << "the interrupted writes have left something behind";
}

TEST_F(Interruption, WriterKilledAtAnyMomentLeavesOneOfTheTwoContents) {
  const std::vector<std::string> values = {"old", std::string(900, 'n')};
  std::vector<std::string> regs(2);
  std::vector<std::string> inis(2);
  for (const std::size_t i : {1, 0}) {
    ASSERT_TRUE(writeReg(values[i]) && writeIni(values[i]));
    regs[i] = readBytes(reg);
    inis[i] = readBytes(ini);
  }
  std::mt19937 random(20260101);
  std::uniform_int_distribution<int> microseconds(0, 6000);
  constexpr int kills = 150;
  for (int round = 0; round < kills; ++round) {
    const pid_t child = ::fork();
    if (child == 0) {
      for (std::size_t i = 1;; i = 1 - i) {
        if (!writeReg(values[i]) || !writeIni(values[i])) ::_exit(1);
      }
    }
    std::this_thread::sleep_for(std::chrono::microseconds(microseconds(random)));
    ::kill(child, SIGKILL);
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status)) << "a write failed after kill " << round;
    ASSERT_THAT(regs, testing::Contains(readBytes(reg)));
    ASSERT_THAT(inis, testing::Contains(readBytes(ini)));
    // A writer that is killed cannot tidy up: one unfinished file for each settings file, never more.
    ASSERT_LE(files(), 4);
  }
  ASSERT_TRUE(writeReg(values[1]) && writeIni(values[1]));
  EXPECT_EQ(readBytes(reg), regs[1]);
  EXPECT_EQ(readBytes(ini), inis[1]);
  EXPECT_EQ(files(), 2);
}

TEST_F(Interruption, WritersDoNotLoseEachOthersValues) {
  constexpr int writers = 4;
  constexpr int values = 20;
  for (int writer = 0; writer < writers; ++writer) {
    if (::fork() != 0) continue;
    bool written = true;
    for (int i = 0; i < values; ++i) {
      const auto name = std::to_string(writer) + "." + std::to_string(i);
      written = makeRegFile(reg)->RegSetValueEx(key, name, name) && written;
    }
    ::_exit(written ? 0 : 1);
  }
  for (int status = 0; ::wait(&status) > 0;) EXPECT_EQ(status, 0);
  const auto registry = makeRegFile(reg);
  for (int i = 0; i < writers * values; ++i) {
    EXPECT_TRUE(registry->RegQueryValueEx(key, std::to_string(i / values) + "." + std::to_string(i % values))) << i;
  }
}

}  // namespace
}  // namespace kartix::adapters
