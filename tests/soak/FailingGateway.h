#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <mutex>
#include <random>
#include <set>
#include <string>
#include <utility>

#include "support/LoopbackServer.h"

namespace kartix::test {

enum class Kind { order, cancellation, notification, inquiry, passwordChange };
enum class Road { own, objects };

/// What the gateway saw of an operation.
struct Seen {
  int taken = 0;           ///< how often the message was carried out
  bool again = false;      ///< it came again although its first coming had not been answered with "log in"
  bool refused = false;    ///< the last answer says that it was not carried out
  bool asked = true;       ///< the next one is expected: none has come yet, or the last was answered with "log in"
  std::string fault = {};  ///< what became of the last one
};

/// A gateway of register and personaliser that fails at every other request, on each road in turn in each of its
/// ways. Some of them come after the message was carried out, some before. Each road has an account of its own.
class FailingGateway {
 public:
  explicit FailingGateway(unsigned seed);

  /// From now on nothing fails, and nobody is logged in.
  void recover();
  /// What logs `account` in: "geheim1" until it is changed.
  std::string password(const std::string& account);

  std::string port() const { return server_.port(); }

  /// The clerk begins operation `number`. Messages but inquiries carry `cardNumber(number)`.
  void expect(std::size_t number, Kind kind, Road road);
  static std::string cardNumber(std::size_t number);
  /// Number that the personaliser gives to the card of an order.
  static std::string newCardNumber(std::size_t number);

  /// What was seen of each operation, once all are over.
  std::map<std::size_t, Seen> seen();
  /// How often each way of failing was taken on each road.
  using Times = std::array<int, 2>;
  std::map<std::string, Times> taken();

 private:
  Reply replyTo(const RecordedRequest& request);
  Reply logIn(const std::string& body);
  Reply carryOut(Kind kind, std::size_t number, Seen& seen);

  std::mutex mutex_;
  std::mt19937 random_;
  std::array<std::size_t, 2> nextFault_ = {};
  std::map<std::size_t, Kind> kinds_;
  std::size_t current_ = 0;
  std::size_t road_ = 0;
  std::map<std::size_t, Seen> seen_;
  std::map<std::string, Times> taken_;
  std::set<std::string> sessions_;
  std::map<std::string, std::string> passwords_;
  bool recovered_ = false;
  LoopbackServer server_;
};

}  // namespace kartix::test
