#include <gtest/gtest.h>

#include <vector>

#include "common/CodePage.h"
#include "common/Text.h"
#include "component/Component.h"
#include "dialogs/Workplace.h"
#include "gateway/KBAInterface.h"
#include "gateway/Order.h"
#include "runtime/Runtime.h"
#include "support/Dtd.h"
#include "support/Files.h"
#include "support/TempDir.h"

namespace kartix {
namespace {

/// A stored document without its lines and indentation, which are for the reader.
std::string stored(const std::string& file) {
  const std::string text = test::readBytes(KARTIX_STORED "/" + file);
  std::string result;
  bool lineBegins = true;
  for (const char c : text) {
    if (c != '\n' && !(lineBegins && c == ' ')) result += c;
    lineBegins = c == '\n' || (lineBegins && c == ' ');
  }
  return result;
}

Setup setup(const test::TempDir& directory) {
  Setup result;
  result.registryFile = directory / "registry.reg";
  return result;
}

class OrderDocument : public testing::Test {
 protected:
  OrderDocument() {
    Konfiguration& settings = place.runtime.konfiguration;
    settings.DTDHost1 = "test.zevis.example";
    settings.DTDHost2 = "zevis.example";
    settings.BestellURI = "/bestellung";
    settings.ZPPER = "SB 17 Müller";
    settings.ZEVISUserName = "KARTIX01";
    EXPECT_TRUE(place.kba.InitXML());
  }

  /// Expects the order to go out as `expected`, and to be valid.
  void expectOrder(const OrderMessage& order, const std::string& expected) {
    const auto document = place.kba.createDocument();
    ASSERT_TRUE(BuildOrderDocument(place.runtime, place.kba, *document, order));
    const std::string bytes = codepage::toIsoXml(KBAInterface::SetIsoDeclaration(document->xml()));
    EXPECT_EQ(bytes, expected);
    EXPECT_EQ(test::dtdViolations(bytes), "");
  }

  OrderMessage order() {
    test::writeBytes(directory / "bild.JP2", std::string("\xFF\xD8\x00\x01", 4));
    test::writeBytes(directory / "bild.JP3", "\xFF\xD8");
    OrderMessage message;
    message.vorgangschl = "ET";
    message.antragsdatum = "20140301";
    message.externalAdministrationMark = "4711/2";
    message.cardIssuingMemberState = "D";
    message.cardIssuingAuthorityName = "Stadt Köln";
    message.nameOfAuthorityAndAddress = "Stadt Köln, 50667 Köln";
    message.anrede = "Frau";
    message.cardHolderSurname = "Đorđević & Söhne";
    message.cardHolderFirstNames = "Ana";
    message.cardHolderBirthDate = "19700203";
    message.cardHolderBirthplace = "Köln";
    message.cardHolderPreferredLanguage = "DE";
    message.cardHolderStreet = "Am Markt";
    message.cardHolderPostcode = "50667";
    message.cardHolderCity = "Köln";
    message.drivingLicenceNumber = "B072RRE2I55";
    message.drivingLicenceIssuingAuthority = "Köln";
    message.drivingLicenceIssuingNation = "D";
    message.cardIssuingAuthorityKey = "15003";
    message.cardHolderFirstNamesRegister = "Ana Maria";
    message.cardHolderBirthnameRegister = "Müller";
    message.cardHolderSurnameRegister = "Đorđević";
    message.photographFilename = (directory / "bild.jp2").string();
    message.signatureFilename = (directory / "bild.jp3").string();
    return message;
  }

  test::TempDir directory;
  Component component{setup(directory)};
  Workplace& place = component.workplace();
};

TEST_F(OrderDocument, SaysForEachProcessKeyWhyAndWhatBecameOfTheLastCard) {
  const std::string loss = "<cardLossInfoDate>20140301</cardLossInfoDate>";
  struct Case {
    const char* vorgangschl;
    std::string reason;
    std::string last;
  };
  const std::vector<Case> cases = {
      {"ET", "<reason>1</reason>", ""},
      {"EB", "<reason/>", "<lastCardStatus>17</lastCardStatus>"},
      {"ER", "<reason>3</reason>", "<lastCardStatus>91</lastCardStatus>"},
      {"VE", "<reason>3</reason>", "<lastCardStatus>71</lastCardStatus>" + loss},
      {"EV", "<reason>2</reason>", "<lastCardStatus>81</lastCardStatus>" + loss},
      {"ED", "<reason>2</reason>", "<lastCardStatus>82</lastCardStatus>" + loss},
      {"ed", "<reason/>", ""},
      {"", "<reason/>", ""},
  };
  const std::string form = stored("driverCard.xml");
  OrderMessage message = order();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.vorgangschl);
    message.vorgangschl = c.vorgangschl;
    const std::string expected = text::replaceAll(form, "[REASON]", c.reason);
    expectOrder(message, text::replaceAll(expected, "[LAST]", c.last));
  }
}

TEST_F(OrderDocument, CarriesChoicesTitleAddressAndNameParts) {
  place.runtime.konfiguration.BestellURI = "http://TEST.zevis.example/bestellung";
  OrderMessage message = order();
  message.reklamation = "Reklamation";
  message.express = "Express";
  message.postversand = "Postzustellungsurkunde";
  message.cardIssuingMemberState = "TST";
  message.anrede = "";
  message.cardHolderTitle = "Dr.";
  message.cardHolderStreetNo = "12";
  message.cardHolderStreetNoAddOn = "a";
  message.lastCardNumber = "DF000000000100";
  message.cardHolderBirthnamePartsRegister = "von";
  message.cardHolderSurnamePartsRegister = "zu";
  message.signatureFilename = (directory / "fehlt.jp3").string();
  expectOrder(message, stored("driverCard-full.xml"));
}

}  // namespace
}  // namespace kartix
