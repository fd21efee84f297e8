#include "hostdb/Fahrerkarten.h"

#include <algorithm>

#include "common/Text.h"
#include "hostdb/Own.h"
#include "hostdb/Session.h"
#include "runtime/Runtime.h"

namespace kartix {

void Fahrerkarten::addARGO(const std::string& antragsdatum, const std::string& ausdatum,
                           const std::string& bestelldatum, const std::string& gueltigab,
                           const std::string& gueltigbis, const std::string& kartennr,
                           const std::string& kartennralt) {
  Trace& trace = runtime_.trace;
  trace.TraceEnter("Fahrerkarten::addARGO");
  trace.TraceParam("antragsdatum", antragsdatum);
  trace.TraceParam("ausdatum", ausdatum);
  trace.TraceParam("bestelldatum", bestelldatum);
  trace.TraceParam("gueltigab", gueltigab);
  trace.TraceParam("gueltigbis", gueltigbis);
  trace.TraceParam("kartennr", kartennr);
  trace.TraceParam("kartennralt", kartennralt);
  // Made where it stays: a record is large.
  const struct {
    Runtime& runtime;
    operator CFahrerkarte() const { return Own::of<CFahrerkarte>(runtime); }
  } newCard{runtime_};
  CFahrerkarte& card = session_.CardList.emplace_back(newCard);
  try {
    card.antragsdatum = antragsdatum;
    card.ausdatum = ausdatum;
    card.bestelldatum = bestelldatum;
    card.gueltigab = gueltigab;
    card.gueltigbis = gueltigbis;
    card.kartennr = kartennr;
    card.kartennralt = kartennralt;
  } catch (...) {
    session_.CardList.pop_back();
    throw;
  }
  ++session_.CardCount;
  trace.TraceLeave("Fahrerkarten::addARGO");
}

void Fahrerkarten::expect(std::size_t count) {
  auto& list = session_.CardList;
  // At least twice the room: a session may load often.
  if (list.size() + count > list.capacity()) list.reserve(std::max(list.size() + count, 2 * list.capacity()));
}

std::int16_t Fahrerkarten::FindCardIndex() const {
  const auto found = std::find_if(session_.CardList.begin() + 1, session_.CardList.end(),
                                  [&](const CFahrerkarte& c) { return c.kartennr == session_.ScratchCard.kartennr; });
  return found == session_.CardList.end() ? std::int16_t{0}
                                          : static_cast<std::int16_t>(found - session_.CardList.begin());
}

CFahrerkarte& Fahrerkarten::FindCard() const {
  return session_.CardList.at(static_cast<std::size_t>(FindCardIndex()));
}

std::int16_t Fahrerkarten::GetCardCount() const { return session_.CardCount; }

bool Fahrerkarten::belongsToOtherRecord(std::string_view kartennr) const {
  // A hit list shows numbers as the register wrote them.
  const std::string number = text::trimSpace(kartennr);
  if (number == session_.AktKartennr) return false;
  return std::any_of(session_.CardList.begin() + 1, session_.CardList.end(),
                     [&](const CFahrerkarte& card) { return card.kartennr == number; });
}

}  // namespace kartix
