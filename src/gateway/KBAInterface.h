#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "gateway/SessionCookies.h"
#include "platform/XmlLibrary.h"

namespace kartix::platform {
class HttpRequest;
}

namespace kartix {

class Runtime;

/// What a message does at the KBA.
enum class Effect {
  reads,    ///< inquiry, login: losing it costs a repetition
  changes,  ///< order, cancellation, notification, new password: goes out on a fresh connection
};

/// The road to the register's gateway: message documents and their exchange by HTTP POST.
class KBAInterface {
 public:
  explicit KBAInterface(Runtime& runtime) : runtime_(runtime), cookies_(runtime) {}

  /// Forgets the class of the documents.
  void init();

  /// Chooses the class of the message documents, the newest that can be created. False when there is none.
  bool InitXML();

  /// Name of that class; empty when there is none.
  std::string XMLDom;

  /// A new empty document. Raises std::runtime_error when the class has become unavailable.
  std::unique_ptr<platform::XmlDocument> createDocument() const;

  /// Makes `document` a new message with the root element `rootName`; `doctypeLine` may be empty.
  static void NewXmlDocument(platform::XmlDocument& document, std::string_view rootName,
                             std::string_view doctypeLine);

  /// True when the configured `address` of an exchange contains the first gateway host, in any case.
  bool namesFirstHost(std::string_view address) const;

  /// Document type line of a message. Its host is the first one when `address` names it, else the second.
  std::string doctypeLine(std::string_view rootName, std::string_view dtdPath, std::string_view address) const;

  /// The form in which a document's text goes out: a declaration without encoding names ISO-8859-1.
  static std::string SetIsoDeclaration(std::string xmlText);

  /// How far the last message with `Effect::changes` has come.
  enum class Change {
    none,        ///< there was none
    incomplete,  ///< not all of it has left this machine
    unanswered,  ///< it went out as a whole, and no answer says what came of it
    answered,    ///< an answer says what came of it
  };
  Change lastChange() const { return change_; }
  /// What `PostXml` returned for it; 0 while it has not returned.
  std::int32_t lastChangeStatus() const { return changeStatus_; }
  /// Whoever has understood the answer says so.
  void answerUnderstood() noexcept { change_ = Change::answered; }
  void forgetChange() noexcept {
    change_ = Change::none;
    changeStatus_ = 0;
  }

  /// Sends `request` to `path` and loads the answer into `response`, which stays empty when the answer is not well
  /// formed. Returns the HTTP status, a negative error of the client library, or 0 when no request could be made.
  /// `errorText` gets the text of the status or error. Nothing is ever sent twice.
  /// `Effect::changes` keeps `lastChange`, on every way out.
  std::int32_t PostXml(std::string_view path, const platform::XmlDocument& request, platform::XmlDocument& response,
                       std::string& errorText, Effect effect);

  /// True for 200. Any other HTTP status and every library error is reported to the clerk.
  bool CheckHttpStatus(std::int32_t status, std::string_view errorText);

  /// Base64 text of a file of at most 64 MiB on one line; empty when it cannot be read. `path` is one of the
  /// settings' paths; the case of its extension does not matter.
  std::string FileToBase64(const std::string& path);

 private:
  std::int32_t sendNoted(platform::HttpRequest& http, Effect effect);

  Runtime& runtime_;
  SessionCookies cookies_;
  Change change_ = Change::none;
  std::int32_t changeStatus_ = 0;
};

/// Text of the first element that `xpath` selects, without white space at its ends; empty when there
/// is none.
std::string firstText(const platform::XmlDocument& document, std::string_view xpath);

/// Name of the document element; empty when the document is empty.
std::string rootName(const platform::XmlDocument& document);

}  // namespace kartix
