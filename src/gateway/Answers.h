#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace kartix::platform {
class XmlDocument;
}

namespace kartix {

class OperationWindow;
class Reporting;

/// The register's answer to an inquiry.
struct InquiryAnswer {
  enum class Kind {
    record,       ///< `zkr-auskunft`: one record
    list,         ///< `zkr-trefferliste`: several
    count,        ///< `zkr-anfrage`: the inquiry itself with the number of its hits, none or too many for a list
    refusal,      ///< `zkr-hinweis`, or `zkr-anfrage` with an error
    notLoggedIn,  ///< the same with the code that asks for a login
    unknown,      ///< anything else
  };

  Kind kind = Kind::unknown;
  std::string root;       ///< name of the document element; empty for an answer that is no document
  std::string code;       ///< return code as it stands there, for `count`, `refusal` and `notLoggedIn`
  std::string text;       ///< return text, likewise
  std::int32_t hits = 0;  ///< of `count`
};

InquiryAnswer readInquiryAnswer(const platform::XmlDocument& document);

/// One entry of the error list of a refusal.
struct AnswerError {
  std::string code;
  std::string text;
};

/// What the KBA answered to an order, a cancellation or a notification.
struct KbaAnswer {
  std::string kind;         ///< name of the document element; empty for an answer that is no document
  bool understood = false;  ///< what follows holds only then
  std::int32_t code = -1;   ///< return code; 0 for accepted
  std::string text;         ///< return text
  std::string cardNumber;   ///< of the ordered card
  std::vector<AnswerError> errors;
};

/// What an answer of the personaliser (`information`) must hold to be understood.
enum class CardNumber {
  none,      ///< no card number is read
  expected,  ///< an accepted answer names the card's number
};

/// The answer to an order or a cancellation. An empty return code counts as 0; without one it is not understood.
KbaAnswer readInformation(const platform::XmlDocument& document, CardNumber cardNumber);

/// The register's answer to a notification (`zkr-mhinweis`, or `zkr-mitteilung` with a list of errors).
KbaAnswer readNotificationReply(const platform::XmlDocument& document);

/// The entries of a refusal's error list as one text: code and text on lines of their own, an empty line after each.
std::string errorListText(const KbaAnswer& answer);

/// Tells the clerk of an answer that was not understood, or of a refusal, with its error list if it has one.
void reportAnswer(Reporting& reporting, OperationWindow& window, const KbaAnswer& answer);

}  // namespace kartix
