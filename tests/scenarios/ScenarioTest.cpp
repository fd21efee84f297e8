#include <gtest/gtest.h>

#include "scenarios/Expectations.h"

namespace kartix::test {

void PrintTo(const Scenario& scenario, std::ostream* out) { *out << scenario.name; }

namespace {

class ScenarioTest : public testing::TestWithParam<Scenario> {};

TEST_P(ScenarioTest, Plays) {
  ASSERT_EQ(GetParam().fault, "");
  SCOPED_TRACE(GetParam().content["about"].get<std::string>());
  Installation installation(GetParam().content);
  checkExpectations(installation, installation.play());
}

INSTANTIATE_TEST_SUITE_P(Scenarios, ScenarioTest, testing::ValuesIn(loadScenarios()),
                         [](const auto& scenario) { return scenario.param.name; });

}  // namespace
}  // namespace kartix::test
