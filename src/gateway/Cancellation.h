#pragma once

#include <cstdint>
#include <string>

#include "gateway/OperationExchange.h"
#include "gateway/Setters.h"

namespace kartix {

/// Cancellation of an order of a driver card. `lfdNr`, `vorgangschl`, `antragsdatum` and the mark go to the host's
/// object only.
struct CancellationMessage {
  std::string lfdNr;
  std::string vorgangschl;
  std::string antragsdatum;
  std::string externalAdministrationMark;  ///< person number and running number: "4711/1"
  std::string cardIssuingAuthorityKey;
  std::string cardNumber;
};

Setters<CancellationMessage> cancellationSetters();

/// Makes `document` the cancellation. False when it could not be built.
bool BuildCancellationDocument(Runtime& runtime, KBAInterface& kba, platform::XmlDocument& document,
                               const CancellationMessage& message);

/// Cancellation of the order in the session's `OperationCard`. True when it was accepted; the session's `ResultCard`
/// then holds the new state. Otherwise the clerk knows why, and `ResultCard` is untouched.
class OrderCancellation {
 public:
  explicit OrderCancellation(const ExchangeContext& context) : context_(context) {}

  /// Over the component's own transport.
  bool SendCancellationHttp();
  /// Over the host's automation object.
  bool SendCancellationAutomation();

 private:
  CancellationMessage message() const;
  ReturnCode ReadCancellationAnswer(const platform::XmlDocument& document);
  void recordCancellation();
  void tellSuccess() const;

  ExchangeContext context_;
};

}  // namespace kartix
