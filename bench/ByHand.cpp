#include "bench/ByHand.h"

#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xmlsave.h>
#include <openssl/evp.h>
#include <openssl/ssl.h>
#include <sqlite3.h>

#include <array>
#include <stdexcept>

#include "support/Files.h"

namespace kartix::bench {
namespace {

using Document = std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)>;

const xmlChar* xmlText(const std::string& text) { return reinterpret_cast<const xmlChar*>(text.c_str()); }
std::string plainText(const xmlChar* text) { return text ? reinterpret_cast<const char*>(text) : ""; }

Document parsed(const std::string& text) {
  Document document(xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr,
                                  XML_PARSE_NONET | XML_PARSE_HUGE | XML_PARSE_NOERROR),
                    xmlFreeDoc);
  if (!document) throw std::runtime_error("no XML");
  return document;
}

void collect(const xmlNode* node, int depth, Message& message) {
  for (; node; node = node->next) {
    if (node->type != XML_ELEMENT_NODE) continue;
    std::string text;
    if (node->children && !node->children->next && node->children->type == XML_TEXT_NODE) {
      text = plainText(node->children->content);
    }
    message.elements.push_back({depth, plainText(node->name), std::move(text)});
    collect(node->children, depth + 1, message);
  }
}

/// Every row of a statement, as it asks for it.
std::size_t read(sqlite3* database, const char* statement, std::vector<std::string>& texts) {
  sqlite3_stmt* query = nullptr;
  if (sqlite3_prepare_v2(database, statement, -1, &query, nullptr) != SQLITE_OK) throw std::runtime_error("no query");
  while (sqlite3_step(query) == SQLITE_ROW) {
    for (int column = 0; column < sqlite3_column_count(query); ++column) {
      const unsigned char* const text = sqlite3_column_text(query, column);
      texts.emplace_back(text ? reinterpret_cast<const char*>(text) : "");
    }
  }
  sqlite3_finalize(query);
  return texts.size();
}

std::size_t append(char* bytes, std::size_t size, std::size_t count, void* text) {
  static_cast<std::string*>(text)->append(bytes, size * count);
  return size * count;
}

CURLcode trustAlso(CURL* /*handle*/, void* context, void* file) {
  const auto& authority = *static_cast<const std::string*>(file);
  return SSL_CTX_load_verify_file(static_cast<SSL_CTX*>(context), authority.c_str()) == 1 ? CURLE_OK
                                                                                          : CURLE_SSL_CACERT_BADFILE;
}

}  // namespace

Message messageIn(const std::string& body) {
  const Document document = parsed(body);
  Message message;
  if (const xmlDtd* const type = xmlGetIntSubset(document.get())) message.documentType = plainText(type->SystemID);
  collect(xmlDocGetRootElement(document.get()), 0, message);
  return message;
}

std::string written(const Message& message) {
  const Document document(xmlNewDoc(BAD_CAST "1.0"), xmlFreeDoc);
  std::vector<xmlNode*> open;
  for (const auto& [depth, name, text] : message.elements) {
    open.resize(static_cast<std::size_t>(depth));
    xmlNode* const node = text.empty() ? xmlNewNode(nullptr, xmlText(name))
                                       : xmlNewDocRawNode(document.get(), nullptr, xmlText(name), xmlText(text));
    open.empty() ? xmlDocSetRootElement(document.get(), node) : xmlAddChild(open.back(), node);
    open.push_back(node);
  }
  const std::unique_ptr<xmlBuffer, decltype(&xmlBufferFree)> bytes(xmlBufferCreate(), xmlBufferFree);
  xmlSaveCtxt* const context = xmlSaveToBuffer(bytes.get(), "ISO-8859-1", XML_SAVE_NO_DECL);
  xmlSaveTree(context, open.front());
  xmlSaveClose(context);
  return R"(<?xml version="1.0" encoding="ISO-8859-1"?><!DOCTYPE )" + message.elements.front().name + " SYSTEM \"" +
         message.documentType + "\">" + plainText(xmlBufferContent(bytes.get()));
}

void replace(Message& message, const std::string& name, std::string text) {
  for (Message::Element& element : message.elements) {
    if (element.name == name) element.text = std::move(text);
  }
}

std::string base64(const std::filesystem::path& file) {
  const std::string bytes = test::readBytes(file);
  std::string text((bytes.size() + 2) / 3 * 4 + 1, '\0');
  EVP_EncodeBlock(reinterpret_cast<unsigned char*>(text.data()), reinterpret_cast<const unsigned char*>(bytes.data()),
                  static_cast<int>(bytes.size()));
  text.pop_back();
  return text;
}

std::size_t loadedTexts(const std::filesystem::path& file) {
  sqlite3* database = nullptr;
  if (sqlite3_open_v2(file.c_str(), &database, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK) {
    throw std::runtime_error("no database");
  }
  std::vector<std::string> texts;
  read(database, "select * from personalien where personennummer = 4711", texts);
  read(database, "select * from fahrerkarte where personennummer = 4711 and lfdnr = '1'", texts);
  read(database, "select * from fahrerkarte where personennummer = 4711 and vorgangschl not in ('ST','U')", texts);
  sqlite3_close(database);
  return texts.size();
}

std::vector<std::string> textsOf(const std::string& answer) {
  const Document document = parsed(answer);
  std::vector<std::string> texts;
  for (const xmlNode* part = xmlDocGetRootElement(document.get())->children; part; part = part->next) {
    for (const xmlNode* field = part->children; field; field = field->next) {
      if (field->type == XML_ELEMENT_NODE && field->children) texts.push_back(plainText(field->children->content));
    }
  }
  return texts;
}

Line::Line(std::string address, const test::PemFiles* client, const std::string& authority)
    : headers_(curl_slist_append(nullptr, "Content-Type: text/xml"), curl_slist_free_all) {
  CURL* const handle = handle_.get();
  headers_.reset(curl_slist_append(headers_.release(), "Expect:"));
  curl_easy_setopt(handle, CURLOPT_URL, address.c_str());
  curl_easy_setopt(handle, CURLOPT_HTTPHEADER, headers_.get());
  curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, append);
  curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
  if (!client) return;
  curl_easy_setopt(handle, CURLOPT_SSLCERT, client->certificate.c_str());
  curl_easy_setopt(handle, CURLOPT_SSLKEY, client->key.c_str());
  authority_ = authority;
  curl_easy_setopt(handle, CURLOPT_SSL_CTX_FUNCTION, trustAlso);
  curl_easy_setopt(handle, CURLOPT_SSL_CTX_DATA, &authority_);
}

std::string Line::exchange(const std::string& body) {
  std::string answer;
  curl_easy_setopt(handle_.get(), CURLOPT_WRITEDATA, &answer);
  curl_easy_setopt(handle_.get(), CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body.size()));
  curl_easy_setopt(handle_.get(), CURLOPT_POSTFIELDS, body.c_str());
  const CURLcode code = curl_easy_perform(handle_.get());
  if (code != CURLE_OK) throw std::runtime_error(curl_easy_strerror(code));
  return answer;
}

}  // namespace kartix::bench
