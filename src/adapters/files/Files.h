#pragma once

#include <memory>

#include "platform/FileSystem.h"

namespace kartix::adapters {

/// The files of this machine. When several files differ from the wanted one in the case of their extensions only, the
/// first in the order of bytes is taken, capitals before small letters. Symbolic links are followed.
std::unique_ptr<platform::FileSystem> makeFiles();

}  // namespace kartix::adapters
