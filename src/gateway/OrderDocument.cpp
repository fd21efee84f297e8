#include <algorithm>
#include <array>

#include "gateway/KBAInterface.h"
#include "gateway/MessageDocument.h"
#include "gateway/Order.h"
#include "runtime/Runtime.h"

namespace kartix {
namespace {

constexpr MessageType orderType = {"driverCard", "/personalisierer/dtd/kgk-fahrerkarte.dtd"};

constexpr std::array<Setter<OrderMessage>, 34> setters = {{
    {"SetLfdNr", &OrderMessage::lfdNr},
    {"SetVorgangschl", &OrderMessage::vorgangschl},
    {"SetAntragsdatum", &OrderMessage::antragsdatum},
    {"SetExternalAdministrationMark", &OrderMessage::externalAdministrationMark},
    {"SetReklamation", &OrderMessage::reklamation},
    {"SetExpress", &OrderMessage::express},
    {"SetPostversand", &OrderMessage::postversand},
    {"SetCardIssuingMemberState", &OrderMessage::cardIssuingMemberState},
    {"SetCardIssuingAuthorityName", &OrderMessage::cardIssuingAuthorityName},
    {"SetNameOfAuthorityAndAddress", &OrderMessage::nameOfAuthorityAndAddress},
    {"SetAnrede", &OrderMessage::anrede},
    {"SetCardHolderTitle", &OrderMessage::cardHolderTitle},
    {"SetCardHolderSurname", &OrderMessage::cardHolderSurname},
    {"SetCardHolderFirstNames", &OrderMessage::cardHolderFirstNames},
    {"SetCardHolderBirthDate", &OrderMessage::cardHolderBirthDate},
    {"SetCardHolderBirthplace", &OrderMessage::cardHolderBirthplace},
    {"SetCardHolderPreferredLanguage", &OrderMessage::cardHolderPreferredLanguage},
    {"SetCardHolderStreet", &OrderMessage::cardHolderStreet, true},
    {"SetCardHolderStreetNo", &OrderMessage::cardHolderStreetNo, true},
    {"SetCardHolderStreetNoAddOn", &OrderMessage::cardHolderStreetNoAddOn, true},
    {"SetCardHolderPostcode", &OrderMessage::cardHolderPostcode},
    {"SetCardHolderCity", &OrderMessage::cardHolderCity},
    {"SetDrivingLicenceNumber", &OrderMessage::drivingLicenceNumber},
    {"SetDrivingLicenceIssuingAuthority", &OrderMessage::drivingLicenceIssuingAuthority},
    {"SetDrivingLicenceIssuingNation", &OrderMessage::drivingLicenceIssuingNation},
    {"SetCardIssuingAuthorityKey", &OrderMessage::cardIssuingAuthorityKey},
    {"SetLastCardNumber", &OrderMessage::lastCardNumber},
    {"SetCardHolderBirthnameRegister", &OrderMessage::cardHolderBirthnameRegister},
    {"SetCardHolderBirthnamePartsRegister", &OrderMessage::cardHolderBirthnamePartsRegister},
    {"SetCardHolderSurnameRegister", &OrderMessage::cardHolderSurnameRegister},
    {"SetCardHolderSurnamePartsRegister", &OrderMessage::cardHolderSurnamePartsRegister},
    {"SetCardHolderFirstNamesRegister", &OrderMessage::cardHolderFirstNamesRegister},
    {"SetPhotographFilename", &OrderMessage::photographFilename},
    {"SetSignatureFilename", &OrderMessage::signatureFilename},
}};

/// What a process key of the host means to the personaliser.
struct Process {
  std::string_view vorgangschl;
  std::string_view reason;
  std::string_view lastCardStatus;
  bool datesLoss = false;  ///< the date of the application is that of the loss
};

constexpr std::array<Process, 6> processes = {{
    {"ET", "1", ""},
    {"EB", "", "17"},
    {"ER", "3", "91"},
    {"VE", "3", "71", true},
    {"EV", "2", "81", true},
    {"ED", "2", "82", true},
}};

Process processOf(std::string_view vorgangschl) {
  const auto* const found = std::find_if(processes.begin(), processes.end(),
                                         [&](const Process& process) { return process.vorgangschl == vorgangschl; });
  return found == processes.end() ? Process{} : *found;
}

std::string_view genderOf(std::string_view anrede) { return anrede == "Herr" ? "1" : anrede == "Frau" ? "2" : "0"; }

void writeHolder(ElementWriter holder, const OrderMessage& message) {
  holder.value("cardHolderGender", genderOf(message.anrede))
      .valueIfAny("cardHolderTitle", message.cardHolderTitle)
      .value("cardHolderSurname", message.cardHolderSurname)
      .value("cardHolderFirstNames", message.cardHolderFirstNames)
      .value("cardHolderBirthDate", message.cardHolderBirthDate)
      .value("cardHolderBirthplace", message.cardHolderBirthplace)
      .value("cardHolderPreferredLanguage", message.cardHolderPreferredLanguage)
      .valueIfAny("cardHolderStreet", message.cardHolderStreet)
      .valueIfAny("cardHolderStreetNo", message.cardHolderStreetNo)
      .valueIfAny("cardHolderStreetNoAddOn", message.cardHolderStreetNoAddOn)
      .value("cardHolderPostcode", message.cardHolderPostcode)
      .value("cardHolderCity", message.cardHolderCity);
}

void writeCard(ElementWriter card, const OrderMessage& message) {
  card.value("chargeAttribute", message.reklamation == "Reklamation" ? "1" : "0")
      .value("priority", message.express == "Express" ? "E" : "S")
      .value("postalDeliveryType", message.postversand == "Postzustellungsurkunde" ? "Z" : "S")
      .value("cardIssuingMemberState", message.cardIssuingMemberState);
  card.group("cardIssuingAuthority")
      .value("cardIssuingAuthorityName", message.cardIssuingAuthorityName)
      .value("nameOfAuthorityAndAddress", message.nameOfAuthorityAndAddress);
  writeHolder(card.group("cardHolder"), message);
  card.group("drivingLicenceInfo")
      .value("drivingLicenceNumber", message.drivingLicenceNumber)
      .value("drivingLicenceIssuingAuthority", message.drivingLicenceIssuingAuthority)
      .value("drivingLicenceIssuingNation", message.drivingLicenceIssuingNation);
}

void writeRegister(ElementWriter entry, const OrderMessage& message, const Process& process) {
  entry.value("cardIssuingAuthorityKey", message.cardIssuingAuthorityKey)
      .valueIfAny("lastCardNumber", message.lastCardNumber)
      .valueIfAny("lastCardStatus", process.lastCardStatus)
      .valueIfAny("cardLossInfoDate", process.datesLoss ? message.antragsdatum : std::string())
      .value("cardHolderFirstNamesRegister", message.cardHolderFirstNamesRegister)
      .value("cardHolderBirthNameRegister", message.cardHolderBirthnameRegister)
      .valueIfAny("cardHolderBirthNamePartsRegister", message.cardHolderBirthnamePartsRegister)
      .value("cardHolderSurnameRegister", message.cardHolderSurnameRegister)
      .valueIfAny("cardHolderSurnamePartsRegister", message.cardHolderSurnamePartsRegister);
}

}  // namespace

Setters<OrderMessage> orderSetters() { return setters; }

bool BuildOrderDocument(Runtime& runtime, KBAInterface& kba, platform::XmlDocument& document,
                        const OrderMessage& message) {
  const Konfiguration& settings = runtime.konfiguration;
  return buildMessage(kba, document, orderType, settings.BestellURI, [&](ElementWriter root) {
    const Process process = processOf(message.vorgangschl);
    root.group("head")
        .value("version", "1.0")
        .value("externalVersion", "1.1.0")
        .value("externalAdministrationMark", message.externalAdministrationMark)
        .value("userName", settings.ZPPER)
        .value("reason", process.reason);
    writeCard(root.group("card"), message);
    writeRegister(root.group("register"), message, process);
    // One image after the other: neither stays in memory beside the document.
    ElementWriter images = root.group("binaryData");
    images.value("photograph", kba.FileToBase64(message.photographFilename));
    images.value("signature", kba.FileToBase64(message.signatureFilename));
  });
}

}  // namespace kartix
