#pragma once

#include <string>
#include <vector>

namespace kartix::test {

std::vector<std::string> linesOf(const std::string& text);

/// A trace with "TIME" in place of the moment that each line begins with.
std::string masked(const std::string& trace);

/// The trace file up to `level` that `stored` stands for, moments masked. Each stored line is a level and a text, in
/// which "<<<=" begins a result and "\s" is a blank at the end. "define NAME" to "end" is a block; a line "NAME A|B"
/// stands for its lines with A for %1 and B for %2.
std::string expandTrace(const std::string& stored, int level);

}  // namespace kartix::test
