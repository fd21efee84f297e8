#include "database/HostFixture.h"
#include "hostdb/Fahrerkarten.h"

namespace kartix::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Column i of a row of `columns` holds "Si".
std::map<int, std::string> numbered(int columns) {
  std::map<int, std::string> values;
  for (int i = 1; i <= columns; ++i) values[i] = "S" + std::to_string(i);
  return values;
}

class Loading : public HostDatabase {
 protected:
  void addPerson(const std::string& number) {
    auto values = numbered(177);
    values[1] = number;
    values[38] = "Frau";
    values[127] = "24.12.1971";
    insertRow("personalien", 177, values);
  }
  void addCard(const std::string& lfdnr, const std::string& vorgangschl, const std::string& kartennr) {
    auto values = numbered(37);
    values[1] = lfdnr;
    values[2] = "4711";
    values[3] = vorgangschl;
    values[5] = kartennr;
    insertRow("fahrerkarte", 37, values);
  }
};

INSTANTIATE_TEST_SUITE_P(Engines, Loading, engines(), engineName);

TEST_P(Loading, EveryColumnGoesToItsField) {
  addPerson("4711");
  addPerson("4712");
  addCard("7", "NA", "DF7");
  session.CurrentLfdnr = "7";
  session.OperationCard.antragsdatum = "kept";
  ASSERT_TRUE(argo.LoadForOrder());
  const CPersonalien& p = session.CurrentPerson;
  EXPECT_THAT((std::vector<std::string>{p.geburtsname, p.familienname, p.geburtsdatum, p.geburtsort, p.plz, p.wohnort,
                                        p.strasse, p.anrede(), p.titel, p.zusatzg, p.zusatzf, p.vhkgebdat, p.fernr,
                                        p.vornamen, p.fsnr, p.personennummer}),
              ElementsAre("S2", "S3", "S6", "S7", "S8", "S9", "S10", "Frau", "S40", "S86", "S87", "19711224", "S129",
                          "S167", "S177", "4711"));
  const CFahrerkarte& c = session.OperationCard;
  EXPECT_THAT((std::vector<std::string>{c.lfdnr, c.vorgangschl, c.kartennr, c.kartennralt, c.kfsstaat, c.kfsnr,
                                        c.karteam, c.kartestatus, c.ausdatum, c.argoabgabestatus(), c.stext,
                                        c.familienname, c.sprache, c.changedate, c.fsverwaltung, c.vornamen}),
              ElementsAre("7", "NA", "DF7", "S6", "S13", "S14", "S17", "S18", "S20", "S22", "S26", "S27", "S29",
                          "S32", "S36", "S37"));
  EXPECT_EQ(c.antragsdatum + c.gueltigab + c.gueltigbis, "kept");
  EXPECT_EQ(session.CardCount, 0);
  // A hand-in state that is a number only does not replace the one before.
  execute("update fahrerkarte set abgabestatus = '3'");
  ASSERT_TRUE(argo.LoadMitteilung());
  EXPECT_EQ(c.argoabgabestatus(), "S22");
}

TEST_P(Loading, CardListGrowsByTheCurrentCards) {
  addPerson("4711");
  session.CurrentLfdnr = "2";
  addCard("1", "NA", "DF1");
  addCard("2", "ST", "DF2");
  addCard("3", "U", "DF3");
  addCard("4", "EV", "");
  addCard("5", "u", "DF5");
  ASSERT_TRUE(argo.Load());
  EXPECT_EQ(session.AktKartennr, "DF2");
  const Fahrerkarten cards(runtime, session);
  EXPECT_EQ(cards.GetCardCount(), 3);
  EXPECT_EQ(session.CardList.size(), 4U);
  EXPECT_EQ(session.CardList[0].kartennr, "");
  const int open = cards.FindCardIndex();
  ASSERT_GT(open, 0);
  const CFahrerkarte& card = cards.FindCard();
  EXPECT_EQ(&card, &session.CardList[static_cast<std::size_t>(open)]);
  EXPECT_THAT((std::vector<std::string>{card.antragsdatum, card.ausdatum, card.bestelldatum, card.gueltigab,
                                        card.gueltigbis, card.kartennr, card.kartennralt}),
              ElementsAre("S9", "S20", "S10", "S15", "S16", "", "S6"));
  EXPECT_TRUE(cards.belongsToOtherRecord("DF1"));
  EXPECT_FALSE(cards.belongsToOtherRecord("DF2")) << "the operation's own number";
  EXPECT_FALSE(cards.belongsToOtherRecord("DF9"));
  ASSERT_TRUE(argo.Load());
  EXPECT_EQ(cards.GetCardCount(), 6);
  session.begin("4711");
  execute("update fahrerkarte set vorgangschl = 'ST'");
  ASSERT_TRUE(argo.Load());
  EXPECT_EQ(cards.GetCardCount(), 0);
  EXPECT_EQ(cards.FindCardIndex(), 0);
  EXPECT_THAT(machine.messages.take(), IsEmpty());
}

TEST_P(Loading, EveryFailureIsReported) {
  const std::string caption = "ARGO Kartix: Fehler|";
  const std::string none = caption + "(1001)\r\nDatenbankfehler: Personendaten nicht gefunden.";
  const std::string broken = caption + "(1003)\r\nDatenbankfehler: Abfragen der Kartendaten fehlgeschlagen.";
  const std::string noCard = caption + "(1004)\r\nDatenbankfehler: Keine Daten für die Fahrerkarte gefunden.";
  const auto expect = [&](const std::string& person, const std::string& card) {
    for (auto load : {&ARGOInterface::Load, &ARGOInterface::LoadForOrder}) {
      EXPECT_FALSE((argo.*load)());
      EXPECT_THAT(machine.messages.take(), ElementsAre(person.empty() ? card : person));
    }
    const bool loaded = argo.LoadMitteilung();
    EXPECT_EQ(loaded, card.empty());
    const auto messages = machine.messages.take();
    EXPECT_EQ(loaded ? "" : messages.at(0), card);
  };
  session.CurrentLfdnr = "9' or '1'='1";
  addCard("1", "NA", "DF1");
  expect(none, noCard);
  addPerson("4711");
  expect("", noCard);
  addCard("9' or '1'='1", "NA", "DF9");
  EXPECT_TRUE(argo.Load());
  EXPECT_EQ(session.AktKartennr, "DF9");
  addCard("9' or '1'='1", "ST", "DF8");
  expect("", caption +
                 "(1005)\r\nDatenbank-Konsistenzfehler: Zur Person wurden mehrere Karten mit Lfd.Nr. 9' or "
                 "'1'='1 gefunden.");
  EXPECT_EQ(session.AktKartennr, "");
  execute("delete from fahrerkarte where lfdnr <> '1'");
  session.CurrentLfdnr = "1";
  addPerson("4711");
  expect(caption + "(1002)\r\nDatenbank-Konsistenzfehler: Mehr als eine Person zur Personennummer 4711 gefunden.",
         "");
  for (const std::string number : {"4711 or 1=1", "", "0x1267", "4711--"}) {
    session.CurrentPerson.personennummer = number;
    expect(none, none);
  }
  session.CurrentPerson.personennummer = " 4711 ";
  execute("delete from personalien");
  addPerson("4711");
  EXPECT_TRUE(argo.Load());
  execute("alter table fahrerkarte rename to weg");
  expect("", broken);
  execute("alter table personalien rename to auchweg");
  expect(none, broken);
}

}  // namespace
}  // namespace kartix::test
