#pragma once

#include <curl/curl.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "adapters/curl/Curl.h"
#include "adapters/curl/Exchange.h"
#include "adapters/curl/HandlePool.h"

namespace kartix::adapters {

using HeaderList = std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)>;

/// One request of the library. It shares the pool, which outlives the library object when it has to.
class Request final : public platform::HttpRequest {
 public:
  Request(CurlOptions options, std::shared_ptr<HandlePool> pool)
      : options_(std::move(options)), pool_(std::move(pool)), url_(curl_url(), curl_url_cleanup) {}

  std::int32_t TESSELHTTPsetServer(std::string_view server, std::string_view port) override;
  std::int32_t TESSELHTTPsetMethod(std::string_view method) override;
  void TESSELHTTPsetContentType(std::string_view type) override;
  std::int32_t TESSELHTTPsetPath(std::string_view path) override;
  std::int32_t TESSELHTTPsetBody(std::string bytes) override;
  void TESSELHTTPclearCookies() override { cookies_.clear(); }
  void TESSELHTTPaddCookie(std::string_view name, std::string_view value) override;
  void TESSELHTTPsetHttpS() override { tls_ = true; }
  void TESSELHTTPsetPEM(std::string_view certificate, std::string_view key, std::string_view phrase) override;
  void TESSELHTTPsetSecureProxy(std::string_view address) override { proxy_ = address; }
  void TESSELHTTPclearSecureProxy() override { proxy_.reset(); }
  void useFreshConnection() override { fresh_ = true; }

  std::int32_t TESSELHTTPsend() override;
  platform::TlsFault tlsFault() const override { return tlsFault_; }
  bool requestSentCompletely() const override { return exchange_ && exchange_->sentCompletely(); }

  std::string TESSELHTTPgetResponseDesc(std::size_t size) const override;
  const std::string& TESSELHTTPgetResponseBody() const override;
  std::string TESSELHTTPgetSetCookie(std::string_view name) const override;

 private:
  Route route() const;
  void prepareHttp(CURL* easy, curl_slist* headers);
  void prepareTls(Handle& handle);
  bool prepareProxy(CURL* easy, curl_slist* headers);
  HeaderList requestHeaders() const;
  std::int32_t send();
  std::int32_t perform(Handle& handle);

  CurlOptions options_;
  std::shared_ptr<HandlePool> pool_;
  std::unique_ptr<CURLU, decltype(&curl_url_cleanup)> url_;
  std::string server_;
  bool post_ = false;
  std::string path_ = "/";
  std::string contentType_;
  std::string body_;
  std::string cookies_;
  bool tls_ = false;
  bool fresh_ = false;
  std::string certificate_;
  std::string key_;
  std::string phrase_;
  std::optional<std::string> proxy_;
  std::optional<Exchange> exchange_;
  platform::TlsFault tlsFault_ = platform::TlsFault::none;
};

}  // namespace kartix::adapters
