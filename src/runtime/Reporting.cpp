#include "runtime/Reporting.h"

#include <exception>

#include "platform/HttpLibrary.h"
#include "runtime/Global.h"
#include "runtime/Trace.h"

namespace kartix {
namespace {

constexpr int iconQuestion = 0;
constexpr int iconWarning = 1;
constexpr int iconError = 2;

/// Answer of a message that nobody has seen.
constexpr std::int16_t notShown = -2;

}  // namespace

void Reporting::note(std::int32_t number, std::string_view text) noexcept {
  try {
    last_ = {number, std::string(text)};
  } catch (const std::exception&) {
    // To show the message matters more than to keep it.
    last_ = {number, {}};
  }
}

std::int16_t Reporting::show(const Message& message) {
  if (!window_) return notShown;
  return window_->showMessage(message);
}

bool Reporting::ErrorMsg(std::string_view message, std::string_view caption, bool critical) {
  note(0, message);
  return showError(message, caption, critical);
}

bool Reporting::showError(std::string_view message, std::string_view caption, bool critical) {
  trace_.TraceEnter("Global::ErrorMsg");
  trace_.TraceParam("message", message);
  trace_.TraceParam("caption", caption);
  trace_.TraceParam("critical", critical);
  global_.WaitCursor(false);
  if (critical && caption == "ARGO Kartix - Warnung") caption = "ARGO Kartix - Fehler";
  const std::int16_t answer =
      show({std::string(message), std::string(caption), 1, critical ? iconError : iconWarning, {}, {}});
  trace_.TraceLeave("Global::ErrorMsg");
  return answer != notShown;
}

bool Reporting::InfoMsg(std::string_view message, std::string_view caption) {
  note(0, message);
  trace_.TraceEnter("Global::InfoMsg");
  trace_.TraceParam("message", message);
  trace_.TraceParam("caption", caption);
  global_.WaitCursor(false);
  const std::int16_t answer = show({std::string(message), std::string(caption), 1, iconQuestion, {}, {}});
  trace_.TraceLeave("Global::InfoMsg");
  return answer != notShown;
}

std::int16_t Reporting::YesNoMsg(std::string_view message, std::string_view caption) {
  note(0, message);
  trace_.TraceEnter("Global::YesNoMsg");
  trace_.TraceParam("message", message);
  trace_.TraceParam("caption", caption);
  global_.WaitCursor(false);
  const std::int16_t result = show({std::string(message), std::string(caption), 2, iconQuestion, "Ja", "Nein"});
  trace_.TraceLeave("Global::YesNoMsg", result);
  return result;
}

bool Reporting::ReportError(std::int32_t number, std::string_view detail1, std::string_view detail2) {
  const CatalogueEntry entry = catalogueEntry(number, detail1, detail2, facts_ ? facts_() : OperationFacts{});
  note(number, entry.text);
  return showError("(" + std::to_string(number) + ")\r\n" + entry.text, "ARGO Kartix: Fehler", entry.critical);
}

void Reporting::ShowCommError(std::string_view source, std::int32_t code, std::string_view description) {
  std::string text = std::string(source) + "/" + std::to_string(code) + ": " + std::string(description);
  if (code == platform::http_error::secureProxyNotReachable) text += " (Private Wire bereit?)";
  ReportError(200, text);
}

void Reporting::showSystemMessage(std::string_view text, std::string_view caption) {
  note(0, text);
  if (window_) window_->showSystemMessage(text, caption);
}

}  // namespace kartix
