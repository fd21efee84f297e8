// A host that uses the libraries and the locale that Kartix uses too, and cleans up after itself while Kartix goes
// on. The argument is the script of an inquiry. Ends with the number of things that are not as they should be.
#include <curl/curl.h>
#include <glib.h>
#include <kartix/Hosting.h>
#include <kartix/Kartix.h>
#include <kartix/ObjectClasses.h>
#include <libxml/parser.h>
#include <libxml/xpath.h>

#include <QApplication>
#include <QWidget>
#include <clocale>
#include <cstdio>
#include <locale>
#include <string>

namespace {

int faults = 0;

void expect(bool holds, const char* what) {
  if (holds) return;
  ++faults;
  std::printf("not so: %s\n", what);
}

int errorsOfHost = 0;
void countError(void*, const char*, ...) { ++errorsOfHost; }

/// The host's own use of the XML library: a faulty document is told to its own handler.
bool xmlIsTheHosts() {
  const int before = errorsOfHost;
  xmlFreeDoc(xmlReadMemory("<a>", 3, nullptr, nullptr, 0));
  return errorsOfHost > before;
}

bool numbersAreGerman() {
  char text[8];
  std::snprintf(text, sizeof text, "%.1f", 0.5);
  return std::string(text) == "0,5" && std::locale().name() == "de_DE.UTF-8";
}

bool inquire(kartix::Kartix& kartix, const std::string& script) {
  return kartix::useTestClerk({script, {}, "2026-11-24T09:30:00"}) && kartix.init("Meier", "4712") &&
         kartix.ZKRAnfrage("1") == 1 && kartix::testClerkMismatch().empty() && kartix.gueltigbis() == "21.01.2029";
}

/// The host's own source of GLib; closes what the clerk is shown.
gboolean closeWindow(void* closed) {
  QWidget* const window = QApplication::activeModalWidget();
  if (!window || !window->isVisible()) return G_SOURCE_CONTINUE;
  window->close();
  ++*static_cast<int*>(closed);
  return G_SOURCE_CONTINUE;
}

}  // namespace

int main(int, char* argv[]) {
  expect(std::setlocale(LC_ALL, "de_DE.UTF-8") != nullptr, "there is a German locale");
  std::locale::global(std::locale("de_DE.UTF-8"));
  curl_global_init(CURL_GLOBAL_DEFAULT);
  xmlSetGenericErrorFunc(nullptr, countError);
  expect(xmlIsTheHosts(), "the host hears of its XML before");

  kartix::useGatewayObjects();
  kartix::Kartix kartix;
  expect(inquire(kartix, argv[1]), "an inquiry");
  expect(xmlIsTheHosts(), "the host hears of its XML afterwards");
  expect(numbersAreGerman(), "the locale is the host's");

  xmlCleanupParser();
  curl_global_cleanup();
  expect(inquire(kartix, argv[1]), "an inquiry after the host has cleaned up");

  int closed = 0;
  g_timeout_add(20, closeWindow, &closed);
  kartix::useTestClerk({});
  expect(kartix.ZKRAnfrage("1") == -1, "the clerk closes the window");
  expect(closed > 0, "sources of GLib go on while a window is open");
  expect(numbersAreGerman(), "the locale is the host's after a window");
  return faults;
}
