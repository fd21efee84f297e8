#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kartix::adapters::frontend {

/// Chooses a letter of each caption that, together with Alt, reaches its control: the first of a word rather than one
/// inside, no letter twice, earlier captions first. 0 where no letter is left.
std::vector<char> chooseAccelerators(const std::vector<std::string>& captions);

/// The caption as buttons and labels take it, with the letter marked by "&".
std::string withAccelerator(std::string_view caption, char letter);

}  // namespace kartix::adapters::frontend
