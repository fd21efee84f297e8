#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "platform/ProfileFiles.h"
#include "platform/Registry.h"

namespace kartix::adapters {

/// The settings store as one text file in the format of the registry editor: UTF-16 with mark, UTF-8, or single-byte
/// text that begins with "REGEDIT4". Keys stand below HKEY_CURRENT_USER.
///
/// A write replaces the file in one step and keeps its encoding, its line ends and every line that it does not
/// concern; writers of several processes wait for each other. A missing file is an empty store; writing creates it
/// with its directories, readable for its owner only. A file that is not of the format, or larger than 4 MiB, gives
/// nothing and is never written to.
std::unique_ptr<platform::Registry> makeRegFile(std::filesystem::path file);

/// Why a settings store gives no values ("No such file or directory"); empty when it does.
std::string registryFileTrouble(const std::filesystem::path& file);

/// Ini files, single-byte, at most 4 MiB each; written like the settings store. A file that holds NUL bytes is not an
/// ini file: it gives nothing and is never written to. Nor is a path of another system.
std::unique_ptr<platform::ProfileFiles> makeIniFiles();

/// True when a settings file at `path`, there or not, could be written to now. Changes nothing.
bool canBeReplaced(const std::filesystem::path& path);

}  // namespace kartix::adapters
