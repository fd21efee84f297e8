#include <QAccessible>
#include <QMetaEnum>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "qt/QtFixture.h"
#include "support/Files.h"

namespace kartix::tests {
namespace {

class Accessibility : public QtWindows {};

std::string one(QString text) { return text.replace(u'\n', u' ').simplified().toStdString(); }

std::string roleOf(const QAccessibleInterface& each) {
  return QMetaEnum::fromType<QAccessible::Role>().valueToKey(each.role());
}

std::string valueOf(QAccessibleInterface& each) {
  if (auto* const number = each.valueInterface()) return one(number->currentValue().toString());
  return one(each.text(QAccessible::Value));
}

/// The name, which some kinds of fields have from their label alone.
std::string nameOf(const QAccessibleInterface& each) {
  for (const auto& [other, relation] : each.relations(QAccessible::Label)) {
    const bool group = other->role() == QAccessible::Grouping;
    if (relation.testFlag(QAccessible::Label) && !group) return one(other->text(QAccessible::Name));
  }
  return one(each.text(QAccessible::Name));
}

/// What a screen reader can say of `each`: role, name, value, state and the keys that lead to it.
std::string line(QAccessibleInterface& each) {
  const QAccessible::State state = each.state();
  std::string text = roleOf(each) + " \"" + nameOf(each) + "\"";
  if (const std::string value = valueOf(each); !value.empty()) text += " = \"" + value + "\"";
  if (const std::string about = one(each.text(QAccessible::Description)); !about.empty()) text += " (" + about + ")";
  if (const std::string keys = one(each.text(QAccessible::Accelerator)); !keys.empty()) text += " " + keys;
  if (state.readOnly) text += " readOnly";
  if (state.passwordEdit) text += " password";
  if (state.disabled) text += " disabled";
  if (state.checked) text += " checked";
  return text;
}

void dump(QAccessibleInterface& each, const std::string& indent, std::ostream& out) {
  if (each.state().invisible) return;
  out << indent << line(each) << '\n';
  for (int i = 0; i < each.childCount(); ++i) {
    if (QAccessibleInterface* const child = each.child(i)) dump(*child, indent + "  ", out);
  }
}

TEST_F(Accessibility, EveryFieldIsReadOutWithNameAndValue) {
  std::ostringstream tree;
  for (const auto& form : samples.all()) {
    adapters::qt::Window window(*form, nullptr);
    window.show();
    settle();
    dump(*QAccessible::queryAccessibleInterface(&window), "", tree);
  }
  // KARTIX_RECORD=1 records what is to be expected.
  if (qEnvironmentVariableIsSet("KARTIX_RECORD")) std::ofstream(KARTIX_SPOKEN_WINDOWS) << tree.str();
  EXPECT_EQ(tree.str(), test::readBytes(KARTIX_SPOKEN_WINDOWS));
}

}  // namespace
}  // namespace kartix::tests
