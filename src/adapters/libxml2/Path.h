#pragma once

#include <libxml/tree.h>

#include <string_view>
#include <vector>

namespace kartix::adapters {

/// The elements below `context` to which `path` leads, in document order: steps "/name" to a child and "//name" to
/// any descendant, the first one also as "name" or ".//name". Names are of no namespace. Anything else is the name of
/// no element. Besides the list nothing is allocated: the library's own evaluation uses memory that it has freed when
/// none is left. Time is linear in the elements below `context`.
std::vector<xmlNode*> elementsAt(std::string_view path, xmlNode& context);

}  // namespace kartix::adapters
