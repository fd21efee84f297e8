#include <map>

#include "adapters/dbe/Engine.h"
#include "adapters/dbe/Handles.h"
#include "common/CodePage.h"
#include "common/Text.h"

namespace kartix::adapters::dbe {
namespace {

constexpr std::int16_t done = 0;
constexpr std::int16_t failed = -1;

/// Cursors that one connection may hold open.
constexpr std::size_t mostCursors = 1000;

/// The answer of a query and the row that was handed out last.
struct Cursor {
  RowSet rows;
  std::size_t row = 0;
};

struct OpenConnection {
  std::int16_t client = 0;
  std::unique_ptr<Connection> connection;
  bool open = false;
  std::map<std::string, Cursor, std::less<>> cursors = {};
  unsigned lastCursor = 0;
};

/// A statement without the blanks that pad its buffer.
std::string_view unpadded(std::string_view buffer) {
  const auto last = buffer.find_last_not_of(' ');
  return buffer.substr(0, last == std::string_view::npos ? 0 : last + 1);
}

std::optional<Failure> refusal(std::string_view statement) {
  if (statement.empty()) return Failure{"Leere Anweisung"};
  if (text::length(statement) > bufferSize) return Failure{"Anweisung ist zu lang"};
  if (!text::isValidUtf8(statement) || statement.find('\0') != std::string_view::npos) {
    return Failure{"Anweisung enthält ungültige Zeichen"};
  }
  return std::nullopt;
}

/// A reason on one line: a server may take several, with blanks that point at a place in the one above. Some come in
/// the character set of the system's messages.
std::string onOneLine(const Failure& failure) {
  constexpr std::size_t longest = 1000;
  std::string reason = failure.reason.empty() ? failure.text : failure.reason;
  if (!text::isValidUtf8(reason)) reason = codepage::fromAnsi(reason);
  std::string line;
  for (const char c : reason) {
    const bool blank = static_cast<unsigned char>(c) <= ' ';
    if (!blank) line.push_back(c);
    if (blank && !line.empty() && line.back() != ' ') line.push_back(' ');
  }
  return text::left(text::trim(line), longest);
}

class Client : public platform::DbeLibrary {
 public:
  explicit Client(Connect connect) : connect_(std::move(connect)) {}

  void secure(const platform::ServerSecurity& security) override { security_ = security; }
  std::string failureReason() const override { return reason_; }

  std::int16_t DBE_Initialize() override { return clients_.add(true); }

  std::int16_t DBE_Connect(std::int16_t client, std::int16_t /*mode*/, std::string_view server, std::string_view port,
                           std::string_view user, std::string_view password) override {
    if (!clients_.find(client)) return failed;
    auto [connection, failure] =
        connect_({std::string(server), std::string(port), std::string(user), std::string(password), security_});
    if (!connection) return fail(failure);
    return connections_.add({client, std::move(connection)});
  }

  std::int16_t DBE_OpenDataBase(std::int16_t client, std::int16_t connection, std::string_view name,
                                std::string_view user, std::string_view password, std::int16_t /*mode*/) override {
    OpenConnection* const found = find(client, connection);
    if (!found || found->open) return failed;
    const auto failure = found->connection->open(std::string(name), std::string(user), std::string(password));
    found->open = !failure;
    return failure ? fail(*failure) : done;
  }

  std::int16_t DBE_Query(std::int16_t client, std::int16_t connection, std::string& cursor, std::string& count,
                         std::string& buffer) override {
    OpenConnection* const found = find(client, connection);
    Cursor answer;
    if (auto failure = run(found, buffer, answer.rows)) {
      buffer = std::move(failure->text);
      return failed;
    }
    if (found->cursors.size() >= mostCursors) {
      buffer = "Zu viele offene Cursor";
      return failed;
    }
    do {
      constexpr unsigned names = 1'000'000;
      found->lastCursor = (found->lastCursor + 1) % names;
      cursor = "C" + std::to_string(found->lastCursor);
    } while (found->cursors.contains(cursor));
    count = std::to_string(answer.rows.size());
    buffer = answer.rows.size() > 0 ? answer.rows[0] : std::string_view();
    found->cursors.emplace(cursor, std::move(answer));
    return done;
  }

  std::int16_t DBE_GetNextEntry(std::int16_t client, std::int16_t connection, std::int16_t /*mode*/,
                                std::string_view cursor, std::string& count, std::string& buffer) override {
    buffer.clear();
    OpenConnection* const found = find(client, connection);
    if (!found) return failed;
    const auto position = found->cursors.find(text::trim(text::untilNul(cursor)));
    if (position == found->cursors.end()) return failed;
    Cursor& answer = position->second;
    if (answer.row + 1 >= answer.rows.size()) return failed;
    buffer = answer.rows[++answer.row];
    count = std::to_string(answer.row + 1);
    return done;
  }

  std::int16_t DBE_CloseCursor(std::int16_t client, std::int16_t connection, std::string_view cursor) override {
    OpenConnection* const found = find(client, connection);
    return found && found->cursors.erase(text::trim(text::untilNul(cursor))) == 1 ? done : failed;
  }

  std::int16_t DBE_Execute(std::int16_t client, std::int16_t connection, std::string_view statement) override {
    RowSet ignored;
    const auto failure = run(find(client, connection), statement, ignored);
    if (failure && failure->outcomeUnknown) return outcomeUnknown;
    return failure ? failed : done;
  }

  std::int16_t DBE_Disconnect(std::int16_t client, std::int16_t connection) override {
    return find(client, connection) && connections_.remove(connection) ? done : failed;
  }

  std::int16_t DBE_CLEANUP(std::int16_t client) override {
    connections_.removeIf([&](const OpenConnection& each) { return each.client == client; });
    return clients_.remove(client) ? done : failed;
  }

  std::string DBE_COPYBUF(std::string_view row, std::int16_t field, std::size_t capacity) override {
    return fieldOf(text::untilNul(row), field, capacity);
  }

  std::size_t TXT_BUFFERSIZE() override { return bufferSize; }

  std::string TXT_DBTOWIN(std::string_view date, std::string_view format) override {
    constexpr std::size_t dateLength = 8;
    if (text::length(date) != dateLength) return {};
    std::string result;
    for (const char part : format) {
      if (!result.empty()) result.push_back('.');
      if (part == 'D') {
        result += text::mid(date, 6, 2);
      } else if (part == 'M') {
        result += text::mid(date, 4, 2);
      } else if (part == 'Y') {
        result += text::mid(date, 0, 4);
      } else {
        return {};
      }
    }
    return result;
  }

 private:
  OpenConnection* find(std::int16_t client, std::int16_t connection) {
    OpenConnection* const found = connections_.find(connection);
    return found && found->client == client ? found : nullptr;
  }

  std::int16_t fail(const Failure& failure) {
    reason_ = onOneLine(failure);
    return failed;
  }

  std::optional<Failure> run(OpenConnection* connection, std::string_view buffer, RowSet& rows) {
    const std::string_view statement = unpadded(buffer);
    auto failure = connection && connection->open ? refusal(statement) : Failure{"Keine Datenbank geöffnet"};
    if (!failure) failure = connection->connection->run(std::string(statement), rows);
    if (failure) fail(*failure);
    return failure;
  }

  Connect connect_;
  platform::ServerSecurity security_;
  std::string reason_;
  Handles<bool> clients_;
  Handles<OpenConnection> connections_;
};

}  // namespace

std::unique_ptr<platform::DbeLibrary> makeClient(Connect connect) {
  return std::make_unique<Client>(std::move(connect));
}

}  // namespace kartix::adapters::dbe
