#include <array>
#include <stdexcept>
#include <string>

#include "adapters/machine/Machine.h"
#include "gateway/Inquiry.h"
#include "gateway/Notification.h"
#include "gateway/Order.h"
#include "host/Installation.h"
#include "host/doctor/Doctor.h"
#include "platform/ObjectClasses.h"

namespace kartix::host {
namespace {

const Area objects("Objekte");
const Area fonts("Schriften");
const Area windows("Fenster");

/// Makes an object of the class and lets it go again: it may be registered and yet not be there.
Findings checkClass(platform::InstalledClasses& installed, std::string_view name) {
  try {
    installed.createObject(name);
    return {};
  } catch (const platform::AutomationError& refusal) {
    return {objects.fault(
        "ZKR.ZKRNeu",
        std::string("Eine Klasse der Fachanwendung ist eingetragen und nicht benutzbar: ") + refusal.what(),
        "die Fachanwendung reparieren oder neu installieren, damit sie " + std::string(name) + " einträgt")};
  }
}

Findings checkClasses(platform::InstalledClasses* installed) {
  if (!installed) return {objects.good("die Fachanwendung meldet ihre Klassen selbst an")};
  constexpr std::array names = {inquiryClass, orderClass, notificationClass};
  Findings findings;
  std::string missing;
  std::size_t present = 0;
  for (const std::string_view name : names) {
    if (!installed->has(name)) {
      missing.append(missing.empty() ? "" : ", ").append(name);
      continue;
    }
    ++present;
    append(findings, checkClass(*installed, name));
  }
  if (!findings.empty()) return findings;
  if (present == names.size()) return {objects.good("die Klassen der Fachanwendung sind eingetragen")};
  const std::string mend =
      "die Fachanwendung reparieren oder neu installieren; bringt sie keine Klassen mit, nimmt sie die der "
      "Komponente "
      "(useGatewayObjects)";
  const std::string text = "Auf diesem Rechner nicht eingetragen: " + missing;
  if (present == 0) return {objects.note("ZKR.ZKRNeu", text, mend)};
  return {objects.fault("ZKR.ZKRNeu", text, mend)};
}

Findings checkFonts() {
  std::string missing;
  try {
    missing = adapters::machine::missingFonts();
  } catch (const std::runtime_error& reason) {
    return {windows.fault("", std::string("Fenster und Bilder stehen nicht zur Verfügung: ") + reason.what(),
                          "Kartix vollständig installieren (Debian: apt-get install --reinstall libkartix1)")};
  }
  if (missing.empty()) return {fonts.good("die der Fenster sind da")};
  return {fonts.fault(
      "", "Es fehlt eine Schrift für die Fenster (" + missing + "): Texte sind abgeschnitten oder unlesbar",
      "eine davon installieren (Debian: apt-get install fonts-dejavu-core)")};
}

}  // namespace

Findings checkSurroundings(Installation& installation) {
  Findings findings = checkClasses(installation.installedClasses());
  append(findings, checkFonts());
  return findings;
}

}  // namespace kartix::host
