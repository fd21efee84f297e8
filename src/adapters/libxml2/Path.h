#pragma once

#include <libxml/tree.h>

#include <cstddef>
#include <limits>
#include <string_view>
#include <vector>

namespace kartix::adapters {

/// The elements below `context` to which `path` leads, in document order: steps "/name" to a child and "//name" to
/// any descendant, the first one also as "name" or ".//name". Names are of no namespace. Anything else is the name of
/// no element. Besides the list nothing is allocated: the library's own evaluation uses memory that it has freed when
/// none is left. Time is linear in the elements below `context`, or before the last of the first `most`.
std::vector<xmlNode*> elementsAt(std::string_view path, xmlNode& context,
                                 std::size_t most = std::numeric_limits<std::size_t>::max());

}  // namespace kartix::adapters
