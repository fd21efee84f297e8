#include "host/StateFile.h"

#include <cstddef>
#include <filesystem>
#include <utility>

#include "adapters/settings/AtomicFile.h"
#include "common/Paths.h"
#include "simulator/Failures.h"

namespace kartix::host {
namespace {

class StateFile final : public simulator::StateStore {
 public:
  explicit StateFile(std::filesystem::path file) : file_(std::move(file)) {}

  std::optional<std::string> read() override {
    using State = adapters::FileContent::State;
    constexpr std::size_t limit = std::size_t{64} << 20U;
    adapters::FileContent content = adapters::readFile(file_, limit);
    if (content.state == State::missing) return std::nullopt;
    if (content.state != State::read) throw simulator::BadFile("the state file cannot be read: " + utf8Of(file_));
    return std::move(content.bytes);
  }

  bool replace(std::string_view text) override { return adapters::replaceFile(file_, text); }

 private:
  std::filesystem::path file_;
};

}  // namespace

std::unique_ptr<simulator::StateStore> makeStateFile(const std::filesystem::path& file) {
  return std::make_unique<StateFile>(file);
}

}  // namespace kartix::host
