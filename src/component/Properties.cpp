#include <array>

#include "component/Component.h"
#include "component/Dispatch.h"
#include "hostdb/Session.h"
#include "kartix/Kartix.h"
#include "runtime/Guard.h"
#include "runtime/Runtime.h"

namespace kartix {
namespace {

using Getter = std::string (Kartix::*)() const;

struct Property {
  const char* name;
  Getter get;
};

/// In the order of their slots.
constexpr std::array properties = {
    Property{"antragsdatum", &Kartix::antragsdatum},
    Property{"familienname", &Kartix::familienname},
    Property{"vorname", &Kartix::vorname},
    Property{"ausdatum", &Kartix::ausdatum},
    Property{"ausgestelltvon", &Kartix::ausgestelltvon},
    Property{"bestelldatum", &Kartix::bestelldatum},
    Property{"bestellstatus", &Kartix::bestellstatus},
    Property{"bestellstatusam", &Kartix::bestellstatusam},
    Property{"zkrdatum", &Kartix::zkrdatum},
    Property{"zkrstatus", &Kartix::zkrstatus},
    Property{"chipkennung", &Kartix::chipkennung},
    Property{"gueltigab", &Kartix::gueltigab},
    Property{"gueltigbis", &Kartix::gueltigbis},
    Property{"fsnr", &Kartix::fsnr},
    Property{"fslkz", &Kartix::fslkz},
    Property{"mittx", &Kartix::mittx},
    Property{"kartennr", &Kartix::kartennr},
    Property{"kartennralt", &Kartix::kartennralt},
    Property{"produktionam", &Kartix::produktionam},
    Property{"scode", &Kartix::scode},
    Property{"scodetxt", &Kartix::scodetxt},
    Property{"sdate", &Kartix::sdate},
    Property{"stbab", &Kartix::stbab},
    Property{"hinweis", &Kartix::hinweis},
    Property{"stime", &Kartix::stime},
    Property{"stmit", &Kartix::stmit},
    Property{"vorgangschl", &Kartix::vorgangschl},
    Property{"abgabedatum", &Kartix::abgabedatum},
    Property{"abgabestatus", &Kartix::abgabestatus},
};

/// What every property does: trace the call, read the result record, trace the value.
class Reading {
 public:
  Reading(Component& component, const char* name) : runtime_(component.runtime()), name_(name) {}

  std::string text(const std::string& value) const {
    return traced([&] { return value; });
  }
  std::string date(const std::string& value) const {
    return traced([&] { return runtime_.global.datum(value, false); });
  }

 private:
  template <class Read>
  std::string traced(Read read) const {
    return guarded(runtime_, name_, std::string(), [&] {
      runtime_.trace.TraceCall(name_);
      std::string value = read();
      runtime_.trace.TraceParam(name_, value, trace_level::calls);
      return value;
    });
  }

  Runtime& runtime_;
  const char* name_;
};

}  // namespace

std::vector<std::pair<std::string, std::string>> resultProperties(const Kartix& kartix) {
  std::vector<std::pair<std::string, std::string>> values;
  values.reserve(properties.size());
  for (const Property& property : properties) values.emplace_back(property.name, (kartix.*property.get)());
  return values;
}

std::string Kartix::antragsdatum() const {
  return Reading(component_, "Get antragsdatum").date(component_.session().ResultCard.antragsdatum);
}
std::string Kartix::familienname() const {
  return Reading(component_, "Get familienname").text(component_.session().ResultCard.familienname);
}
std::string Kartix::vorname() const {
  return Reading(component_, "Get vorname").text(component_.session().ResultCard.vornamen);
}
std::string Kartix::ausdatum() const {
  return Reading(component_, "Get ausdatum").date(component_.session().ResultCard.ausdatum);
}
std::string Kartix::ausgestelltvon() const {
  return Reading(component_, "Get ausgestelltvon").text(component_.session().ResultCard.babtx);
}
std::string Kartix::bestelldatum() const {
  return Reading(component_, "Get bestelldatum").date(component_.session().ResultCard.bestelldatum);
}
std::string Kartix::bestellstatus() const {
  return Reading(component_, "Get bestellstatus").text(component_.session().ResultCard.bestellstatus);
}
std::string Kartix::bestellstatusam() const {
  return Reading(component_, "Get bestellstatusam").date(component_.session().ResultCard.bestellstatusam);
}
std::string Kartix::zkrdatum() const {
  return Reading(component_, "Get zkrdatum").date(component_.session().ResultCard.zkrdatum);
}
std::string Kartix::zkrstatus() const {
  return Reading(component_, "Get zkrstatus").text(component_.session().ResultCard.zkrstatus());
}
std::string Kartix::chipkennung() const {
  return Reading(component_, "Get chipkennung").text(component_.session().ResultCard.chipkennung);
}
std::string Kartix::gueltigab() const {
  return Reading(component_, "Get gueltigab").date(component_.session().ResultCard.gueltigab);
}
std::string Kartix::gueltigbis() const {
  return Reading(component_, "Get gueltigbis").date(component_.session().ResultCard.gueltigbis);
}
std::string Kartix::fsnr() const {
  return Reading(component_, "Get fsnr").text(component_.session().ResultCard.kfsnr);
}
std::string Kartix::fslkz() const {
  return Reading(component_, "Get fslkz").text(component_.session().ResultCard.kfsstaat);
}
std::string Kartix::mittx() const {
  return Reading(component_, "Get mittx").text(component_.session().ResultCard.mittx);
}
std::string Kartix::kartennr() const {
  return Reading(component_, "Get kartennr").text(component_.session().ResultCard.kartennr);
}
std::string Kartix::kartennralt() const {
  return Reading(component_, "Get kartennralt").text(component_.session().ResultCard.kartennralt);
}
std::string Kartix::produktionam() const {
  return Reading(component_, "Get produktionam").date(component_.session().ResultCard.proddatum);
}
std::string Kartix::scode() const {
  return Reading(component_, "Get scode").text(component_.session().ResultCard.scode);
}
std::string Kartix::scodetxt() const {
  return Reading(component_, "Get scodetxt").text(component_.session().ResultCard.scodetxt());
}
std::string Kartix::sdate() const {
  return Reading(component_, "Get sdate").date(component_.session().ResultCard.sdate);
}
std::string Kartix::stbab() const {
  return Reading(component_, "Get stbab").text(component_.session().ResultCard.stbab);
}
std::string Kartix::hinweis() const {
  return Reading(component_, "Get hinweis").text(component_.session().ResultCard.stext);
}
std::string Kartix::stime() const {
  return Reading(component_, "Get stime").text(component_.session().ResultCard.stime);
}
std::string Kartix::stmit() const {
  return Reading(component_, "Get stmit").text(component_.session().ResultCard.stmit);
}
std::string Kartix::vorgangschl() const {
  return Reading(component_, "Get vorgangschl").text(component_.session().ResultCard.vorgangschl);
}
std::string Kartix::abgabedatum() const {
  return Reading(component_, "Get abgabedatum").date(component_.session().ResultCard.abgabedatum);
}
std::string Kartix::abgabestatus() const {
  return Reading(component_, "Get abgabestatus").text(component_.session().ResultCard.argoabgabestatus());
}

}  // namespace kartix
