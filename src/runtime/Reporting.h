#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "runtime/ErrorCatalogue.h"

namespace kartix {

class Global;
class Trace;

/// A message for the clerk.
struct Message {
  std::string text;
  std::string caption;
  int buttons = 1;  ///< 2 two buttons with the captions below, 3 "Ja" / "Nein" / "Abbrechen", else "OK" alone
  int icon = 0;     ///< 0 question or information, 1 warning, 2 error
  std::string caption1;
  std::string caption2;
};

/// What is kept of a message: its number in the catalogue, 0 without one, and its text.
struct LastMessage {
  std::int32_t number = 0;
  std::string text;
};

/// Shows messages in windows of their own.
class MessageWindow {
 public:
  virtual ~MessageWindow() = default;
  /// Shows `message` modally: 1 for "OK", "Ja" or the left button, 0 for "Nein", -1 for the right button or the
  /// close box, -2 when it could not be shown.
  virtual std::int16_t showMessage(const Message& message) = 0;
  /// The plain box of the database connection.
  virtual void showSystemMessage(std::string_view text, std::string_view caption) = 0;
};

/// Messages and numbered errors for the clerk.
class Reporting {
 public:
  Reporting(Trace& trace, Global& global) : trace_(trace), global_(global) {}

  /// Set once while the component is put together.
  void setMessageWindow(MessageWindow* window) { window_ = window; }
  /// Where the catalogue takes the facts of the running operation from.
  void setOperationFacts(std::function<OperationFacts()> facts) { facts_ = std::move(facts); }

  // ErrorMsg, InfoMsg and ReportError are False when the message could not be shown.
  bool ErrorMsg(std::string_view message, std::string_view caption, bool critical);
  bool InfoMsg(std::string_view message, std::string_view caption);
  /// 1 is yes; anything else is no.
  std::int16_t YesNoMsg(std::string_view message, std::string_view caption);

  /// Shows error `number` of the catalogue. An unknown number shows the number alone.
  bool ReportError(std::int32_t number, std::string_view detail1 = {}, std::string_view detail2 = {});

  /// Reports a transport failure as error 200. `source` is "HTTP" or "COM", `code` the status.
  void ShowCommError(std::string_view source, std::int32_t code, std::string_view description);

  void showSystemMessage(std::string_view text, std::string_view caption);

  /// The last message since `forget`, shown or not.
  const LastMessage& lastMessage() const { return last_; }
  /// A host's call begins.
  void forget() { last_ = {}; }
  /// Keeps a message, also one that cannot become a window; `number` as in the catalogue, 0 for none.
  void note(std::int32_t number, std::string_view text) noexcept;

 private:
  bool showError(std::string_view message, std::string_view caption, bool critical);
  std::int16_t show(const Message& message);

  Trace& trace_;
  Global& global_;
  MessageWindow* window_ = nullptr;
  std::function<OperationFacts()> facts_;
  LastMessage last_;
};

/// Caption of information for the clerk.
inline constexpr std::string_view hintCaption = "ARGO Kartix - Hinweis";

}  // namespace kartix
