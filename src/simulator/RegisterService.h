#pragma once

#include <cstddef>

#include "simulator/Books.h"
#include "simulator/Element.h"

namespace kartix::simulator {

/// Most hits that an inquiry lists; more are only counted.
inline constexpr std::size_t mostListedHits = 20;

/// Answers `zkr-anfrage`: one record, a list, or the request with the number of hits. A search by person data takes
/// the criteria that are given, the name or the birth name among them; upper and lower case are the same.
Element answerInquiry(const Books& books, const Element& request);

/// The request with a number of hits, as for none and too many.
Element countedHits(const Element& request, std::size_t hits);

/// Answers `zkr-mitteilung`: changes the status of the card to the reported one.
Element answerNotification(Ledger& ledger, const Element& request);

}  // namespace kartix::simulator
