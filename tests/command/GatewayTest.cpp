#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

#include "support/TempDir.h"

namespace {

using testing::HasSubstr;

/// The gateway as a process in a directory of its own, without a display.
class GatewayCommand : public testing::Test {
 protected:
  /// Runs `line`, in which `kartix` and `gateway` are the commands; gives what it prints on both outputs.
  std::string shell(const std::string& line) {
    const std::string script = "cd " + dir.path().string() +
                               "; unset DISPLAY WAYLAND_DISPLAY; kartix() { " KARTIX_COMMAND
                               " \"$@\"; }; gateway() { kartix gateway \"$@\"; }; (" +
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

TEST_F(GatewayCommand, DemonstrationEndsAsExpectedAndReplacesOnlyItsOwn) {
  const std::string out = shell(
      "kartix demo --dir d --screenshots s >first && kartix demo --dir d | tail -n 1; ls s | wc -l; "
      "ls d/transcripts | wc -l; mkdir own; touch own/host.db; kartix demo --dir own");
  EXPECT_THAT(out, testing::StartsWith("Every act ended as expected.\n10\n13\nkartix: "));
  EXPECT_THAT(out,
              testing::EndsWith("host.db is not of an earlier demonstration: name another directory\nstatus 1\n"));
}

TEST_F(GatewayCommand, AnAcceptedOrderWhoseAnswerIsLostStandsOnceAndIsTraced) {
  std::ofstream(dir / "clerk.json") << R"([{"window": "MessageBox", "click": "Button[1]"},
    {"window": "Bestellung", "select": {"Combo[0]": "norm. Bestellung"}},
    {"window": "Bestellung", "click": "Button[0]"}, {"window": "MessageBox", "click": "Button[0]"},
    {"window": "MessageBox", "click": "Button[1]"}, {"window": "Bestellung", "click": "Button[1]"}])";
  const std::string out =
      shell("kartix demo --dir d >demo; " KARTIX_COMMAND
            " gateway --listen 127.0.0.1:0 --scenario order-accepted-then-closed --state state.json >said & "
            "for i in $(seq 200); do [ -s said ] && break; sleep 0.05; done; "
            "export KARTIX_REGISTRY=d/registry.reg; "
            "for s in ZEVISPort=$(sed 's/.*://' said) FS.DBName=$PWD/d/host.db ZKR.ZEVISPass=geheim01 DebugLevel=1 "
            "DebugFile=trace.txt; do kartix settings set ${s%%=*} ${s#*=}; done; "
            "kartix run FahrerKartenBestellung --person 4713 --lfdnr 1 --clerk Meier --now 2014-11-14T09:30:00 "
            "--script clerk.json --transcript t | grep -o '\"result\":-1'; kill $!; wait $!; "
            "grep -c 'COM/-26' t; grep -o '\"4713/[0-9]*\"' state.json; grep -ac 'Ausgang unklar: Bestellung 4713/1' "
            "trace.txt");
  EXPECT_EQ(out, "\"result\":-1\n1\n\"4713/1\"\n1\nstatus 0\n");
}

}  // namespace
