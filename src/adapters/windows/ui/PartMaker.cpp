#include "adapters/windows/ui/PartMaker.h"

#include "adapters/windows/ui/ButtonParts.h"
#include "adapters/windows/ui/ChoiceParts.h"
#include "adapters/windows/ui/DisplayParts.h"
#include "adapters/windows/ui/DrawnParts.h"
#include "adapters/windows/ui/TextParts.h"
#include "common/Text.h"

namespace kartix::adapters::native {
namespace {

template <class P, class C>
std::unique_ptr<Part> partOf(const Element& element, forms::Control* control, const Look& look) {
  auto* const fitting = dynamic_cast<C*>(control);
  if (!fitting) return nullptr;
  return std::make_unique<P>(element, *fitting, look);
}

std::unique_ptr<Part> labelOf(const Element& element, forms::Control* control, const Look& look,
                              const CardPart* card) {
  auto* const picture = dynamic_cast<forms::Picture*>(control);
  if (picture || !element.drawing.empty()) return std::make_unique<PicturePart>(element, picture, look, card);
  if (card) return std::make_unique<CardTextPart>(element, control, look, card);
  return std::make_unique<LabelPart>(element, control, look);
}

}  // namespace

std::unique_ptr<Part> makePart(const Element& element, forms::Control* control, const Look& look,
                               const CardPart* card) {
  switch (element.kind) {
    case Kind::label:
      return labelOf(element, control, look, card);
    case Kind::line:
    case Kind::lines:
      return partOf<TextPart, forms::TextField>(element, control, look);
    case Kind::option:
      return partOf<OptionPart, forms::OptionButton>(element, control, look);
    case Kind::button:
      return partOf<ButtonPart, forms::Button>(element, control, look);
    case Kind::combo:
      return partOf<ComboPart, forms::ComboBox>(element, control, look);
    case Kind::list:
      return partOf<ListPart, forms::ListView>(element, control, look);
    case Kind::progress:
      return partOf<ProgressPart, forms::ProgressBar>(element, control, look);
    case Kind::status:
      return partOf<StatusPart, forms::StatusBar>(element, control, look);
    case Kind::group:
      return std::make_unique<GroupPart>(element, look);
    case Kind::card:
      return std::make_unique<CardPart>(element, nullptr, look);
    case Kind::rule:
      return std::make_unique<RulePart>(element, look, card);
    default:
      return nullptr;
  }
}

std::string controlName(std::string_view widgetName) {
  const std::size_t mark = widgetName.rfind('_');
  if (mark == std::string_view::npos || !text::allDigits(widgetName.substr(mark + 1))) return std::string(widgetName);
  return std::string(widgetName.substr(0, mark)) + "[" + std::string(widgetName.substr(mark + 1)) + "]";
}

}  // namespace kartix::adapters::native
