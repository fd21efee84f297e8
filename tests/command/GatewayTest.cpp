#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

#include "support/TempDir.h"

namespace {

using testing::HasSubstr;

/// The gateway as a process in a directory of its own.
class GatewayCommand : public testing::Test {
 protected:
  /// Runs `line`, in which `gateway` is the command; gives what it prints on both outputs.
  std::string shell(const std::string& line) {
    const std::string script = "cd " + dir.path().string() + "; gateway() { " KARTIX_COMMAND " gateway \"$@\"; }; (" +
                               line + ") >out 2>&1 </dev/null; echo \"status $?\" >>out";
    EXPECT_EQ(std::system(script.c_str()), 0);
    std::ifstream out(dir / "out");
    return {std::istreambuf_iterator<char>(out), {}};
  }

  const kartix::test::TempDir dir;
};

TEST_F(GatewayCommand, SaysWhereItListensAndEndsWhenToldTo) {
  // A background process of a shell ignores the interrupt unless the shell is told to control jobs.
  const std::string out =
      shell("set -m; for signal in INT TERM; do rm -f said; " KARTIX_COMMAND
            " gateway --listen 127.0.0.1:0 --state state.json >said & "
            "for i in $(seq 200); do [ -s said ] && break; sleep 0.05; done; "
            "cat said; kill -$signal $!; wait $!; echo $?; stat -c %a state.json; done 2>/dev/null");
  const std::string once = "Gateway simulator listening on http://127.0.0.1:[0-9]+\n0\n600\n";
  EXPECT_THAT(out, testing::MatchesRegex(once + once + "status 0\n"));
}

TEST_F(GatewayCommand, WrongUsageIsExplained) {
  std::ofstream(dir / "bad.json") << "{}";
  const std::vector<std::pair<std::string, const char*>> cases = {
      {"--scenario half", "choose one of none, connection-closed, order-accepted-then-closed, half-answer"},
      {"--listen 8080", "ADDR:PORT: 8080"},
      {"--listen 127.0.0.1:65536", "ADDR:PORT"},
      {"--cert server.pem", "--key"},
      {"--cert gone.pem --key gone.key", "gone.pem: No such file"},
      {"--state bad.json", "not one of this simulator"},
      {"--state gone/state.json", "cannot be written"}};
  for (const auto& [arguments, expected] : cases) {
    const std::string out = shell("gateway " + arguments);
    EXPECT_THAT(out, testing::AllOf(HasSubstr(expected), testing::EndsWith("status 2\n"))) << arguments;
  }
  EXPECT_THAT(shell("gateway --help"), testing::AllOf(HasSubstr("Examples:"), HasSubstr("kartix-3006")));
}

}  // namespace
