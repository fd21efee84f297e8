#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <sstream>

#include "Gateway.h"
#include "Installation.h"
#include "adapters/libxml2/LibXml.h"
#include "adapters/script/Script.h"
#include "adapters/script/Scripted.h"
#include "adapters/script/Transcript.h"
#include "common/CodePage.h"
#include "common/Text.h"
#include "common/Values.h"
#include "component/Component.h"
#include "component/Dispatch.h"
#include "component/HostSettings.h"
#include "gateway/KBAInterface.h"
#include "platform/forms/Control.h"
#include "soak/Clerk.h"

/// Whole operations: answers of the gateway, answers of the host's objects, and scripts for the clerk.
namespace kartix::fuzz {
namespace {

struct Operation {
  const char* name;
  const char* window;
  const char* lfdnr;
  const char* accepted;  ///< what the gateway answers
  const char* root;      ///< how its answers begin
  std::int32_t loginWanted;

  bool changes() const { return name != std::string_view("ZKRAnfrage"); }
};

constexpr std::array<Operation, 4> operations = {{
    {"ZKRAnfrage", "StartForm", "1", "<zkr-auskunft/>", "<zkr-a", 3020},
    {"FahrerKartenBestellung", "Bestellung", "1",
     "<information><head><returnCode>0</returnCode><cardNumber>DF2</cardNumber></head></information>", "<information",
     3000},
    {"KartenStorno", "fStorno", "3", "<information><head><returnCode>0</returnCode></head></information>",
     "<information", 3000},
    {"KartenMitteilung", "Mitteilung", "1", "<zkr-mhinweis><retc>0</retc></zkr-mhinweis>", "<zkr-m", 3020},
}};

/// A clerk who also takes the first hit, and twice chooses a new password.
class Clerk : public test::Clerk {
  ShowResult showModal(forms::Form& form) override {
    if (auto* const hits = dynamic_cast<forms::ListView*>(form.find("Liste"))) hits->userDoubleClick(0);
    if (form.name() == "ZEVISPassChange" && ++changes_ <= 2) {
      for (const char* const field : {"Text[1]", "Text[2]"})
        form.find(field)->setText("geheim" + std::to_string(changes_ + 1));
      form.markShown();
      form.find("Button[0]")->userClick();
      return ShowResult::ended;
    }
    return test::Clerk::showModal(form);
  }
  int changes_ = 0;
};

/// One operation with all that it needs.
struct Play {
  Clerk clerk;
  Pictures pictures;
  Gateway gateway;
  std::map<std::string, std::string> settings = installed();
  Setup setup;
  std::vector<std::string> messages;

  Play() {
    const auto read = [this](const std::string& name) {
      const auto found = settings.find(name);
      return found == settings.end() ? std::nullopt : std::optional(found->second);
    };
    const auto write = [this](const std::string& name, const std::string& value) {
      settings[name] = value;
      return true;
    };
    setup.registry = std::make_shared<HostSettings>(read, write);
    setup.now = {2014, 3, 5, 9, 30, 0};  // before the exchanges went to the objects of hosts
    setup.userInterface = &clerk;
    setup.sounds = &clerk;
    setup.images = &pictures;
    setup.http = &gateway;
  }

  bool carryOut(const Operation& operation) {
    Component component(setup);
    dispatch::Object kartix(dispatch::classNamed("Kartix"), component);
    std::array<platform::Value, 2> session = {std::string("Meier"), std::string("4711")};
    std::array<platform::Value, 1> lfdnr = {std::string(operation.lfdnr)};
    expect(kartix.call("init", session) == platform::Value(true), "a session begins");
    const auto result = kartix.call(operation.name, lfdnr);
    dispatch::properties(kartix);
    messages = clerk.takeMessages();
    return toNumber(result) == 1;
  }

  /// What is true however a change ends. `outcome` is what its last answer says.
  void checkChange(bool done, Outcome outcome) const {
    const bool told = std::any_of(messages.begin(), messages.end(), [](const std::string& message) {
      const std::string text = message.substr(message.find('|') + 1);
      return text.starts_with("\r\n") && text.find("erfolgreich") != std::string::npos;
    });
    expect(done == (outcome == Outcome::accepted), "a change is done when the answer accepts it");
    expect(told == done, "the clerk is told of what is done, and of nothing else");
    const auto entries = bookEntries();
    expect(entries.size() == 1, "the order book has one entry");
    expect(entries[0].outcome == outcome, "it says what the answer says",
           std::string(outcomeName(entries[0].outcome)));
  }
};

/// An answer as the description of the messages has it.
class Answer {
 public:
  explicit Answer(const Reply& reply) : reply_(reply) {
    constexpr std::size_t longest = 100000;
    const std::string text = library_->decode(reply.body).value_or("");
    document_->loadXML(text::trim(text::left(text::untilNul(text), longest)));
  }

  std::string root() const { return rootName(*document_); }
  std::string text(const std::string& path) const { return firstText(*document_, path); }
  std::int32_t number(const char* path) const { return leadingInt32(firstText(*document_, path)); }
  std::int32_t code() const {
    if (root() == "information") return number("//head//returnCode");
    return number(root() == "zkr-mitteilung" ? "//zkr-mitteilung//satz//retc" : "//zkr-mhinweis//retc");
  }
  bool loggedIn() const {
    return reply_.status == 200 && root() == "ZEVIS-HINWEIS" && number("//RETC") >= 0 && number("//RETC") < 1000;
  }

  Outcome to(const Operation& change) const {
    if (!reply_.complete) return Outcome::notSent;
    if (reply_.status >= 300 && reply_.status < 500) return Outcome::refused;
    const bool notification = change.name == std::string_view("KartenMitteilung");
    const bool order = change.name == std::string_view("FahrerKartenBestellung");
    bool understood = notification ? root() == "zkr-mhinweis" || root() == "zkr-mitteilung"
                                   : root() == "information" && has("//head//returnCode");
    if (order && code() == 0) understood = understood && has("//head//cardNumber");
    if (reply_.status != 200 || !understood) return Outcome::unclear;
    return code() == 0 ? Outcome::accepted : Outcome::refused;
  }

 private:
  bool has(const char* path) const { return !document_->selectNodes(path).empty(); }

  Reply reply_;
  std::unique_ptr<platform::XmlLibrary> library_ = adapters::makeLibXml();
  std::unique_ptr<platform::XmlDocument> document_ = library_->createDocument(adapters::xmlClassNames().front());
};

void withReplies(const Operation& operation, const std::vector<Reply>& replies) {
  Play play;
  play.gateway.replies = replies;
  const bool done = play.carryOut(operation);
  std::vector<const Sent*> messages;
  bool passwordSent = play.settings["ZKR.ZEVISPass"] == "geheim1";
  bool loggedIn = false;
  for (const Sent& sent : play.gateway.sent) {
    const bool login = sent.path == "/anmeldung";
    if (!login && !messages.empty() && operation.changes()) {
      const Answer first(messages[0]->reply);
      expect(loggedIn && messages.size() == 1 && first.to(operation) == Outcome::refused &&
                 first.code() == operation.loginWanted,
             "a change is sent once more only when a login was wanted and taken");
    }
    if (!login) messages.push_back(&sent);
    loggedIn = login && Answer(sent.reply).loggedIn();
    passwordSent = passwordSent || (login && sent.reply.complete &&
                                    sent.body.find("<PASSN>" + play.settings["ZKR.ZEVISPass"]) != std::string::npos);
  }
  expect(passwordSent, "a password that is stored has been sent", play.settings["ZKR.ZEVISPass"]);
  expect(!messages.empty() && messages.size() <= 3, "three messages are the most",
         play.messages.empty() ? operation.name : play.messages.back());
  const Answer last(messages.back()->reply);
  if (operation.changes()) return play.checkChange(done, last.to(operation));
  expect(!done || last.root() == "zkr-auskunft", "what is taken over comes from a record");
  expect(done || !play.messages.empty() || last.root() == "zkr-trefferliste", "the clerk is told why nothing is");
}

/// Objects of the host that note what came of the call that sends.
struct Watched : platform::ObjectClasses {
  explicit Watched(platform::ObjectClasses& others) : classes(others) {}

  struct Object : platform::AutomationObject {
    Object(std::unique_ptr<AutomationObject> other, Watched& watcher) : object(std::move(other)), owner(watcher) {}
    platform::Value call(std::string_view member, const std::vector<platform::Value>& arguments) override {
      const bool sends = member.starts_with("Do");
      if (sends) ++owner.sent;
      if (sends || member == "GetCardNumber") owner.outcome = Outcome::unclear;
      auto value = object->call(member, arguments);
      if (sends || member == "GetCardNumber")
        owner.outcome = sends && toNumber(value) != 0 ? Outcome::refused : Outcome::accepted;
      return value;
    }
    std::unique_ptr<AutomationObject> object;
    Watched& owner;
  };

  std::unique_ptr<platform::AutomationObject> createObject(std::string_view progId) override {
    return std::make_unique<Object>(classes.createObject(progId), *this);
  }

  platform::ObjectClasses& classes;
  int sent = 0;
  Outcome outcome = Outcome::notSent;
};

/// `text` without what XML cannot carry, and without white space.
std::string inked(std::string_view text) {
  std::string result;
  for (std::size_t position = 0; position < text.size();) {
    const char32_t character = text::nextCharacter(text, position);
    if (character > U' ' && character != 0xFFFE && character != 0xFFFF) text::append(result, character);
  }
  return result;
}

/// What `parse` makes of `text`; nothing when it refuses it.
template <class Parse>
auto parsed(Parse parse, std::string_view text) -> std::optional<decltype(parse(text))> {
  try {
    return parse(text);
  } catch (const adapters::BadInput&) {
    return std::nullopt;
  }
}

}  // namespace

void answers(Input input) {
  const std::string all(input.rest());
  const auto meant = [&](const Operation& operation) { return all.find(operation.root) != std::string::npos; };
  const bool any = std::none_of(operations.begin(), operations.end(), meant);
  std::vector<Reply> replies;
  while (!input.empty() && replies.size() < 20) replies.push_back(Reply::read(input.part()));
  for (const Operation& operation : operations)
    if (any || meant(operation)) withReplies(operation, replies);
}

void objects(Input input) {
  for (const Operation& operation : operations) {
    const auto classes = parsed(adapters::makeScriptedObjects, input.rest());
    if (!classes) return;
    Watched watched(**classes);
    Play play;
    play.settings["ZKR.ZKRNeu"] = "1";
    play.setup.objects = &watched;
    const bool done = play.carryOut(operation);
    if (!operation.changes()) continue;
    expect(watched.sent <= 1, "nothing is sent twice");
    play.checkChange(done, watched.outcome);
  }
}

/// Names and addresses of the database on their way into an order, each part a field.
void names(Input input) {
  constexpr std::size_t longest = 256;
  Play play;
  std::map<std::string, std::string> expected;
  for (const auto& [column, element] : {std::pair("fahrerkarte.familienname", "cardHolderSurname"),
                                        {"fahrerkarte.vornamen", "cardHolderFirstNames"},
                                        {"personalien.familienname", "cardHolderSurnameRegister"},
                                        {"personalien.geburtsname", "cardHolderBirthNameRegister"},
                                        {"personalien.wohnort", "cardHolderCity"},
                                        {"personalien.strasse", "cardHolderStreet"}}) {
    const std::string field = input.part();
    setField(column, field);
    expected[element] = inked(text::left(text::isValidUtf8(field) ? field : codepage::fromAnsi(field), longest));
  }
  play.gateway.replies = {{200, true, "", operations[1].accepted}};
  expect(play.carryOut(operations[1]), "whatever a name holds, a card can be ordered");
  const Answer order({200, true, "", play.gateway.sent.at(0).body});
  for (const auto& [element, text] : expected) {
    std::string found = order.text("//" + element);
    if (element == "cardHolderStreet")
      found += order.text("//cardHolderStreetNo") + order.text("//cardHolderStreetNoAddOn");
    expect(inked(found) == text, "a card bears the name of the person", element + ": " + found);
  }
}

void script(Input input) {
  auto steps = parsed(adapters::Script::parse, input.rest());
  if (!steps) return;
  const auto* operation = std::find_if(operations.begin(), operations.end(), [&](const Operation& each) {
    return steps->next() && steps->next()->window == each.window;
  });
  if (operation == operations.end()) operation = operations.begin();
  std::ostringstream events;
  adapters::Transcript transcript(events);
  const auto clerk = adapters::makeScriptUserInterface(*steps, &transcript);
  Play play;
  play.setup.userInterface = clerk.get();
  play.gateway.replies = {{200, true, "", operation->accepted}};
  const bool done = play.carryOut(*operation);
  adapters::endPlay(*steps, &transcript);
  expect(!done || play.gateway.sent.size() == 1, "what is done has been sent");
  expect(play.gateway.sent.size() <= steps->place(), "a message takes a step of the clerk");
  const std::string written = events.str();
  for (Input lines(written); !lines.empty();)
    expect(nlohmann::json::accept(lines.line()), "a transcript is lines of JSON", written);
}

}  // namespace kartix::fuzz
