#pragma once

#include <curl/curl.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "support/Certificates.h"

/// What one would write with the bare libraries for a single operation, and nothing else: no settings, no windows, no
/// trace, hardly a look at what may go wrong.
namespace kartix::bench {

/// A message as its values make it: the elements in their order, each with its depth.
struct Message {
  struct Element {
    int depth = 0;
    std::string name;
    std::string text;
  };
  std::string documentType;  ///< address of the document type
  std::vector<Element> elements;
};

/// The message in the body of a request. Throws `std::runtime_error`.
Message messageIn(const std::string& body);

/// `message` in the bytes that a request has.
std::string written(const Message& message);

/// The last element of the name with another text.
void replace(Message& message, const std::string& name, std::string text);

std::string base64(const std::filesystem::path& file);

/// The person 4711 with the cards, as an inquiry needs them; number of texts read.
std::size_t loadedTexts(const std::filesystem::path& database);

/// Texts of the elements below those that stand below the document element.
std::vector<std::string> textsOf(const std::string& answer);

/// A connection that is kept as long as the server keeps it.
class Line {
 public:
  /// With `client` over TLS, trusting `authority` besides those that the system trusts.
  explicit Line(std::string address, const test::PemFiles* client = nullptr, const std::string& authority = "");

  /// Sends a body and gives that of the answer; throws `std::runtime_error` when there is none.
  std::string exchange(const std::string& body);

 private:
  std::string authority_;
  std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> handle_{curl_easy_init(), curl_easy_cleanup};
  std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)> headers_;
};

}  // namespace kartix::bench
