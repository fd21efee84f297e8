#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace kartix::platform {
class Clock;
class FileSystem;
}  // namespace kartix::platform

namespace kartix {

/// What became of a message that changes something at the KBA.
enum class Outcome {
  open,      ///< about to go out, or its sender ended before it knew
  accepted,  ///< carried out by the KBA
  refused,   ///< not carried out, and the KBA has said so
  notSent,   ///< did not leave this machine as a whole
  unclear,   ///< went out, and nobody here knows what came of it
  settled,   ///< was unclear; somebody has looked into it since
};

/// True for an outcome that nobody knows.
inline bool isUnclear(Outcome outcome) { return outcome == Outcome::open || outcome == Outcome::unclear; }

/// A message in the order book.
struct BookEntry {
  std::string id;      ///< 16 hexadecimal digits
  std::string time;    ///< when it was written down, local: "yyyy-mm-ddTHH:MM:SS"
  std::string kind;    ///< "Bestellung", "Storno" or "Mitteilung"
  std::string road;    ///< "http" or "automation"
  std::string person;  ///< number of the person
  std::string lfdnr;   ///< running number of the card record
  std::string mark;    ///< external administration mark: "4711/1"
  std::string clerk;
  Outcome outcome = Outcome::open;
  std::string endTime;  ///< when the outcome was written down; empty while there is none
  std::string detail;   ///< status or return code behind the outcome: "COM/-26"; empty for none
};

/// The order book: every message that changes something at the KBA is written down before it goes out and closed with
/// its outcome. A text file with a line a step, appended and flushed to the disk; several processes may keep one
/// book. Fields are told apart by tabs:
///
///     begin  ID  TIME  KIND  ROAD  PERSON  LFDNR  MARK  CLERK
///     end    ID  TIME  OUTCOME  DETAIL
///
/// Lines of any other form are passed over, so that one broken off by a crash costs its own step alone.
class OrderBook {
 public:
  /// `path` as the settings name it; empty for no book.
  OrderBook(platform::FileSystem& files, platform::Clock& clock, std::string_view path);

  bool kept() const { return !path_.empty(); }
  /// Path of the file on this machine.
  const std::string& path() const { return path_; }

  /// Writes down a message that is about to go out; sets `id` and `time` of `entry`.
  std::error_code begin(BookEntry& entry);
  /// Closes entry `id` with its outcome. Takes no memory.
  std::error_code end(std::string_view id, Outcome outcome, std::string_view detail) noexcept;

  /// Hands every entry to `take`, in the order in which they were begun.
  std::error_code read(std::vector<BookEntry>& entries);

  /// The last message for that person and running number that went out; nothing when there was none.
  std::error_code findLast(std::string_view person, std::string_view lfdnr, std::optional<BookEntry>& found);

 private:
  platform::FileSystem& files_;
  platform::Clock& clock_;
  std::string path_;
};

/// Name of an outcome in the file and in JSON: "notSent".
std::string_view outcomeName(Outcome outcome);

}  // namespace kartix
