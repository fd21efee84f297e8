#include "simulator/Books.h"

#include <nlohmann/json.hpp>
#include <utility>

#include "simulator/Failures.h"
#include "simulator/SampleBooks.h"

namespace kartix::simulator {
namespace {

using Json = nlohmann::json;

constexpr int formatVersion = 1;

Json toJson(const Books& books) {
  Json orders = Json::array();
  for (const Order& order : books.orders) {
    orders.push_back({{"externalAdministrationMark", order.externalAdministrationMark},
                      {"cardNumber", order.cardNumber},
                      {"date", order.date},
                      {"cancelled", order.cancelled}});
  }
  Json accounts = Json::object();
  for (const auto& [user, account] : books.accounts) {
    accounts[user] = {{"password", account.password}, {"code", account.code}};
  }
  Json cards = Json::array();
  for (const auto& [number, record] : books.cards) cards.push_back(record);
  return {{"version", formatVersion},
          {"orders", std::move(orders)},
          {"accounts", std::move(accounts)},
          {"nextSerial", books.nextSerial},
          {"cards", std::move(cards)}};
}

/// Throws the library's exceptions for a document of another shape.
Books fromJson(const Json& json) {
  if (json.at("version").get<int>() != formatVersion) throw BadFile("made by another version");
  Books books;
  for (const Json& order : json.at("orders")) {
    books.orders.push_back({order.at("externalAdministrationMark"), order.at("cardNumber"), order.at("date"),
                            order.at("cancelled").get<bool>()});
  }
  for (const auto& [user, account] : json.at("accounts").items()) {
    books.accounts[user] = {account.at("password"), account.at("code").get<int>()};
  }
  for (const Json& card : json.at("cards")) {
    auto record = card.get<CardRecord>();
    const std::string number = record.at("kgknr");
    books.cards[number] = std::move(record);
  }
  books.nextSerial = json.at("nextSerial").get<unsigned>();
  return books;
}

Books load(StateStore& store) {
  const auto text = store.read();
  if (!text) return sampleBooks();
  try {
    return fromJson(Json::parse(*text));
  } catch (const std::exception& error) {
    throw BadFile(std::string("the state file is not one of this simulator: ") + error.what());
  }
}

}  // namespace

std::string valueOf(const CardRecord& record, std::string_view element) {
  const auto found = record.find(element);
  return found == record.end() ? std::string() : found->second;
}

Ledger::Ledger(StateStore* store) : store_(store) {
  // Written at once: a store that cannot be written is better known before the first order.
  if (!commit(store_ ? load(*store_) : sampleBooks())) throw BadFile("the state file cannot be written");
}

bool Ledger::commit(Books next) {
  if (store_ && !store_->replace(toJson(next).dump(1) + "\n")) return false;
  books_ = std::move(next);
  return true;
}

}  // namespace kartix::simulator
