// A host that links the library, and calls it once it is asked to.

#include <kartix/automation.h>

int main(int count, char** /*arguments*/) { return count > 1 && *kartix_error_text() ? 1 : 0; }
