#pragma once

#include <cstdint>
#include <string>

#include "gateway/OperationExchange.h"
#include "gateway/Setters.h"

namespace kartix {

struct KbaAnswer;

/// Class of the host's automation object that orders cards and cancels orders.
inline constexpr std::string_view orderClass = "TSW.Schnittstellen.KBA.ZKR.ARGO2006BestellungFahrerkarte";

/// What the clerk chose, in the words of the window.
struct OrderChoices {
  std::string reklamation;  ///< "norm. Bestellung" or "Reklamation"
  std::string express;      ///< "Standard" or "Express"
  std::string postversand;  ///< "Sammelversand" or "Postzustellungsurkunde"
};

/// An order of a driver card, in the host's words and codes. Dates are in database form.
struct OrderMessage {
  std::string lfdNr;
  std::string vorgangschl;
  std::string antragsdatum;
  std::string externalAdministrationMark;  ///< person number and running number: "4711/1"
  std::string reklamation;
  std::string express;
  std::string postversand;
  std::string cardIssuingMemberState;     ///< "D", or "TST" for a card of the test system
  std::string cardIssuingAuthorityName;   ///< as printed on the card's front
  std::string nameOfAuthorityAndAddress;  ///< for the card's back
  std::string anrede;                     ///< "Herr", "Frau" or empty
  std::string cardHolderTitle;
  std::string cardHolderSurname;
  std::string cardHolderFirstNames;
  std::string cardHolderBirthDate;
  std::string cardHolderBirthplace;
  std::string cardHolderPreferredLanguage;
  std::string cardHolderStreet;
  std::string cardHolderStreetNo;
  std::string cardHolderStreetNoAddOn;
  std::string cardHolderPostcode;
  std::string cardHolderCity;
  std::string drivingLicenceNumber;
  std::string drivingLicenceIssuingAuthority;
  std::string drivingLicenceIssuingNation;
  std::string cardIssuingAuthorityKey;
  std::string lastCardNumber;
  std::string cardHolderBirthnameRegister;
  std::string cardHolderBirthnamePartsRegister;
  std::string cardHolderSurnameRegister;
  std::string cardHolderSurnamePartsRegister;
  std::string cardHolderFirstNamesRegister;
  std::string photographFilename;
  std::string signatureFilename;
};

Setters<OrderMessage> orderSetters();

/// Makes `document` the order, both images included. An image that cannot be read leaves its element empty. False
/// when the document could not be built.
bool BuildOrderDocument(Runtime& runtime, KBAInterface& kba, platform::XmlDocument& document,
                        const OrderMessage& message);

/// Order of a driver card for the session's person. True when the card has been ordered; the session's `ResultCard`
/// then holds its number and state. Otherwise the clerk knows why, and `ResultCard` is untouched.
class DriverCardOrder {
 public:
  explicit DriverCardOrder(const ExchangeContext& context) : context_(context) {}

  /// Over the component's own transport.
  bool SendOrderHttp(const OrderChoices& choices);
  /// Over the host's automation object.
  bool SendOrderAutomation(const OrderChoices& choices);

 private:
  OrderMessage message(const OrderChoices& choices) const;
  ReturnCode ReadOrderAnswer(const platform::XmlDocument& document);
  void recordOrder();
  void recordNumber(platform::AutomationObject& object);
  void tellSuccess() const;

  ExchangeContext context_;
};

}  // namespace kartix
