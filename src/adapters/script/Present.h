#pragma once

#include <string>
#include <vector>

namespace kartix::forms {
class Form;
}

namespace kartix::adapters {

/// What a script could have named: the open windows, outermost first, and of `form` every control, entry and row.
/// Lines that each begin with a line break and two blanks. Texts of fields are left out.
std::string describePresent(const std::vector<forms::Form*>& open, const forms::Form& form);

}  // namespace kartix::adapters
