#pragma once

#include <span>
#include <string_view>

/// Invented persons for demonstrations and tests: their rows in the host database, and what the register knows of
/// them. Dates have the form "yyyymmdd"; texts are UTF-8.
namespace kartix::simulator {

/// A row of the host's table `personalien`, by the names of the person record. `vhkgebdat` is the date of birth in
/// display form, `vornamekomplett` are the first names.
struct SamplePerson {
  std::string_view personennummer;
  std::string_view anrede;
  std::string_view titel = {};
  std::string_view vornamen = {};
  std::string_view zusatzf = {};  ///< name parts before the family name
  std::string_view familienname = {};
  std::string_view zusatzg = {};  ///< name parts before the birth name
  std::string_view geburtsname = {};
  std::string_view geburtsdatum = {};
  std::string_view geburtsort = {};
  std::string_view strasse = {};
  std::string_view plz = {};
  std::string_view wohnort = {};
  std::string_view fsnr = {};  ///< driving licence number
};

/// A row of the host's table `fahrerkarte`, by the names of the card record. Names and licence number on the card are
/// those of the person; licences were issued by `sampleAuthorityName` in "D", the card's language is "DE".
struct SampleCard {
  std::string_view personennummer;
  std::string_view lfdnr;
  std::string_view vorgangschl;
  std::string_view kartennr = {};
  std::string_view kartennralt = {};
  std::string_view antragsdatum = {};
  std::string_view bestelldatum = {};
  std::string_view gueltigab = {};
  std::string_view gueltigbis = {};
  std::string_view abgabestatus = {};
  std::string_view stext = {};
  std::string_view changedate = {};  ///< "yyyymmddhhnnss000"
};

/// A card in the register, of one of the persons.
struct SampleRegisterCard {
  std::string_view personennummer;
  std::string_view kgknr;
  std::string_view fsnfk;
  std::string_view scode;  ///< register status
  std::string_view sdate;  ///< date of the status
  std::string_view daukk = {};
  std::string_view dgubg = {};
  std::string_view dguab = {};
  std::string_view ckenn = {};
};

/// The authority of the sample installation: its key (`KENZA`) and name.
inline constexpr std::string_view sampleAuthorityKey = "05315000";
inline constexpr std::string_view sampleAuthorityName = "Stadt Köln";

/// - 4711 has several cards: by person data a list of three, by licence number a list of two. Record 1 is the
///   application for a replacement (no card number yet), record 2 the lost card, record 3 an order to be cancelled.
/// - 4712 has one card, whose record holds its number, and a name outside ISO-8859-1.
/// - 4713 has applied for a first card and is not in the register.
/// - 4714 is recorded with a family name alone, which is too common for the register.
/// - 4715 has had the card stolen (record 1) and applied for another (record 2).
/// - 4716 has one card in the register that the host database does not know yet.
std::span<const SamplePerson> samplePersons();
std::span<const SampleCard> sampleCards();
std::span<const SampleRegisterCard> sampleRegisterCards();

}  // namespace kartix::simulator
