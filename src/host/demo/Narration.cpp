#include "host/demo/Narration.h"

#include <algorithm>
#include <iostream>
#include <nlohmann/json.hpp>

#include "common/Text.h"
#include "host/Command.h"

namespace kartix::host {
namespace {

using Json = nlohmann::json;

std::string oneLine(const std::string& text) {
  return printable(text::trim(text::replaceAll(text::replaceAll(text, "\r\n", " "), "\n", " ")));
}

/// A control as the clerk knows it: by its caption where it has one.
std::string controlName(const Json& controls, const std::string& name) {
  const auto found = controls.find(name);
  const std::string caption = found == controls.end() ? std::string() : found->value("text", "");
  return caption.empty() || caption == "*****" ? name : name + " \"" + oneLine(caption) + "\"";
}

class Narrator {
 public:
  void tell(const Json& event) {
    const std::string kind = event.value("event", "");
    if (kind == "show") {
      std::cout << "    window " << event.value("window", "") << ": " << oneLine(event.value("caption", "")) << '\n';
    } else if (kind == "ready") {
      tellReady(event);
    } else if (kind == "step") {
      tellStep(event);
    } else if (kind == "object") {
      tellObject(event);
    }
  }

 private:
  /// What a message says, and what the clerk finds in a list.
  void tellReady(const Json& event) {
    controls_ = event.at("controls");
    const std::string window = event.value("window", "");
    if (window == "MessageBox" || window == "SystemMessageBox") {
      std::cout << "      \"" << oneLine(controls_.at("Label1").value("text", "")) << "\"\n";
    } else if (window == "BestellFehler") {
      std::cout << "      \"" << oneLine(controls_.at("Textbox[1]").value("text", "")) << "\"\n";
    } else if (window == "Auswahl") {
      for (const Json& row : controls_.at("Liste").at("rows")) tellRow(row);
    }
  }

  static void tellRow(const Json& row) {
    std::string line;
    for (const Json& cell : row) line += (line.empty() ? "" : " | ") + cell.get<std::string>();
    std::cout << "      " << printable(line) << '\n';
  }

  void tellStep(const Json& event) {
    for (const auto& [action, argument] : event.items()) {
      if (action == "event" || action == "window") continue;
      std::cout << "      clerk: " << action;
      if (argument.is_string()) std::cout << " " << controlName(controls_, argument.get<std::string>());
      if (argument.is_number()) std::cout << " row " << argument.get<int>();
      if (argument.is_object()) {
        for (const auto& [control, text] : argument.items()) {
          std::cout << " " << control << " = \"" << printable(text.get<std::string>()) << "\"";
        }
      }
      std::cout << '\n';
    }
  }

  static void tellObject(const Json& event) {
    const std::string member = event.value("member", "");
    if (!member.starts_with("Do")) return;
    std::cout << "      object " << event.value("progid", "") << ": " << member << " -> "
              << (event.contains("error") ? event.at("error").dump() : event.at("returns").dump()) << '\n';
  }

  Json controls_ = Json::object();
};

}  // namespace

void narrateTranscript(std::string_view transcript) {
  Narrator narrator;
  while (!transcript.empty()) {
    const std::size_t end = std::min(transcript.find('\n'), transcript.size());
    narrator.tell(Json::parse(transcript.substr(0, end)));
    transcript.remove_prefix(std::min(end + 1, transcript.size()));
  }
}

void narrateExchanges(std::span<const simulator::Exchange> exchanges) {
  for (const simulator::Exchange& exchange : exchanges) {
    std::cout << "    request " << exchange.request << " to " << exchange.path << ": " << exchange.outcome << '\n';
  }
}

}  // namespace kartix::host
