#include "component/Component.h"
#include "component/ResultProperties.h"
#include "hostdb/Session.h"
#include "kartix/Kartix.h"
#include "runtime/Guard.h"
#include "runtime/Runtime.h"

namespace kartix {

std::string Kartix::read(const ResultProperty& property) const {
  Runtime& runtime = component_.runtime();
  return guarded(runtime, property.name, std::string(), [&] {
    const std::string call = std::string("Get ").append(property.name);
    runtime.trace.TraceCall(call);
    std::string value = property.field(component_.session().ResultCard);
    if (property.date) value = runtime.global.datum(value, false);
    runtime.trace.TraceParam(call, value, trace_level::calls);
    return value;
  });
}

std::string ResultReader::read(const Kartix& kartix, const ResultProperty& property) { return kartix.read(property); }

std::string Kartix::antragsdatum() const { return read(resultRow("antragsdatum")); }
std::string Kartix::familienname() const { return read(resultRow("familienname")); }
std::string Kartix::vorname() const { return read(resultRow("vorname")); }
std::string Kartix::ausdatum() const { return read(resultRow("ausdatum")); }
std::string Kartix::ausgestelltvon() const { return read(resultRow("ausgestelltvon")); }
std::string Kartix::bestelldatum() const { return read(resultRow("bestelldatum")); }
std::string Kartix::bestellstatus() const { return read(resultRow("bestellstatus")); }
std::string Kartix::bestellstatusam() const { return read(resultRow("bestellstatusam")); }
std::string Kartix::zkrdatum() const { return read(resultRow("zkrdatum")); }
std::string Kartix::zkrstatus() const { return read(resultRow("zkrstatus")); }
std::string Kartix::chipkennung() const { return read(resultRow("chipkennung")); }
std::string Kartix::gueltigab() const { return read(resultRow("gueltigab")); }
std::string Kartix::gueltigbis() const { return read(resultRow("gueltigbis")); }
std::string Kartix::fsnr() const { return read(resultRow("fsnr")); }
std::string Kartix::fslkz() const { return read(resultRow("fslkz")); }
std::string Kartix::mittx() const { return read(resultRow("mittx")); }
std::string Kartix::kartennr() const { return read(resultRow("kartennr")); }
std::string Kartix::kartennralt() const { return read(resultRow("kartennralt")); }
std::string Kartix::produktionam() const { return read(resultRow("produktionam")); }
std::string Kartix::scode() const { return read(resultRow("scode")); }
std::string Kartix::scodetxt() const { return read(resultRow("scodetxt")); }
std::string Kartix::sdate() const { return read(resultRow("sdate")); }
std::string Kartix::stbab() const { return read(resultRow("stbab")); }
std::string Kartix::hinweis() const { return read(resultRow("hinweis")); }
std::string Kartix::stime() const { return read(resultRow("stime")); }
std::string Kartix::stmit() const { return read(resultRow("stmit")); }
std::string Kartix::vorgangschl() const { return read(resultRow("vorgangschl")); }
std::string Kartix::abgabedatum() const { return read(resultRow("abgabedatum")); }
std::string Kartix::abgabestatus() const { return read(resultRow("abgabestatus")); }

}  // namespace kartix
