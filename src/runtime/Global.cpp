#include "runtime/Global.h"

#include "common/Dates.h"
#include "common/Scrambling.h"
#include "common/Text.h"
#include "platform/Clock.h"
#include "platform/DbeLibrary.h"
#include "platform/UserInterface.h"
#include "runtime/Trace.h"

namespace kartix {
namespace {

/// Size of the buffers that the database library fills.
constexpr std::size_t bufferSize = 256;

class TracedScrambling : public ScramblingObserver {
 public:
  explicit TracedScrambling(Trace& trace) : trace_(trace) {}
  void entered(std::string_view routine) override { trace_.TraceEnter(routine); }
  void left(std::string_view routine) override { trace_.TraceLeave(routine, "*****"); }

 private:
  Trace& trace_;
};

}  // namespace

Global::Global(Trace& trace, platform::DbeLibrary& dbe, platform::UserInterface& userInterface,
               platform::Clock& clock)
    : trace_(trace), dbe_(dbe), userInterface_(userInterface), clock_(clock) {}

std::string Global::datum(std::string_view DBDatum, bool toDB) {
  trace_.TraceEnter("Global::datum");
  trace_.TraceParam("DBDatum", DBDatum);
  std::string result =
      toDB ? displayToDatabase(DBDatum) : NullTrim(dbe_.TXT_DBTOWIN(checkedDatabaseDate(DBDatum), "DMY"));
  trace_.TraceLeave("Global::Datum", result);
  return result;
}

std::string Global::GetSqlValue(std::string_view record, std::int16_t iIndex) {
  trace_.TraceEnter("Global::GetSqlValue");
  trace_.TraceParam("iIndex", iIndex, trace_level::columns);
  std::string result = NullTrim(dbe_.DBE_COPYBUF(record, iIndex, bufferSize));
  trace_.TraceLeave("Global::GetSqlValue", result);
  return result;
}

std::string Global::NullTrim(std::string_view text) {
  trace_.TraceEnter("Global::NullTrim");
  std::string result = text::trim(text::untilNul(text));
  trace_.TraceLeave("Global::NullTrim", result);
  return result;
}

std::string Global::TodayDB() const { return moment::yyyymmdd(clock_.now()); }

void Global::WaitCursor(bool onoff) noexcept {
  trace_.TraceEnter("Global::WaitCursor");
  trace_.TraceParam("onoff", onoff);
  try {
    userInterface_.setHourglass(onoff);
  } catch (...) {
    trace_.TraceLine("Mauszeiger nicht gewechselt", trace_level::calls);
  }
  trace_.TraceLeave("Global::WaitCursor");
}

void Global::CenterForm(forms::Form& form) {
  trace_.TraceEnter("Global::CenterForm");
  userInterface_.centerForm(form);
  trace_.TraceLeave("Global::CenterForm");
}

std::string Global::CryptLong(std::string_view plain) {
  TracedScrambling observer(trace_);
  return kartix::CryptLong(plain, &observer);
}

std::string Global::DecryptLong(std::string_view stored) {
  TracedScrambling observer(trace_);
  return kartix::DecryptLong(stored, &observer);
}

std::string BlankIfEmpty(std::string_view value) { return value.empty() ? " " : std::string(value); }

std::string FlattenText(std::string_view text) {
  std::string flat(text);
  for (const std::string_view separator : {"{{", "\r\n", "\r", "\n"}) flat = text::replaceAll(flat, separator, " ");
  return text::trim(flat);
}

}  // namespace kartix
