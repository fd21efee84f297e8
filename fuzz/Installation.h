#pragma once

#include <map>
#include <vector>

#include "Target.h"
#include "gateway/OrderBook.h"
#include "platform/ImageLibrary.h"
#include "support/TempDir.h"

namespace kartix::fuzz {

/// A directory for all runs of this process.
const test::TempDir& directory();
std::string databaseFile();
std::string bookFile();
/// What stands in the order book.
std::vector<BookEntry> bookEntries();

/// Makes a fresh host database and an empty order book, and gives the settings by name. Person 4711 has the cards 1,
/// which can be ordered and is reported lost, and 3, to be cancelled; person 4712 has one too.
std::map<std::string, std::string> installed();

/// Sets `column` ("personalien.wohnort") of person 4711 to any bytes.
void setField(const std::string& column, const std::string& value);

/// Pictures of the right sizes, whatever the files hold.
struct Pictures : platform::ImageLibrary {
  std::unique_ptr<platform::Image> load(const std::string& file) override;
};

}  // namespace kartix::fuzz
