#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "gateway/OperationExchange.h"
#include "gateway/OrderBook.h"

namespace kartix {

/// A message that changes something at the KBA, from before it goes out until its outcome is known: its entry in the
/// order book, and the line in the trace when the outcome stays unknown. Whatever way a delivery ends, by an
/// exception too, both are written.
class Delivery {
 public:
  /// The way to the KBA: the component's own transport, or an automation object of the host.
  enum class Road { http, automation };

  Delivery(const ExchangeContext& context, const OperationTraits& traits, Road road);
  /// Ends what nobody has ended: unclear when the message is out, else not sent.
  ~Delivery();
  Delivery(const Delivery&) = delete;
  Delivery& operator=(const Delivery&) = delete;

  /// Lets the clerk decide when the outcome of an earlier message is unclear, and writes the entry. False when the
  /// message must not go out, which the clerk knows.
  bool begin();

  /// An automation object is asked to send the message now.
  void handOver() { handedOver_ = true; }
  /// True when the message has gone out as a whole and its outcome is not known.
  bool unclear() const;

  /// The KBA has carried it out.
  void accepted() noexcept { end(Outcome::accepted, {}); }
  /// It has come to nothing with `code` (of the transport or the KBA), unless the transport says that nobody can
  /// know.
  void failed(std::int32_t code) noexcept;
  /// Nobody will know. `reason` goes into the trace unless the transport has one.
  void lost(std::string_view reason) noexcept;

 private:
  bool mayFollow(const BookEntry& former) const;
  bool refuseWithoutBook(const std::error_code& failure) const;
  void end(Outcome outcome, std::string_view detail) noexcept;

  const ExchangeContext& context_;
  const OperationTraits& traits_;
  Road road_;
  OrderBook book_;
  BookEntry entry_;
  std::string mark_;
  bool handedOver_ = false;
  bool begun_ = false;
  bool ended_ = false;
};

}  // namespace kartix
