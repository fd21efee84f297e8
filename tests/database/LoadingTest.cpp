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

}  // namespace
}  // namespace kartix::test
