#include "common/Text.h"
#include "gateway/Inquiry.h"
#include "gateway/KBAInterface.h"
#include "gateway/MessageDocument.h"
#include "runtime/Runtime.h"

namespace kartix {
namespace {

constexpr MessageType inquiryType = {"zkr-anfrage", "/zkr/dtd/zkr-anfrage.dtd"};

void writePerson(ElementWriter person, const InquiryCriteria& criteria) {
  person.value("vname", text::trim(criteria.vname))
      .value("gnamb", text::trim(criteria.gnamb))
      .value("gname", text::trim(criteria.gname))
      .value("fnamb", text::trim(criteria.fnamb))
      .value("name", text::trim(criteria.name))
      .value("dgebu", text::trim(criteria.dgebu))
      .value("gort", text::trim(criteria.gort));
}

}  // namespace

bool BuildZKRAnfrage(Runtime& runtime, KBAInterface& kba, platform::XmlDocument& document,
                     const InquiryCriteria& criteria) {
  const Konfiguration& settings = runtime.konfiguration;
  const bool built = buildMessage(kba, document, inquiryType, settings.AnfrageURI, [&](ElementWriter root) {
    root.group("kopf").value("vers", "1.1").value("kenn", settings.ZEVISUserName).value("exver", "1.1.0");
    ElementWriter inquiry = root.group("anfrage");
    inquiry.value("kenza", text::trim(settings.KENZA)).value("sbk25", text::trim(settings.ZPPER));
    if (!criteria.kgknr.empty()) {
      inquiry.value("kgknr", text::trimSpace(criteria.kgknr));
    } else if (!criteria.fsnfk.empty()) {
      inquiry.value("fsnfk", text::trim(criteria.fsnfk));
    } else {
      writePerson(inquiry.group("pers"), criteria);
    }
  });
  if (!built) runtime.trace.TraceLine("Anfrage konnte nicht erstellt werden", trace_level::calls);
  return built;
}

}  // namespace kartix
