// Stands in for the client library of a database server: the server's address is whatever is asked for, the name of a
// database the path of an SQLite file. Texts are single-byte, and a user called "falsch" is let in nowhere.

#include <windows.h>

#include <algorithm>
#include <memory>
#include <string>

#include "adapters/sqlite/Sqlite.h"
#include "common/CodePage.h"

namespace {

using namespace kartix;

constexpr std::size_t shortBuffer = 10;
constexpr std::int16_t bufferSize = 16000;

platform::DbeLibrary& library() {
  static const std::unique_ptr<platform::DbeLibrary> made = adapters::makeSqliteDbe();
  return *made;
}

std::string text(const char* ansi) { return codepage::fromAnsi(ansi); }

/// Nobody reserves more than `size` characters and a NUL.
void put(const std::string& utf8, char* to, std::size_t size) {
  const std::string ansi = codepage::toAnsi(utf8).substr(0, size);
  *std::copy(ansi.begin(), ansi.end(), to) = '\0';
}

}  // namespace

#define EXPORTED extern "C" std::int16_t WINAPI

EXPORTED DBE_Initialize() { return library().DBE_Initialize(); }

EXPORTED DBE_Connect(std::int16_t client, std::int16_t mode, char* server, char* port, char* user, char* password) {
  if (text(user) == "falsch") return -1;
  return library().DBE_Connect(client, mode, text(server), text(port), text(user), text(password));
}

EXPORTED DBE_OpenDataBase(std::int16_t client, std::int16_t connection, char* name, char* user, char* password,
                          std::int16_t mode) {
  return library().DBE_OpenDataBase(client, connection, text(name), text(user), text(password), mode);
}

EXPORTED DBE_Query(std::int16_t client, std::int16_t connection, char* cursor, char* count, char* buffer) {
  std::string name;
  std::string rows;
  std::string answer = text(buffer);
  const std::int16_t result = library().DBE_Query(client, connection, name, rows, answer);
  put(name, cursor, shortBuffer);
  put(rows, count, shortBuffer);
  put(answer, buffer, bufferSize);
  return result;
}

EXPORTED DBE_GetNextEntry(std::int16_t client, std::int16_t connection, std::int16_t mode, char* cursor, char* count,
                          char* buffer) {
  std::string number;
  std::string row;
  const std::int16_t result = library().DBE_GetNextEntry(client, connection, mode, text(cursor), number, row);
  put(number, count, shortBuffer);
  put(row, buffer, bufferSize);
  return result;
}

EXPORTED DBE_CloseCursor(std::int16_t client, std::int16_t connection, char* cursor) {
  return library().DBE_CloseCursor(client, connection, text(cursor));
}

EXPORTED DBE_Execute(std::int16_t client, std::int16_t connection, char* statement) {
  return library().DBE_Execute(client, connection, text(statement));
}

EXPORTED DBE_Disconnect(std::int16_t client, std::int16_t connection) {
  return library().DBE_Disconnect(client, connection);
}

EXPORTED DBE_CLEANUP(std::int16_t client) { return library().DBE_CLEANUP(client); }

EXPORTED DBE_COPYBUF(char* row, std::int16_t field, char* target) {
  const std::string whole = text(row);
  const std::string found = library().DBE_COPYBUF(whole, field, whole.size());
  put(found, target, found.size());
  return 0;
}

EXPORTED TXT_BUFFERSIZE() { return static_cast<std::int16_t>(bufferSize); }

EXPORTED TXT_DBTOWIN(char* date, char* format, char* target) {
  put(library().TXT_DBTOWIN(text(date), text(format)), target, 256);
  return 0;
}
