#pragma once

#include <filesystem>
#include <memory>

#include "gateway/OrderBook.h"
#include "host/Finding.h"

namespace kartix {
class Konfiguration;
}

namespace kartix::host {

/// An installation as its settings describe it, read the way the component reads them, and looked at part by part.
/// No check changes anything, and none shows a window.
class Installation {
 public:
  explicit Installation(std::filesystem::path registryFile);
  ~Installation();
  Installation(const Installation&) = delete;
  Installation& operator=(const Installation&) = delete;

  /// Store and ini file readable, and what no operation can do without is set.
  Findings checkSettings();
  /// The host database opens and has the host's tables.
  Findings checkDatabase();
  /// Client certificate and key, when the settings call for them.
  Findings checkClientCertificate();
  /// The gateway answers; whatever it answers.
  Findings checkGateway();
  /// The directory of photos and signatures is there.
  Findings checkImages();
  /// No message in the order book has an unknown outcome, and the book can be written; nothing without a book.
  Findings checkOrderBook();

  /// The order book that the settings name. Works as long as this object.
  OrderBook orderBook();

 private:
  struct Parts;

  bool storeHoldsSettings();
  Findings checkPaths();

  std::filesystem::path registryFile_;
  std::unique_ptr<Parts> parts_;
};

}  // namespace kartix::host
