#include "common/Text.h"
#include "gateway/Inquiry.h"
#include "gateway/KBAInterface.h"
#include "runtime/Runtime.h"

namespace kartix {

bool BuildZKRAnfrage(Runtime& runtime, KBAInterface& kba, platform::XmlDocument& document,
                     const InquiryCriteria& criteria) {
  const Konfiguration& settings = runtime.konfiguration;
  const std::string doctype = kba.doctypeLine("zkr-anfrage", "/zkr/dtd/zkr-anfrage.dtd", settings.AnfrageURI);
  KBAInterface::NewXmlDocument(document, "zkr-anfrage", doctype);
  platform::XmlNode root = document.documentElement();
  if (!root) return false;
  platform::XmlNode kopf = document.appendElement(root, "kopf", "");
  document.appendElement(kopf, "vers", "1.1");
  document.appendElement(kopf, "kenn", settings.ZEVISUserName);
  document.appendElement(kopf, "exver", "1.1.0");
  platform::XmlNode anfrage = document.appendElement(root, "anfrage", "");
  const auto add = [&](platform::XmlNode parent, std::string_view name, std::string_view value) {
    document.appendElement(parent, name, text::trim(value));
  };
  add(anfrage, "kenza", settings.KENZA);
  add(anfrage, "sbk25", settings.ZPPER);
  if (!criteria.kgknr.empty()) {
    add(anfrage, "kgknr", criteria.kgknr);
  } else if (!criteria.fsnfk.empty()) {
    add(anfrage, "fsnfk", criteria.fsnfk);
  } else {
    platform::XmlNode pers = document.appendElement(anfrage, "pers", "");
    add(pers, "vname", criteria.vname);
    add(pers, "gnamb", criteria.gnamb);
    add(pers, "gname", criteria.gname);
    add(pers, "fnamb", criteria.fnamb);
    add(pers, "name", criteria.name);
    add(pers, "dgebu", criteria.dgebu);
    add(pers, "gort", criteria.gort);
  }
  return true;
}

}  // namespace kartix
