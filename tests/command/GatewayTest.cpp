#include "command/CommandFixture.h"

namespace kartix::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;

/// The gateway as a process.
class GatewayCommand : public CommandTest {};

TEST_F(GatewayCommand, SaysWhereItListensAndEndsWhenToldTo) {
  // A background process of a shell ignores the interrupt unless the shell is told to control jobs.
  const Outcome outcome = shell(
      "set -m; for signal in INT TERM; do rm -f said; "
      "kartix gateway --listen 127.0.0.1:0 --state state.json >said & "
      "for i in $(seq 200); do [ -s said ] && break; sleep 0.05; done; "
      "cat said; kill -$signal $!; wait $!; echo $?; stat -c %a state.json; done 2>/dev/null");
  const std::string once = "Gateway simulator listening on http://127.0.0.1:[0-9]+\n0\n600\n";
  EXPECT_THAT(outcome.out, testing::MatchesRegex(once + once));
}

TEST_F(GatewayCommand, WrongUsageIsExplained) {
  write("bad.json", "{}");
  const std::vector<std::pair<std::string, const char*>> cases = {
      {"--scenario half", "choose one of none, connection-closed, order-accepted-then-closed, half-answer"},
      {"--listen 8080", "ADDR:PORT: 8080"},
      {"--listen 127.0.0.1:65536", "ADDR:PORT"},
      {"--cert server.pem", "--key"},
      {"--cert gone.pem --key gone.key", "gone.pem: No such file"},
      {"--state bad.json", "not one of this simulator"},
      {"--state gone/state.json", "cannot be written"}};
  for (const auto& [arguments, expected] : cases) {
    const Outcome outcome = kartix("gateway " + arguments);
    EXPECT_EQ(outcome.status, 2) << arguments;
    EXPECT_THAT(outcome.err, HasSubstr(expected)) << arguments;
  }
  EXPECT_THAT(kartix("gateway --help").out, AllOf(HasSubstr("Examples:"), HasSubstr("kartix-3006")));
}

TEST_F(GatewayCommand, DemonstrationEndsAsExpectedAndReplacesOnlyItsOwn) {
  const Outcome outcome = shell(
      "kartix demo --dir d --screenshots s >first && kartix demo --dir d | tail -n 1; ls s | wc -l; "
      "ls d/transcripts | wc -l; mkdir own; touch own/host.db; kartix demo --dir own");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out, "Every act ended as expected.\n10\n13\n");
  EXPECT_THAT(outcome.err, HasSubstr("host.db is not of an earlier demonstration: name another directory\n"));
}

TEST_F(GatewayCommand, AnAcceptedOrderWhoseAnswerIsLostStandsOnceAndIsTraced) {
  write("clerk.json", R"([{"window": "MessageBox", "click": "Button[1]"},
    {"window": "Bestellung", "select": {"Combo[0]": "norm. Bestellung"}},
    {"window": "Bestellung", "click": "Button[0]"}, {"window": "MessageBox", "click": "Button[0]"},
    {"window": "MessageBox", "click": "Button[1]"}, {"window": "Bestellung", "click": "Button[1]"}])");
  const Outcome outcome = shell(
      "kartix demo --dir d >demo; "
      "kartix gateway --listen 127.0.0.1:0 --scenario order-accepted-then-closed --state state.json >said & "
      "for i in $(seq 200); do [ -s said ] && break; sleep 0.05; done; "
      "export KARTIX_REGISTRY=d/registry.reg; "
      "for s in ZEVISPort=$(sed 's/.*://' said) FS.DBName=$PWD/d/host.db DebugLevel=1 "
      "DebugFile=trace.txt; do kartix settings set ${s%%=*} ${s#*=}; done; "
      "echo geheim01 | kartix settings set ZKR.ZEVISPass; "
      "kartix run FahrerKartenBestellung --person 4713 --lfdnr 1 --clerk Meier --now 2014-11-14T09:30:00 "
      "--script clerk.json --transcript t | grep -o '\"result\":-1'; kill $!; wait $!; "
      "grep -c 'COM/-26' t; grep -o '\"4713/[0-9]*\"' state.json; grep -ac 'Ausgang unklar: Bestellung 4713/1' "
      "trace.txt");
  EXPECT_EQ(outcome.out, "\"result\":-1\n1\n\"4713/1\"\n1\n");
}

}  // namespace
}  // namespace kartix::test
