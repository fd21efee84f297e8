#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "adapters/script/Script.h"
#include "adapters/script/Scripted.h"
#include "adapters/script/Transcript.h"
#include "platform/forms/Form.h"

namespace kartix::adapters {
namespace {

using testing::HasSubstr;

class Message : public forms::Form {
 public:
  Message() : Form("MessageBox", "Hinweis") {
    Label1.setText("Zeile 1\r\nZeile \xff");
    OK.onClick = [this] { hide(); };
  }
  forms::Label Label1{*this, "Label1"};
  forms::Button OK{*this, "Button[1]"};
};

/// A window with one control of each kind that a clerk can use.
class Counter : public forms::Form {
 public:
  explicit Counter(platform::UserInterface& clerk) : Form("Counter", "Schalter") {
    Pass.password = true;
    Pass.setText("alt");
    Combo.setItems({"Neu", "Reklamation"});
    List.setRows({{"a", "b"}, {"c", "d"}});
    List.onDoubleClick = [this] { picked = static_cast<int>(*List.currentRow()); };
    Off.setEnabled(false);
    Off.onClick = [] {};
    Text.onKeyPress = [](char32_t key) -> std::optional<char32_t> {
      if (key == U'-') return std::nullopt;
      return key == U'a' ? U'A' : key;
    };
    Text.onChange = [this] { ++changes; };
    Ask.onClick = [this, &clerk] {
      Message message;
      clerk.showModal(message);
      Progress.setValue(30);
      clerk.progressReported(*this, 30, "läuft");
    };
  }
  void onCloseBox() override {
    if (!stubborn) hide();
  }

  forms::TextField Text{*this, "Text[0]"};
  forms::TextField Pass{*this, "ZEVISPass"};
  forms::OptionButton Option{*this, "XPOption[0]"};
  forms::ComboBox Combo{*this, "Combo[0]"};
  forms::ListView List{*this, "Liste"};
  forms::ProgressBar Progress{*this, "Progress"};
  forms::Button Ask{*this, "Button[0]"};
  forms::Button Off{*this, "Button[1]"};
  int changes = 0;
  int picked = -1;
  bool stubborn = false;
};

class Play : public testing::Test {
 protected:
  void play(std::string_view json, bool stubborn = false) {
    Script script = Script::parse(json);
    Transcript transcript(out);
    const auto clerk = makeScriptUserInterface(script, &transcript);
    form = std::make_unique<Counter>(*clerk);
    form->stubborn = stubborn;
    clerk->showModal(*form);
    EXPECT_FALSE(form->shown());
    mismatch = endPlay(script, &transcript).value_or("");
  }

  /// The lines of the transcript, without those of `ready`.
  std::string events() const {
    std::istringstream in(out.str());
    std::string result;
    for (std::string line; std::getline(in, line);) {
      if (!line.starts_with(R"({"event":"ready")")) result += line + "\n";
    }
    return result;
  }

  std::ostringstream out;
  std::unique_ptr<Counter> form;
  std::string mismatch;
};

TEST_F(Play, EveryActionReachesTheWindowAndTheTranscript) {
  play(R"([{"window":"Counter","choose":"XPOption[0]"},
           {"window":"Counter","type":{"Text[0]":"ab-ü","ZEVISPass":"geheim"}},
           {"window":"Counter","select":{"Combo[0]":"Reklamation"}},
           {"window":"Counter","pick":1},
           {"window":"Counter","click":"Button[0]"},
           {"window":"MessageBox","click":"Button[1]"}])");
  EXPECT_EQ(mismatch, "");
  EXPECT_TRUE(form->Option.selected());
  EXPECT_EQ(form->Text.text(), "Abü");
  EXPECT_EQ(form->changes, 3);
  EXPECT_EQ(form->Pass.text(), "geheim");
  EXPECT_EQ(form->Combo.text(), "Reklamation");
  EXPECT_EQ(form->picked, 1);
  EXPECT_EQ(events(), R"({"event":"show","window":"Counter","caption":"Schalter"}
{"event":"step","window":"Counter","choose":"XPOption[0]"}
{"event":"step","window":"Counter","type":{"Text[0]":"ab-ü","ZEVISPass":"*****"}}
{"event":"step","window":"Counter","select":{"Combo[0]":"Reklamation"}}
{"event":"step","window":"Counter","pick":1}
{"event":"step","window":"Counter","click":"Button[0]"}
{"event":"show","window":"MessageBox","caption":"Hinweis"}
{"event":"step","window":"MessageBox","click":"Button[1]"}
{"event":"hide","window":"MessageBox"}
{"event":"progress","window":"Counter","value":30,"text":"läuft"}
{"event":"hide","window":"Counter"}
)");
  const std::string all = out.str();
  EXPECT_EQ(all.find("geheim"), std::string::npos);
  EXPECT_THAT(all, HasSubstr(R"({"event":"ready","window":"MessageBox","caption":"Hinweis","controls":{)"
                             R"("Label1":{"text":"Zeile 1\r\nZeile )"
                             "\xEF\xBF\xBD"
                             R"(","enabled":true,"visible":true},"Button[1]":)"));
}

TEST_F(Play, WhatDoesNotFitIsToldWithExpectedAndFound) {
  const std::vector<std::pair<const char*, const char*>> cases = {
      {R"({"window":"ZKR","click":"Button[0]"})",
       R"(step 1: expected to click "Button[0]" in window "ZKR"; found window "Counter" ("Schalter") waiting)"},
      {R"({"window":"Counter","click":"Button[7]"})", R"(found no control "Button[7]")"},
      {R"({"window":"Counter","click":"Button[1]"})", R"(found "Button[1]" is disabled)"},
      {R"({"window":"Counter","click":"Progress"})", R"(found "Progress" cannot be clicked)"},
      {R"({"window":"Counter","choose":"Text[0]"})", R"(found "Text[0]" is no option button)"},
      {R"({"window":"Counter","select":{"Combo[0]":"Alt"}})", R"(found "Combo[0]" has no entry "Alt")"},
      {R"({"window":"Counter","pick":2})", R"(found "Liste" has 2 row(s))"},
      {R"({"window":"Counter","click":"Button[0]"},{"window":"Counter","close":true})",
       R"(step 2: expected to close in window "Counter"; found window "MessageBox" ("Hinweis": "Zeile 1 Zeile )"},
      {R"({"window":"Counter","close":true},{"window":"Counter","pick":0})",
       R"(step 2: expected to pick row 0 in window "Counter"; found the operation ended with 1 step(s) left)"},
  };
  for (const auto& [steps, expected] : cases) {
    out.str("");
    play("[" + std::string(steps) + "]");
    EXPECT_THAT(mismatch, HasSubstr(expected));
    EXPECT_THAT(out.str(), HasSubstr(R"({"event":"mismatch",)")) << expected;
  }
}

TEST_F(Play, AMismatchNamesWhatThereIs) {
  play(R"([{"window":"Counter","pick":7}])");
  EXPECT_THAT(mismatch,
              HasSubstr("\n  open windows: \"Counter\""
                        "\n  controls of \"Counter\": \"Text[0]\", \"ZEVISPass\", \"XPOption[0]\", \"Combo[0]\", "
                        "\"Liste\", \"Progress\", \"Button[0]\", \"Button[1]\" (disabled)"
                        "\n  entries of \"Combo[0]\": \"Neu\", \"Reklamation\""
                        "\n  row 0 of \"Liste\": \"a\", \"b\"\n  row 1 of \"Liste\": \"c\", \"d\""));
}

TEST_F(Play, AWindowThatRefusesItsCloseBoxIsTakenAwayInTheEnd) {
  play("[]", true);
  EXPECT_THAT(mismatch, HasSubstr("window \"Counter\" to close"));
}

TEST(Script, TellsTheFirstBadStep) {
  const std::vector<std::pair<std::string, const char*>> cases = {
      {"[", "not valid JSON"},
      {"{}", "a script is an array of steps"},
      {R"([{"window":"A","close":true},{"window":"A","press":"x"}])", R"(step 2: unknown action "press")"},
      {R"([{"window":"A"}])", "step 1: the action is missing"},
      {R"([{"click":"x"}])", R"(step 1: "window" is missing)"},
      {R"([{"window":"A","click":"x","close":true}])", "step 1: more than one action"},
      {R"([{"window":"A","pick":-1}])", R"(step 1: "pick" needs the number of a row)"},
      {R"([{"window":"A","type":{"T":1}}])", R"(step 1: "type": the text for "T" is not a string)"},
      {R"([{"window":"A","close":false}])", R"(step 1: "close" needs the value true)"},
      {std::string(100000, '['), "nested too deeply"},
  };
  for (const auto& [json, expected] : cases) {
    try {
      Script::parse(json);
      ADD_FAILURE() << "accepted: " << json;
    } catch (const BadInput& error) {
      EXPECT_THAT(error.what(), HasSubstr(expected));
    }
  }
}

TEST(Objects, OfAFileThatSaysSomethingElseAreRefused) {
  for (const char* bad : {"[]", R"({"A": 1})", R"({"A": {"Do": []}})", R"({"A": {"Do": {"1": [1]}}})"}) {
    EXPECT_THROW(makeScriptedObjects(bad), BadInput) << bad;
  }
}

}  // namespace
}  // namespace kartix::adapters
