#pragma once

#include <windows.h>

// The system's header makes macros of names that the interfaces of this house carry: with them, a class would have
// other members here than elsewhere.
#undef GetPrivateProfileString
#undef RegCreateKeyEx
#undef RegQueryValueEx
#undef RegSetValueEx
#undef WritePrivateProfileString
