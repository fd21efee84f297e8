#include "component/Binding.h"
#include "component/Component.h"
#include "component/ResultProperties.h"
#include "hostdb/Own.h"
#include "kartix/CFahrerkarte.h"
#include "kartix/CPersonalien.h"
#include "kartix/DBETXTDatabase.h"
#include "kartix/Kartix.h"

namespace kartix::dispatch {
namespace {

template <std::size_t row>
Value resultProperty(void* object, std::span<Value>) {
  return ResultReader::read(*static_cast<const Kartix*>(object), resultRows[row]);
}

template <std::size_t... row>
consteval std::array<Member, sizeof...(row)> resultMembers(std::index_sequence<row...>) {
  return {Member{resultRows[row].name.data(), Kind::get, Type::text, {}, 0, &resultProperty<row>}...};
}

constexpr auto kartixMembers = rows(method<&Kartix::init>("init", {"changeuser", "personennummer"}),
                                    method<&Kartix::FahrerKartenBestellung>("FahrerKartenBestellung", {"lfdnr"}),
                                    method<&Kartix::KartenMitteilung>("KartenMitteilung", {"lfdnr"}),
                                    method<&Kartix::KartenStorno>("KartenStorno", {"lfdnr"}),
                                    method<&Kartix::ZKRAnfrage>("ZKRAnfrage", {"lfdnr"}),
                                    resultMembers(std::make_index_sequence<resultRows.size()>()));

using Database = DBETXTDatabase;
constexpr auto databaseMembers = rows(
    method<&Database::db_prepare>("db_prepare", {"val"}),
    method<&Database::init>(
        "init", {"sDBEip", "sDBEPort", "sSysUser", "sSysPass", "sDBName", "sDBUser", "sdbPass", optional("sAppkey")}),
    method<&Database::resetDataset>("resetDataset"), method<&Database::query>("query", {"sSql", out("sCursor")}),
    method<&Database::queryNext>("queryNext", {out("sBuf"), "sCursor"}),
    method<&Database::closeCursor>("closeCursor", {"sCursor"}), get<&Database::Datafield>("Datafield", {"i"}),
    method<&Database::addDatafield>("addDatafield", {"sVal"}),
    method<&Database::addDataset>("addDataset", {"sTable", optional("commit")}),
    method<&Database::executeSQL>("executeSQL", {"sSql", optional("commit")}));

using Person = CPersonalien;
constexpr auto personMembers =
    rows(property<&Person::familienname>("familienname"), property<&Person::geburtsname>("geburtsname"),
         property<&Person::vornamen>("vornamen"), property<&Person::geburtsdatum>("geburtsdatum"),
         property<&Person::geburtsort>("geburtsort"), property<&Person::titel>("titel"),
         property<&Person::zusatzf>("zusatzf"), property<&Person::zusatzg>("zusatzg"),
         property<&Person::fernr>("fernr"), property<&Person::fsnr>("fsnr"),
         property<&Person::vhkgebdat>("vhkgebdat"), get<&Person::argoanrede>("argoanrede"),
         get<&Person::kbaanrede>("kbaanrede"), let<&Person::setAnrede>("anrede"), get<&Person::anrede>("anrede"),
         let<&Person::personennummer>("personennummer"), get<&Person::personennummer>("personennummer"),
         let<&Person::strasse>("strasse"), get<&Person::strasse>("strasse"), let<&Person::plz>("plz"),
         get<&Person::plz>("plz"), let<&Person::wohnort>("wohnort"), get<&Person::wohnort>("wohnort"),
         method<&Person::update>("update", {"spersonennummer"}));

using Card = CFahrerkarte;
constexpr auto cardMembers =
    rows(property<&Card::kartennr>("kartennr"), property<&Card::antragsdatum>("antragsdatum"),
         property<&Card::gueltigab>("gueltigab"), property<&Card::gueltigbis>("gueltigbis"),
         property<&Card::bestelldatum>("bestelldatum"), property<&Card::bestellstatus>("bestellstatus"),
         property<&Card::bestellstatusam>("bestellstatusam"), property<&Card::zkrdatum>("zkrdatum"),
         get<&Card::zkrstatus>("zkrstatus"), property<&Card::ausdatum>("ausdatum"),
         property<&Card::kartennralt>("kartennralt"), property<&Card::proddatum>("proddatum"),
         property<&Card::stmit>("stmit"), property<&Card::changedate>("changedate"),
         property<&Card::abgabedatum>("abgabedatum"), property<&Card::karteam>("karteam"),
         property<&Card::kartestatus>("kartestatus"), get<&Card::argoabgabestatus>("argoabgabestatus"),
         get<&Card::kbaabgabestatus>("kbaabgabestatus"), let<&Card::setAbgabestatus>("abgabestatus"),
         property<&Card::vorgangschl>("vorgangschl"), property<&Card::scode>("scode"),
         get<&Card::scodetxt>("scodetxt"), property<&Card::stime>("stime"), property<&Card::sdate>("sdate"),
         property<&Card::stext>("stext"), property<&Card::chipkennung>("chipkennung"),
         property<&Card::kfsnr>("kfsnr"), property<&Card::fsverwaltung>("fsverwaltung"),
         property<&Card::kfsstaat>("kfsstaat"), property<&Card::mittx>("mittx"), property<&Card::stbab>("stbab"),
         property<&Card::babtx>("babtx"), property<&Card::lfdnr>("lfdnr"),
         property<&Card::familienname>("familienname"), property<&Card::vornamen>("vornamen"),
         property<&Card::sprache>("sprache"), method<&Card::insert>("insert", {"spersonennummer"}),
         method<&Card::update>("update", {"skartennr", "spersonennummer"}));

template <class T>
std::shared_ptr<void> create(Component& component) {
  if constexpr (std::is_same_v<T, Kartix>) {
    return Own::newOf<T>(component);
  } else {
    return Own::newOf<T>(component.runtime());
  }
}

constexpr std::array table = {
    Class{"Kartix", kartixMembers, create<Kartix>},
    Class{"DBETXTDatabase", databaseMembers, create<DBETXTDatabase>},
    Class{"CPersonalien", personMembers, create<CPersonalien>},
    Class{"CFahrerkarte", cardMembers, create<CFahrerkarte>},
};

}  // namespace

std::span<const Class> classes() { return table; }

}  // namespace kartix::dispatch
