#include "adapters/libxml2/Path.h"

#include <array>
#include <cstddef>

namespace kartix::adapters {
namespace {

/// What takes a path one step further.
struct Step {
  std::string_view name;
  bool anyDepth = false;  ///< to any descendant, else to a child

  bool leadsTo(const xmlNode& element) const {
    const auto* const own = reinterpret_cast<const char*>(element.name);
    // Most differ in their first character already.
    return !name.empty() && *own == name.front() && !element.ns && name == own;
  }
};

constexpr std::size_t mostSteps = 8;

class Search {
 public:
  Search(std::string_view path, std::size_t most) : most_(most) {
    if (path.starts_with("./")) path.remove_prefix(1);
    while (!path.empty() && size_ < mostSteps) {
      Step& step = steps_[size_++];
      step.anyDepth = path.starts_with("//");
      path.remove_prefix(step.anyDepth ? 2 : std::size_t{path.starts_with("/")});
      step.name = path.substr(0, path.find('/'));
      path.remove_prefix(step.name.size());
    }
    if (!path.empty()) size_ = 0;
  }

  /// `here` and `above` are sets of numbers of steps: those that led to `parent`, and to it or one of its ancestors.
  /// The depth of a document is limited when it is loaded.
  void below(const xmlNode& parent, unsigned here, unsigned above) {
    for (xmlNode* node = parent.children; node && found_.size() < most_; node = node->next) {
      if (node->type != XML_ELEMENT_NODE) continue;
      unsigned reached = 0;
      for (std::size_t i = 0; i < size_; ++i) {
        const unsigned from = steps_[i].anyDepth ? above : here;
        if ((from >> i & 1U) != 0 && steps_[i].leadsTo(*node)) reached |= 1U << (i + 1);
      }
      if ((reached >> size_ & 1U) != 0) found_.push_back(node);
      below(*node, reached, above | reached);
    }
  }

  std::vector<xmlNode*> take() { return std::move(found_); }

 private:
  std::array<Step, mostSteps> steps_ = {};
  std::size_t size_ = 0;
  std::size_t most_;
  std::vector<xmlNode*> found_;
};

}  // namespace

std::vector<xmlNode*> elementsAt(std::string_view path, xmlNode& context, std::size_t most) {
  Search search(path, most);
  search.below(context, 1, 1);
  return search.take();
}

}  // namespace kartix::adapters
