#pragma once

#include <cstdint>
#include <optional>

#include "adapters/windows/System.h"

namespace kartix::adapters::windows {

/// The functions of DBETXT32.DLL that are used, under their names. Texts are single-byte and end with NUL; handles,
/// numbers and results have 16 bits.
struct DbeFunctions {
  std::int16_t(WINAPI* DBE_Initialize)();
  std::int16_t(WINAPI* DBE_Connect)(std::int16_t client, std::int16_t mode, char* server, char* port, char* user,
                                    char* password);
  std::int16_t(WINAPI* DBE_OpenDataBase)(std::int16_t client, std::int16_t connection, char* name, char* user,
                                         char* password, std::int16_t mode);
  std::int16_t(WINAPI* DBE_Query)(std::int16_t client, std::int16_t connection, char* cursor, char* count,
                                  char* buffer);
  std::int16_t(WINAPI* DBE_GetNextEntry)(std::int16_t client, std::int16_t connection, std::int16_t mode,
                                         char* cursor, char* count, char* buffer);
  std::int16_t(WINAPI* DBE_CloseCursor)(std::int16_t client, std::int16_t connection, char* cursor);
  std::int16_t(WINAPI* DBE_Execute)(std::int16_t client, std::int16_t connection, char* statement);
  std::int16_t(WINAPI* DBE_Disconnect)(std::int16_t client, std::int16_t connection);
  std::int16_t(WINAPI* DBE_CLEANUP)(std::int16_t client);
  std::int16_t(WINAPI* DBE_COPYBUF)(char* row, std::int16_t field, char* target);
  std::int16_t(WINAPI* TXT_BUFFERSIZE)();
  std::int16_t(WINAPI* TXT_DBTOWIN)(char* date, char* format, char* target);
};

/// The library's functions, all of them; nothing when it is missing, made for processes of another kind, or offers
/// less. Once loaded it stays until the end of the process: nobody knows what it leaves running.
std::optional<DbeFunctions> loadDbe();

}  // namespace kartix::adapters::windows
