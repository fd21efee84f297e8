#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "simulator/Element.h"

/// The answer documents of the gateway.
namespace kartix::simulator {

/// The kind of a request, told by its document element.
enum class Kind { login, inquiry, notification, order, cancellation, unknown };

Kind kindOf(const Element& request);

/// Return codes beside 0; those of the login are `login_code`.
namespace return_code {
inline constexpr int count = 200;                     ///< inquiry: the hits are counted, not listed
inline constexpr int personaliserNotLoggedIn = 3000;  ///< order, cancellation
inline constexpr int registerNotLoggedIn = 3020;      ///< inquiry, notification
inline constexpr int incomplete = 4001;
inline constexpr int cardUnknown = 4002;
inline constexpr int notPossible = 4003;  ///< not in the card's present status
inline constexpr int refused = 4999;
inline constexpr int cannotBeKept = 9001;  ///< the books cannot be written
}  // namespace return_code

struct Fault {
  std::string code;
  std::string text;
};

/// What every request but an order can be refused with in the same words.
inline constexpr std::string_view cannotBeKeptText = "Die Daten können zur Zeit nicht gespeichert werden.";

/// Answer to a login, `ZEVIS-HINWEIS`.
Element loginAnswer(int code, std::string_view text);

/// Hint or error to an inquiry, `zkr-hinweis`.
Element inquiryHint(int code, std::string_view text);

/// Answer to a notification: `zkr-mhinweis`.
Element notificationHint(int code, std::string_view text);

/// The notification comes back with its errors, `zkr-mitteilung`.
Element notificationErrors(const Element& request, int code, std::string_view text, const std::vector<Fault>& faults);

/// Answer of the personaliser, `information`, to an order or a cancellation.
Element information(int code, std::string_view text, const std::vector<Fault>& faults = {});

/// The order is accepted under a card number.
Element orderAccepted(std::string_view cardNumber);

/// Refusal of a request in the form of its kind; with errors where the kind has a list for them. A login has none.
Element refusal(const Element& request, int code, std::string_view text, const std::vector<Fault>& faults = {});

/// Answer that the session of a request is not logged in.
Element notLoggedIn(const Element& request);

}  // namespace kartix::simulator
