#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <thread>

#include "adapters/clock/SystemClock.h"
#include "adapters/files/Files.h"
#include "gateway/OrderBook.h"
#include "support/Files.h"
#include "support/TempDir.h"

namespace kartix::test {
namespace {

BookEntry message(const std::string& person) {
  BookEntry entry;
  entry.kind = "Bestellung";
  entry.person = person;
  entry.lfdnr = "1";
  return entry;
}

class OrderBookTest : public testing::Test {
 protected:
  /// Writes messages of person `person`, each begun and closed, as another process.
  pid_t write(int person, int messages) {
    const pid_t child = fork();
    if (child != 0) return child;
    for (int i = 0; i < messages; ++i) {
      BookEntry entry = message(std::to_string(person));
      if (book.begin(entry) || book.end(entry.id, Outcome::accepted, "")) _exit(1);
    }
    _exit(0);
  }

  std::vector<BookEntry> entries() {
    std::vector<BookEntry> found;
    EXPECT_FALSE(book.read(found));
    return found;
  }

  TempDir directory;
  std::filesystem::path file = directory / "book.txt";
  std::unique_ptr<platform::FileSystem> files = adapters::makeFiles();
  std::unique_ptr<platform::Clock> clock = adapters::makeSystemClock();
  OrderBook book{*files, *clock, file.string()};
};

TEST_F(OrderBookTest, KeepsWhatSeveralProcessesWriteAtOnceForItsOwnerAlone) {
  std::vector<pid_t> writers;
  for (int person = 1; person <= 4; ++person) writers.push_back(write(person, 25));
  for (const pid_t writer : writers) {
    int status = -1;
    ASSERT_EQ(waitpid(writer, &status, 0), writer);
    EXPECT_EQ(status, 0);
  }
  const auto found = entries();
  EXPECT_EQ(found.size(), 100U);
  EXPECT_TRUE(std::all_of(found.begin(), found.end(), [](const auto& e) { return e.outcome == Outcome::accepted; }));
  using std::filesystem::perms;
  EXPECT_EQ(std::filesystem::status(file).permissions(), perms::owner_read | perms::owner_write);
}

TEST_F(OrderBookTest, LosesNothingThatWasWrittenWhenAWriterIsKilled) {
  std::size_t before = 0;
  for (int round = 0; round < 20; ++round) {
    const pid_t writer = write(round, 100000);
    std::this_thread::sleep_for(std::chrono::milliseconds(10 + round));
    kill(writer, SIGKILL);
    waitpid(writer, nullptr, 0);
    const auto found = entries();
    EXPECT_GE(found.size(), before);
    const auto open = std::count_if(found.begin(), found.end(), [](const auto& e) { return isUnclear(e.outcome); });
    EXPECT_LE(open, round + 1) << "a killed writer leaves at most the message that it was at";
    before = found.size();
  }
  EXPECT_GT(before, 0U);
}

TEST_F(OrderBookTest, ALineThatACrashHasBrokenOffCostsNothingElse) {
  BookEntry entry = message("4711");
  entry.clerk = "Mei\ter\n";
  ASSERT_FALSE(book.begin(entry));
  const std::string whole = readBytes(file);
  for (std::size_t length = 1; length < whole.size(); ++length) {
    writeBytes(file, whole + std::string(5000, 'x') + "\nend\t" + whole.substr(0, length));
    BookEntry next = message("4712");
    ASSERT_FALSE(book.begin(next));
    ASSERT_FALSE(book.end(next.id, Outcome::unclear, "COM/-26"));
    const auto found = entries();
    ASSERT_EQ(found.size(), 2U) << length;
    EXPECT_EQ(found[0].clerk, "Mei er ");
    EXPECT_EQ(found[1].detail, "COM/-26");
  }
}

}  // namespace
}  // namespace kartix::test
