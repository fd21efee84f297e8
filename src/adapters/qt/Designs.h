#pragma once

#include <string_view>

class QDialog;

namespace kartix::adapters::qt {

/// Puts the widgets of the form called `name` into `dialog`, as its .ui file says. False when no such form is known.
bool fillFromDesign(std::string_view name, QDialog& dialog);

}  // namespace kartix::adapters::qt
