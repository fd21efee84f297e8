#include "gateway/Delivery.h"

#include <array>
#include <cstdio>
#include <optional>

#include "common/Text.h"
#include "gateway/KBAInterface.h"
#include "gateway/UnclearEnd.h"
#include "hostdb/Session.h"
#include "runtime/Runtime.h"

namespace kartix {
namespace {

constexpr std::int16_t yes = 1;

/// "yyyy-mm-ddTHH:MM:SS" as "dd.mm.yyyy HH:MM:SS".
std::string displayed(const std::string& time) {
  constexpr std::size_t length = 19;
  if (time.size() != length) return time;
  return time.substr(8, 2) + "." + time.substr(5, 2) + "." + time.substr(0, 4) + " " + time.substr(11);
}

std::string markOf(const Session& session) {
  return session.CurrentPerson.personennummer + "/" + session.OperationCard.lfdnr;
}

std::string_view roadName(Delivery::Road road) { return road == Delivery::Road::http ? "http" : "automation"; }

/// A number of the transport or the KBA in words, without taking memory.
class Code {
 public:
  Code(const char* source, std::int32_t code) noexcept {
    std::snprintf(text_.data(), text_.size(), "%s%d", source, static_cast<int>(code));
  }
  std::string_view text() const { return text_.data(); }

 private:
  std::array<char, 32> text_{};
};

}  // namespace

Delivery::Delivery(const ExchangeContext& context, const OperationTraits& traits, Road road)
    : context_(context),
      traits_(traits),
      road_(road),
      book_(context.runtime.machine.files, context.runtime.machine.clock, context.runtime.konfiguration.Bestellbuch),
      mark_(markOf(context.session)) {
  context.kba.forgetChange();
}

Delivery::~Delivery() {
  if (unclear()) {
    lost("Abbruch");
  } else {
    end(context_.kba.lastChange() == KBAInterface::Change::answered ? Outcome::refused : Outcome::notSent, {});
  }
}

bool Delivery::begin() {
  if (!book_.kept()) return true;
  const Session& session = context_.session;
  std::optional<BookEntry> former;
  if (const auto failure = book_.findLast(session.CurrentPerson.personennummer, session.CurrentLfdnr, former)) {
    return refuseWithoutBook(failure);
  }
  if (former && isUnclear(former->outcome) && !mayFollow(*former)) return false;
  entry_.kind = traits_.kind;
  entry_.road = roadName(road_);
  entry_.person = session.CurrentPerson.personennummer;
  entry_.lfdnr = session.CurrentLfdnr;
  entry_.mark = mark_;
  entry_.clerk = context_.runtime.ClerkName;
  if (const auto failure = book_.begin(entry_)) return refuseWithoutBook(failure);
  begun_ = true;
  return true;
}

bool Delivery::mayFollow(const BookEntry& former) const {
  const std::string question = "\r\n\r\nZu dieser Karte wurde am " + displayed(former.time) +
                               " schon gesendet: " + former.kind +
                               ".\r\nDas Ergebnis ist nicht bekannt. Bitte zuerst im ZKR anfragen.\r\n\r\n"
                               "Trotzdem jetzt senden?";
  return context_.runtime.reporting.YesNoMsg(question, "ARGO Kartix - Frage") == yes;
}

bool Delivery::refuseWithoutBook(const std::error_code& failure) const {
  const std::string reason =
      "Bestellbuch " + book_.path() + " kann nicht geführt werden (" + failure.message() + ").";
  context_.runtime.trace.TraceLine(std::string(traits_.kind) + " nicht gesendet: " + reason, trace_level::calls);
  context_.runtime.reporting.InfoMsg("\r\n\r\nEs wurde nichts gesendet: Das " + reason, hintCaption);
  return false;
}

bool Delivery::unclear() const {
  if (ended_) return false;
  const KBAInterface::Change change = context_.kba.lastChange();
  // What an object has been answered is known here only when it says so.
  if (road_ == Road::automation && change != KBAInterface::Change::incomplete) return handedOver_;
  return change == KBAInterface::Change::unanswered;
}

void Delivery::failed(std::int32_t code) noexcept {
  switch (context_.kba.lastChange()) {
    case KBAInterface::Change::unanswered:
      return lost({});
    case KBAInterface::Change::incomplete:
      return end(Outcome::notSent, {});
    case KBAInterface::Change::none:
    case KBAInterface::Change::answered:
      return end(Outcome::refused, Code("", code).text());
  }
}

void Delivery::lost(std::string_view reason) noexcept {
  if (ended_) return;
  constexpr std::int32_t ok = 200;
  const std::int32_t status = context_.kba.lastChangeStatus();
  const Code transport(status < 0 ? "COM/" : "HTTP/", status);
  if (context_.kba.lastChange() == KBAInterface::Change::unanswered && status != ok && status != 0) {
    reason = transport.text();
  } else if (reason.empty()) {
    reason = "Antwort nicht verstanden";
  }
  traceUnclearEnd(context_.runtime.trace, traits_.kind, mark_, reason);
  end(Outcome::unclear, reason);
}

void Delivery::end(Outcome outcome, std::string_view detail) noexcept {
  if (ended_) return;
  ended_ = true;
  if (!begun_) return;
  if (!book_.end(entry_.id, outcome, detail)) return;
  context_.runtime.trace.TraceLine("Bestellbuch konnte nicht geschrieben werden, Eintrag bleibt offen",
                                   trace_level::calls);
}

}  // namespace kartix
