#include "runtime/ErrorCatalogue.h"

#include <algorithm>
#include <array>

#include "common/Numbers.h"
#include "common/Text.h"

namespace kartix {
namespace {

/// In a text, %1 and %2 stand for the details, %v1 and %v2 for the details as versions, %p for the person number and
/// %l for the running number.
struct Row {
  std::int32_t number;
  bool critical;
  std::string_view text;
};

constexpr std::array rows = {
    Row{0, false, "Kein Fehler."},
    Row{100, true, "TESSELHTTP.dll oder Abhängigkeiten nicht gefunden."},
    Row{101, true, "TESSELHTTP.dll hat die falsche Version\r\n(vorhanden: %v1, benötigt: %v2)"},
    Row{102, false, "Bitte auch das Zertifikat konfigurieren."},
    Row{103, false, "Bitte auch den privaten Schlüssel konfigurieren."},
    Row{104, true, "XML-Schnittstelle kann nicht initialisiert werden."},
    Row{105, false, "Debug-Datei %1 konnte nicht geöffnet werden."},
    Row{106, false, "Debug-Datei konnte nicht geschrieben werden. Datei wird geschlossen."},
    Row{200, true, "Kommunikationsfehler: %1"},
    Row{201, false, "Kommunikationsfehler: ZEVIS hat einen unbekannten Datensatz geliefert (%1)"},
    Row{202, false, "ZEVIS-Login fehlgeschlagen: %1: %2"},
    Row{203, false, "Fehlermeldung des KBA: %1: %2"},
    Row{204, false, "Das ZKR hat keine oder fehlerhafte Daten geliefert."},
    Row{205, false, "Fehler beim Login KBA."},
    Row{1000, false, "Datenbankfehler: Datenbank konnte nicht geöffnet werden."},
    Row{1001, false, "Datenbankfehler: Personendaten nicht gefunden."},
    Row{1002, true, "Datenbank-Konsistenzfehler: Mehr als eine Person zur Personennummer %p gefunden."},
    Row{1003, false, "Datenbankfehler: Abfragen der Kartendaten fehlgeschlagen."},
    Row{1004, false, "Datenbankfehler: Keine Daten für die Fahrerkarte gefunden."},
    Row{1005, true, "Datenbank-Konsistenzfehler: Zur Person wurden mehrere Karten mit Lfd.Nr. %l gefunden."},
    Row{1006, true, "Fehler beim Aktualisieren der Datenbank (Personalien)"},
    Row{1007, true, "Fehler beim Aktualisieren der Datenbank (Fahrerkarte)"},
    Row{1008, true, "Fehler beim Einfügen eines Satzes in die Datenbank"},
    Row{2000, false, "Bestellung: Pfad für die Bilddateien wurde nicht gefunden."},
    Row{2001, false, "Bestellung: Foto kann nicht gelesen werden - Bearbeitung abgebrochen."},
    Row{2002, false, "Bestellung: Foto kann nicht verarbeitet werden - Bearbeitung abgebrochen."},
    Row{2003, false, "Bestellung: Foto kann nicht geschrieben werden - Bearbeitung abgebrochen."},
    Row{2004, false, "Bestellung: Unterschrift kann nicht gelesen werden - Bearbeitung abgebrochen."},
    Row{2005, false, "Bestellung: Unterschrift kann nicht verarbeitet werden - Bearbeitung abgebrochen."},
    Row{2006, false, "Bestellung: Unterschrift kann nicht geschrieben werden - Bearbeitung abgebrochen."},
    Row{2007, false, "Die Bestellung konnte nicht abgeschlossen werden."},
    Row{2008, false, "Ein Storno ist nicht möglich."},
    Row{2009, false, "Es wurde keine Kartennummer zum Stornieren gefunden."},
    Row{2010, false, "Es wurde keine Kartennummer für die Änderungsmitteilung gefunden."},
    Row{2011, false, "Die Mitteilung der Statusänderung ist fehlgeschlagen."},
    Row{2012, false,
        "Aus den eingegebenen Daten kann keine Änderungsmitteilung erzeugt werden - Bearbeitung abgebrochen."},
    Row{2013, false, "Eine Stornierung ist nur mit dem Vorgangschlüssel \"ST - Stornierung\" möglich."},
    Row{2014, false, "Aushändigung oder Versand wird nicht an das KBA gemeldet."},
    Row{2015, false, "Abgabeart %1 kann nicht gemeldet werden."},
    Row{2016, false,
        "Die Kartennummer ist bereits in einem anderen Datensatz gespeichert. Wiederholen Sie die Anfrage aus dem "
        "entsprechenden Datensatz."},
    Row{2017, false, "Fehler bei der Bestellung: \r\n%1"},
    Row{2018, false, "Fehler bei der Stornierung: \r\n%1"},
    Row{2021, false, "Die Mitteilung der Statusänderung ist fehlgeschlagen.\r\n%1"},
    Row{2022, false, "Fehler bei der Abrfrage des ZKR: \r\n%1"},
};

/// Version number major * 100000 + minor * 1000 + build as "major.minor.build".
std::string versionText(std::string_view number) {
  const std::int32_t version = leadingInt32(number);
  const std::int32_t major = version / 100000;
  return std::to_string(major) + "." + std::to_string(version / 1000 - major * 100) + "." +
         std::to_string(version % 1000);
}

struct Placeholder {
  std::string_view mark;
  std::string value;
};

/// Fills the placeholders in one pass, so that a detail is never searched for placeholders itself.
std::string fill(std::string_view text, const std::array<Placeholder, 6>& placeholders) {
  std::string result;
  while (!text.empty()) {
    const auto* const found = std::find_if(placeholders.begin(), placeholders.end(),
                                           [&](const Placeholder& p) { return text.starts_with(p.mark); });
    if (found == placeholders.end()) {
      result.push_back(text.front());
      text.remove_prefix(1);
    } else {
      result += found->value;
      text.remove_prefix(found->mark.size());
    }
  }
  return result;
}

}  // namespace

CatalogueEntry catalogueEntry(std::int32_t number, std::string_view detail1, std::string_view detail2,
                              const OperationFacts& facts) {
  const auto* const row = std::find_if(rows.begin(), rows.end(), [&](const Row& r) { return r.number == number; });
  if (row == rows.end()) return {};
  const std::array<Placeholder, 6> placeholders = {{{"%v1", versionText(detail1)},
                                                    {"%v2", versionText(detail2)},
                                                    {"%1", std::string(detail1)},
                                                    {"%2", std::string(detail2)},
                                                    {"%p", facts.personennummer},
                                                    {"%l", facts.CurrentLfdnr}}};
  return {fill(row->text, placeholders), row->critical};
}

}  // namespace kartix
