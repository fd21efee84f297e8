#include <algorithm>
#include <utility>

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

/// What the object cannot tell stays empty.
std::string fieldOf(platform::AutomationObject& object, std::string_view member, const platform::Value& argument) {
  try {
    return toText(object.call(member, {argument}));
  } catch (const platform::AutomationError&) {
    return {};
  }
}

}  // namespace

Hits FillTrefferliste(Runtime& runtime, const platform::XmlDocument& answer) {
  Hits hits;
  const auto lists = answer.selectNodes("//liste");
  if (lists.empty()) return hits;
  for (platform::XmlNode hit : answer.children(lists.front(), "listelem")) {
    const auto field = [&](std::string_view name) {
      const auto found = answer.children(hit, name);
      return found.empty() ? std::string() : answer.nodeText(found.front());
    };
    hits.push_back({.card = field("kgknr"),
                    .expiry = runtime.global.datum(field("dguab"), false),
                    .licence = field("fsnfk"),
                    .name = text::trim(field("fnamb") + " " + field("name")),
                    .firstNames = field("vname"),
                    .postcode = field("plz08"),
                    .place = field("wohno")});
  }
  return hits;
}

Hits FillTrefferlisteCOM(Runtime& runtime, platform::AutomationObject& object) {
  Hits hits;
  const std::int32_t count = std::min(toNumber(object.call("GetAnzahlTreffer", {})), maxHits);
  for (std::int32_t i = 1; i <= count; ++i) {
    const platform::Value hit = std::int64_t{i};
    Hit entry;
    entry.card = fieldOf(object, "GetKartennummer", hit);
    entry.expiry = runtime.global.datum(fieldOf(object, "GetDatumAblaufGueltigkeit", hit), false);
    entry.licence = fieldOf(object, "GetFuehrerscheinnummer", hit);
    const std::string nameParts = fieldOf(object, "GetNamensbestandteileFamilienname", hit);
    entry.name = text::trim(nameParts + " " + fieldOf(object, "GetFamilienname", hit));
    entry.firstNames = fieldOf(object, "GetVornamen", hit);
    entry.postcode = fieldOf(object, "selectNodes", std::string("plz08"));
    entry.place = fieldOf(object, "selectNodes", std::string("wohno"));
    hits.push_back(std::move(entry));
  }
  return hits;
}

}  // namespace kartix
