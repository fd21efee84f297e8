#pragma once

#include <cstdlib>

namespace kartix::test {

/// Sets a variable of the environment; an empty value takes it out.
inline void setVariable(const char* name, const char* value) {
#ifdef _WIN32
  ::_putenv_s(name, value);
#else
  *value != '\0' ? ::setenv(name, value, 1) : ::unsetenv(name);
#endif
}

}  // namespace kartix::test
