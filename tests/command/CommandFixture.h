#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "support/Files.h"
#include "support/TempDir.h"

namespace kartix::test {

struct Outcome {
  int status = -1;
  std::string out;
  std::string err;
};

/// The command in a directory and with a configuration of its own, and without any display.
class CommandTest : public testing::Test {
 protected:
  /// Runs a line of the shell there; `kartix` is the command.
  Outcome shell(const std::string& line) const {
    const std::filesystem::path command = KARTIX_COMMAND;
    const std::string place = dir.path().string();
    const std::string environment =
        "unset DISPLAY WAYLAND_DISPLAY QT_QPA_PLATFORM KARTIX_REGISTRY; export HOME=" + place +
        " XDG_CONFIG_HOME=" + place + "/config PATH=" + command.parent_path().string() + ":$PATH; cd " + place;
    const int status = std::system((environment + " && ( " + line + " ) >out 2>err </dev/null").c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, readBytes(dir / "out"), readBytes(dir / "err")};
  }
  Outcome kartix(const std::string& arguments, const std::string& input = {}) const {
    write("input", input);
    return shell("kartix " + arguments + " <input");
  }
  void write(const std::string& name, const std::string& text) const { writeBytes(dir / name, text); }

  const TempDir dir;
};

}  // namespace kartix::test
