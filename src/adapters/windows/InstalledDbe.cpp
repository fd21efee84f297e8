#include <algorithm>
#include <array>

#include "adapters/windows/DbeFunctions.h"
#include "adapters/windows/Windows.h"
#include "common/CodePage.h"
#include "common/Text.h"

namespace kartix::adapters {
namespace {

constexpr std::int16_t failed = -1;

/// Names of cursors and numbers of rows; a NUL follows whatever the library writes.
using ShortBuffer = std::array<char, 11>;

ShortBuffer filled(std::string_view text, char rest) {
  ShortBuffer buffer{};
  std::fill(buffer.begin(), buffer.end() - 1, rest);
  std::copy_n(text.begin(), std::min(text.size(), buffer.size() - 1), buffer.begin());
  return buffer;
}

std::string textOf(const char* buffer, std::size_t size) {
  return codepage::fromAnsi(text::untilNul(std::string_view(buffer, size)));
}

/// Texts are handed over as copies: the library takes them as buffers, and may write into them.
class InstalledDbe final : public platform::DbeLibrary {
 public:
  std::int16_t DBE_Initialize() override {
    if (!library_) library_ = windows::loadDbe();
    return library_ ? library_->DBE_Initialize() : failed;
  }

  std::string failureReason() const override {
    return library_ ? std::string() : "DBETXT32.DLL wurde nicht gefunden oder ist nicht vollständig";
  }

  std::int16_t DBE_Connect(std::int16_t client, std::int16_t mode, std::string_view server, std::string_view port,
                           std::string_view user, std::string_view password) override {
    if (!library_) return failed;
    std::string a = codepage::toAnsi(server);
    std::string b = codepage::toAnsi(port);
    std::string c = codepage::toAnsi(user);
    std::string d = codepage::toAnsi(password);
    return library_->DBE_Connect(client, mode, a.data(), b.data(), c.data(), d.data());
  }

  std::int16_t DBE_OpenDataBase(std::int16_t client, std::int16_t connection, std::string_view name,
                                std::string_view user, std::string_view password, std::int16_t mode) override {
    if (!library_) return failed;
    std::string a = codepage::toAnsi(name);
    std::string b = codepage::toAnsi(user);
    std::string c = codepage::toAnsi(password);
    return library_->DBE_OpenDataBase(client, connection, a.data(), b.data(), c.data(), mode);
  }

  std::int16_t DBE_Query(std::int16_t client, std::int16_t connection, std::string& cursor, std::string& count,
                         std::string& buffer) override {
    std::string statement = padded(buffer);
    buffer = refusal(statement);
    if (!buffer.empty()) return failed;
    ShortBuffer name = filled({}, '\0');
    ShortBuffer rows = filled({}, '\0');
    const std::int16_t result = library_->DBE_Query(client, connection, name.data(), rows.data(), statement.data());
    cursor = textOf(name.data(), name.size());
    count = textOf(rows.data(), rows.size());
    buffer = textOf(statement.data(), statement.size());
    return result;
  }

  std::int16_t DBE_GetNextEntry(std::int16_t client, std::int16_t connection, std::int16_t mode,
                                std::string_view cursor, std::string& count, std::string& buffer) override {
    buffer.clear();
    if (!library_) return failed;
    ShortBuffer name = filled(codepage::toAnsi(text::untilNul(cursor)), '\0');
    ShortBuffer number = filled({}, ' ');
    std::string row = padded({});
    const std::int16_t result =
        library_->DBE_GetNextEntry(client, connection, mode, name.data(), number.data(), row.data());
    count = textOf(number.data(), number.size());
    if (result >= 0) buffer = textOf(row.data(), row.size());
    return result;
  }

  std::int16_t DBE_CloseCursor(std::int16_t client, std::int16_t connection, std::string_view cursor) override {
    if (!library_) return failed;
    ShortBuffer name = filled(codepage::toAnsi(text::untilNul(cursor)), '\0');
    return library_->DBE_CloseCursor(client, connection, name.data());
  }

  std::int16_t DBE_Execute(std::int16_t client, std::int16_t connection, std::string_view statement) override {
    std::string buffer = padded(statement);
    return refusal(buffer).empty() ? library_->DBE_Execute(client, connection, buffer.data()) : failed;
  }

  std::int16_t DBE_Disconnect(std::int16_t client, std::int16_t connection) override {
    return library_ ? library_->DBE_Disconnect(client, connection) : failed;
  }

  std::int16_t DBE_CLEANUP(std::int16_t client) override { return library_ ? library_->DBE_CLEANUP(client) : failed; }

  std::string DBE_COPYBUF(std::string_view row, std::int16_t field, std::size_t capacity) override {
    if (!library_) return {};
    std::string bytes = codepage::toAnsi(text::untilNul(row));
    // No field is longer than its row, however much of it is asked for.
    std::string target(std::max(capacity, bytes.size()) + 1, '\0');
    library_->DBE_COPYBUF(bytes.data(), field, target.data());
    return textOf(target.data(), capacity);
  }

  std::size_t TXT_BUFFERSIZE() override {
    // Sizes beyond 32767 come as negative numbers.
    return library_ ? static_cast<std::uint16_t>(library_->TXT_BUFFERSIZE()) : 0;
  }

  std::string TXT_DBTOWIN(std::string_view date, std::string_view format) override {
    if (!library_) return {};
    std::string a = codepage::toAnsi(date);
    std::string b = codepage::toAnsi(format);
    std::array<char, 257> target{};
    library_->TXT_DBTOWIN(a.data(), b.data(), target.data());
    return textOf(target.data(), target.size());
  }

 private:
  /// The buffer in which a statement is answered: with blanks at its end, one character longer than the library says.
  std::string padded(std::string_view statement) {
    std::string buffer = codepage::toAnsi(statement);
    const std::size_t last = buffer.find_last_not_of(' ');
    buffer.resize(last == std::string::npos ? 0 : last + 1);
    buffer.resize(std::max(buffer.size(), TXT_BUFFERSIZE() + 1), ' ');
    return buffer;
  }

  /// Why the statement in `buffer` cannot be handed over; empty when it can.
  std::string refusal(const std::string& buffer) {
    if (!library_) return "Keine Verbindung";
    if (buffer.size() > TXT_BUFFERSIZE() + 1) return "Anweisung ist zu lang";
    return buffer.find('\0') == std::string::npos ? std::string() : "Anweisung enthält ungültige Zeichen";
  }

  std::optional<windows::DbeFunctions> library_;
};

}  // namespace

std::unique_ptr<platform::DbeLibrary> makeInstalledDbe() { return std::make_unique<InstalledDbe>(); }

}  // namespace kartix::adapters
