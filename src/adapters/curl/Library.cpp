#include <openssl/evp.h>

#include <utility>

#include "adapters/curl/Curl.h"
#include "adapters/curl/Errors.h"
#include "adapters/curl/HandlePool.h"
#include "adapters/curl/Request.h"

namespace kartix::adapters {
namespace {

constexpr std::int32_t version = 205002;

/// Once for the process and never undone: the host may use the same library.
bool initialised() {
  static const bool succeeded = curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
  return succeeded;
}

class CurlLibrary final : public platform::HttpLibrary {
 public:
  explicit CurlLibrary(CurlOptions options) : options_(std::move(options)) {}

  std::int32_t TESSELHTTPgetDLLVersion() override { return initialised() ? version : -1; }

  std::unique_ptr<platform::HttpRequest> TESSELHTTPCreate() override {
    if (!initialised()) return nullptr;
    return std::make_unique<Request>(options_, pool_);
  }

  std::string TESSELHTTPgetErrorDesc(std::int32_t code) override { return errorText(code); }

  std::string TESSELHTTPbase64encode(std::string_view bytes) override {
    // In pieces of whole groups of three, because the encoder counts in int. It ends each with a NUL.
    constexpr std::size_t piece = std::size_t{3} * 1024 * 1024;
    std::string text((bytes.size() + 2) / 3 * 4 + 1, '\0');
    auto* out = reinterpret_cast<unsigned char*>(text.data());
    for (std::size_t start = 0; start < bytes.size(); start += piece) {
      const std::string_view part = bytes.substr(start, piece);
      out += EVP_EncodeBlock(out, reinterpret_cast<const unsigned char*>(part.data()), static_cast<int>(part.size()));
    }
    text.pop_back();
    return text;
  }

 private:
  CurlOptions options_;
  std::shared_ptr<HandlePool> pool_ = std::make_shared<HandlePool>();
};

}  // namespace

std::unique_ptr<platform::HttpLibrary> makeCurlHttp(const CurlOptions& options) {
  return std::make_unique<CurlLibrary>(options);
}

}  // namespace kartix::adapters
