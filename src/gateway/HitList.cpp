#include <algorithm>

#include "common/Text.h"
#include "common/Values.h"
#include "gateway/Inquiry.h"
#include "platform/ObjectClasses.h"
#include "platform/XmlLibrary.h"
#include "runtime/Runtime.h"

namespace kartix {
namespace {

/// Hits that the selection window takes; the register sends far fewer.
constexpr std::int32_t maxHits = 10000;

std::string join(std::initializer_list<std::string> fields) {
  std::string line;
  for (const std::string& field : fields) line.append(field).append("|");
  return line;
}

/// What the object cannot tell stays empty.
std::string fieldOf(platform::AutomationObject& object, std::string_view member, const platform::Value& argument) {
  try {
    return toText(object.call(member, {argument}));
  } catch (const platform::AutomationError&) {
    return {};
  }
}

}  // namespace

HitLines FillTrefferliste(Runtime& runtime, const platform::XmlDocument& answer) {
  HitLines lines;
  const auto lists = answer.selectNodes("//liste");
  if (lists.empty()) return lines;
  for (platform::XmlNode hit : answer.children(lists.front(), "listelem")) {
    const auto field = [&](std::string_view name) {
      const auto found = answer.children(hit, name);
      return found.empty() ? std::string() : answer.nodeText(found.front());
    };
    lines.push_back(
        join({field("kgknr"), runtime.global.datum(field("dguab"), false), field("fsnfk"),
              text::trim(field("fnamb") + " " + field("name")), field("vname"), field("plz08"), field("wohno")}));
  }
  return lines;
}

HitLines FillTrefferlisteCOM(Runtime& runtime, platform::AutomationObject& object) {
  HitLines lines;
  const std::int32_t count = std::min(toNumber(object.call("GetAnzahlTreffer", {})), maxHits);
  for (std::int32_t i = 1; i <= count; ++i) {
    const platform::Value hit = std::int64_t{i};
    const std::string card = fieldOf(object, "GetKartennummer", hit);
    const std::string expiry = runtime.global.datum(fieldOf(object, "GetDatumAblaufGueltigkeit", hit), false);
    const std::string licence = fieldOf(object, "GetFuehrerscheinnummer", hit);
    const std::string nameParts = fieldOf(object, "GetNamensbestandteileFamilienname", hit);
    const std::string name = text::trim(nameParts + " " + fieldOf(object, "GetFamilienname", hit));
    const std::string firstNames = fieldOf(object, "GetVornamen", hit);
    const std::string postcode = fieldOf(object, "selectNodes", std::string("plz08"));
    const std::string place = fieldOf(object, "selectNodes", std::string("wohno"));
    lines.push_back(join({card, expiry, licence, name, firstNames, postcode, place}));
  }
  return lines;
}

}  // namespace kartix
