#include "common/Numbers.h"
#include "gateway/Answers.h"
#include "gateway/Inquiry.h"
#include "gateway/KBAInterface.h"
#include "gateway/Login.h"
#include "gateway/Takeover.h"
#include "hostdb/Fahrerkarten.h"
#include "hostdb/Session.h"
#include "runtime/Runtime.h"

namespace kartix {
namespace {

/// Outcomes of an answer beyond the register's own return codes.
namespace outcome {
constexpr std::int32_t taken = 2;            ///< a single record was taken over
constexpr std::int32_t chosen = -2;          ///< the clerk chose a hit
constexpr std::int32_t notChosen = -3;       ///< the clerk cancelled the choice
constexpr std::int32_t noSingleHit = -9999;  ///< none or too many
constexpr std::int32_t unusable = -1;
}  // namespace outcome

/// A register's return code that happens to equal one of our outcomes is none of them.
std::int32_t registerCode(std::int32_t code) {
  return code == outcome::taken || code == outcome::chosen ? outcome::unusable : code;
}

/// None, or too many for a list.
void tellHits(Reporting& reporting, std::int32_t hits) {
  constexpr std::string_view caption = "ZKR-Antwort";
  if (hits == 0) {
    reporting.InfoMsg("Die Anfrage ergab keinen Treffer im ZKR.", caption);
  } else {
    reporting.InfoMsg("Die Trefferzahl (" + std::to_string(hits) +
                          ") ist für die Anfragekriterien zu hoch Bitte schränken Sie Ihre Suche ein.",
                      caption);
  }
}

}  // namespace

std::int32_t ZKRAnfrage::EvaluateZKRAntwort(const platform::XmlDocument& answer, std::string& selectedCardNumber) {
  const InquiryAnswer read = readInquiryAnswer(answer);
  switch (read.kind) {
    case InquiryAnswer::Kind::record:
      return evaluateRecord(answer);
    case InquiryAnswer::Kind::list:
      return evaluateList(answer, selectedCardNumber);
    case InquiryAnswer::Kind::count:
      tellHits(runtime_.reporting, read.hits);
      return outcome::noSingleHit;
    case InquiryAnswer::Kind::notLoggedIn:
      return login_result::notLoggedIn;
    case InquiryAnswer::Kind::refusal:
      runtime_.reporting.ReportError(203, read.code, read.text);
      return registerCode(leadingInt32(read.code));
    case InquiryAnswer::Kind::unknown:
      break;
  }
  runtime_.reporting.ReportError(read.root.empty() ? 204 : 201, read.root);
  return outcome::unusable;
}

std::int32_t ZKRAnfrage::evaluateList(const platform::XmlDocument& answer, std::string& selectedCardNumber) {
  const auto card = window_.chooseHit(FillTrefferliste(runtime_, answer));
  if (!card) return outcome::notChosen;
  selectedCardNumber = *card;
  return outcome::chosen;
}

std::int32_t ZKRAnfrage::evaluateRecord(const platform::XmlDocument& answer) {
  const std::string card = firstText(answer, "//zkr-auskunft//bestandsdaten//kgknr");
  if (Fahrerkarten(runtime_, session_).belongsToOtherRecord(card)) {
    runtime_.reporting.ReportError(2016);
    return outcome::unusable;
  }
  TakeOverBestandsdaten(session_, answer);
  return outcome::taken;
}

bool ZKRAnfrage::requestSingleRecord(const std::string& kartennummer) {
  const auto request = kba_.createDocument();
  const auto response = kba_.createDocument();
  window_.setProgress(60, "Einzelauskunft wird angefordert...", true);
  InquiryCriteria criteria;
  criteria.kgknr = kartennummer;
  if (!BuildZKRAnfrage(runtime_, kba_, *request, criteria)) return false;
  std::string errorText;
  kba_.PostXml(runtime_.konfiguration.AnfrageURI, *request, *response, errorText, Effect::reads);
  window_.setProgress(65, "Antwort wird verarbeitet...", true);
  std::string ignored;
  switch (EvaluateZKRAntwort(*response, ignored)) {
    case outcome::taken:
      return true;
    case outcome::chosen:
      return notUnique();
    case login_result::notLoggedIn:
      runtime_.reporting.ReportError(205);
      return false;
    default:
      return false;
  }
}

/// Asked for one card, the register has answered with several.
bool ZKRAnfrage::notUnique() {
  runtime_.reporting.InfoMsg("Die Anfragedaten lieferten keine eindeutige Antwort des ZKR.", hintCaption);
  return false;
}

bool ZKRAnfrage::ZKRAnfrageHTTP(const InquiryCriteria& criteria) {
  bool loginTried = false;
  for (;;) {
    const auto request = kba_.createDocument();
    const auto response = kba_.createDocument();
    window_.setProgress(40, "Anfrage wird gesendet...", true);
    if (!BuildZKRAnfrage(runtime_, kba_, *request, criteria)) return false;
    window_.setProgress(45, "", true);
    std::string errorText;
    const std::int32_t status =
        kba_.PostXml(runtime_.konfiguration.AnfrageURI, *request, *response, errorText, Effect::reads);
    window_.setProgress(50, "", true);
    if (!kba_.CheckHttpStatus(status, errorText)) return false;
    window_.setProgress(55, "Antwort wird verarbeitet...", true);
    std::string card;
    const std::int32_t result = EvaluateZKRAntwort(*response, card);
    if (result == outcome::taken) return true;
    if (result == outcome::chosen) return requestSingleRecord(card);
    if (result != login_result::notLoggedIn) return false;
    if (loginTried) {
      runtime_.reporting.ReportError(205);
      return false;
    }
    loginTried = true;
    window_.setProgress(55, "ZEVIS Login", false);
    std::string returnText;
    std::string newPassword;
    const std::int32_t login = login_.ZEVISLogin(runtime_.konfiguration.ZEVISPass, returnText, newPassword);
    if (login < 0 || login > login_result::lastSuccess) return false;
  }
}

}  // namespace kartix
