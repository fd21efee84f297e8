#include "host/OrdersCommand.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "gateway/OrderBook.h"
#include "host/Command.h"
#include "host/Installation.h"
#include "host/RegistryFile.h"

namespace kartix::host {
namespace {

using Json = nlohmann::ordered_json;

struct Options {
  std::string registry;
  bool open = false;
  bool json = false;
  std::string settle;
};

std::string_view inGerman(Outcome outcome) {
  switch (outcome) {
    case Outcome::open:
      return "offen";
    case Outcome::accepted:
      return "angenommen";
    case Outcome::refused:
      return "abgelehnt";
    case Outcome::notSent:
      return "nicht gesendet";
    case Outcome::unclear:
      return "unklar";
    case Outcome::settled:
      break;
  }
  return "geklärt";
}

Json toJson(const BookEntry& entry) {
  return {{"id", entry.id},           {"time", entry.time},     {"kind", entry.kind},
          {"road", entry.road},       {"person", entry.person}, {"lfdnr", entry.lfdnr},
          {"mark", entry.mark},       {"clerk", entry.clerk},   {"outcome", outcomeName(entry.outcome)},
          {"endTime", entry.endTime}, {"detail", entry.detail}};
}

std::string toLine(const BookEntry& entry) {
  std::string line = entry.id + "  " + entry.time + "  " + entry.kind + " " + entry.mark + " (" + entry.clerk + "): ";
  line += inGerman(entry.outcome);
  if (!entry.detail.empty()) line += ", " + entry.detail;
  return printable(line);
}

std::vector<BookEntry> readBook(OrderBook& book) {
  std::vector<BookEntry> entries;
  if (const auto failure = book.read(entries)) {
    throw CommandFailure("Bestellbuch " + book.path() + " ist nicht lesbar: " + failure.message());
  }
  return entries;
}

void list(OrderBook& book, const Options& options) {
  std::vector<BookEntry> entries = readBook(book);
  if (options.open) std::erase_if(entries, [](const BookEntry& entry) { return !isUnclear(entry.outcome); });
  Json all = Json::array();
  for (const BookEntry& entry : entries) {
    if (options.json) {
      all.push_back(toJson(entry));
    } else {
      std::cout << toLine(entry) << '\n';
    }
  }
  if (options.json) std::cout << all.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
  if (!std::cout.flush()) throw CommandFailure("Die Ausgabe konnte nicht geschrieben werden");
}

void settle(OrderBook& book, const std::string& id) {
  const std::vector<BookEntry> entries = readBook(book);
  const auto entry = std::find_if(entries.begin(), entries.end(), [&](const BookEntry& e) { return e.id == id; });
  if (entry == entries.end()) throw UsageError("Im Bestellbuch steht keine Sendung " + id);
  if (!isUnclear(entry->outcome)) {
    throw UsageError("Das Ergebnis der Sendung " + id + " steht fest: " + std::string(inGerman(entry->outcome)));
  }
  if (const auto failure = book.end(id, Outcome::settled, outcomeName(entry->outcome))) {
    throw CommandFailure("Bestellbuch " + book.path() + " kann nicht geschrieben werden: " + failure.message());
  }
}

void perform(const Options& options) {
  Installation installation(registryFile(options.registry));
  OrderBook book = installation.orderBook();
  if (!book.kept()) {
    throw CommandFailure("Es wird kein Bestellbuch geführt: kartix settings set ZKR.Bestellbuch DATEI");
  }
  if (options.settle.empty()) {
    list(book, options);
  } else {
    settle(book, options.settle);
  }
}

}  // namespace

void addOrdersCommand(CLI::App& app, int& exit) {
  const auto options = std::make_shared<Options>();
  CLI::App* const orders =
      app.add_subcommand("orders", "Bestellbuch: was ans KBA gesendet wurde, und was daraus geworden ist");
  addRegistryOption(*orders, options->registry);
  CLI::Option* const open = orders->add_flag("--open", options->open, "Nur, was offen oder unklar ist");
  CLI::Option* const json = orders->add_flag("--json", options->json, "Als JSON");
  orders->add_option("--settle", options->settle, "Eine unklare Sendung als geklärt schließen")
      ->type_name("KENNUNG")
      ->excludes(open)
      ->excludes(json);
  orders->footer(
      "Beispiele:\n"
      "  kartix orders --open\n"
      "  kartix orders --settle 0123456789abcdef    (nach einer Anfrage im Register)");
  orders->callback([options, &exit] {
    perform(*options);
    exit = exit_status::done;
  });
}

}  // namespace kartix::host
