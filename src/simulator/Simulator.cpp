#include "simulator/Simulator.h"

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <sstream>
#include <utility>

#include "platform/Clock.h"
#include "simulator/Gateway.h"
#include "simulator/System.h"

namespace kartix::simulator {
namespace {

class SystemClock final : public platform::Clock {
 public:
  platform::LocalTime now() override { return localTime(); }
};

/// What goes back, and how it is told in the list of exchanges.
struct Outcome {
  HttpAnswer answer;
  std::string text;
};

Outcome refuse(int status, const std::string& text) {
  return {{.status = status, .contentType = "text/plain; charset=utf-8", .body = text + "\n", .close = true},
          "HTTP " + std::to_string(status)};
}

/// The answer of a scenario that has nothing to do with what is asked.
std::optional<Outcome> brokenAnswer(Scenario scenario) {
  constexpr int serverError = 500;
  constexpr std::size_t tooMuch = (std::size_t{16} << 20U) + 1;
  switch (scenario) {
    case Scenario::notXml:
      return Outcome{{.contentType = "text/html", .body = "<html><p>Wartungsarbeiten<br></html>"}, "not XML"};
    case Scenario::http500:
      return Outcome{{.status = serverError, .contentType = "text/plain", .body = "Interner Fehler\n"}, "HTTP 500"};
    case Scenario::oversizedAnswer:
      return Outcome{{.body = writeXml({"zkr-hinweis"}), .padding = tooMuch}, "oversized"};
    case Scenario::emptyAnswer:
      return Outcome{{}, "empty"};
    case Scenario::unknownAnswer:
      return Outcome{{.body = writeXml({"wartungshinweis", "Wartungsarbeiten bis 6 Uhr"})}, "wartungshinweis"};
    default:
      return std::nullopt;
  }
}

std::string textOf(const Reply& reply) { return reply.document.name + " " + std::to_string(reply.code); }

}  // namespace

class Simulator::Implementation {
 public:
  explicit Implementation(SimulatorOptions options)
      : options_(std::move(options)),
        gateway_(options_.state, options_.clock ? *options_.clock : systemClock_, options_.scenario),
        server_(
            options_.host, options_.port, options_.tls,
            [this](const HttpRequest& request) { return answer(request); }, [this] { return page(); }) {}

  ~Implementation() {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
    wake_.notify_all();
  }
  Implementation(const Implementation&) = delete;
  Implementation& operator=(const Implementation&) = delete;

  int port() const { return server_.port(); }
  void setScenario(Scenario scenario) { gateway_.setScenario(scenario); }
  std::vector<Order> orders() const { return gateway_.orders(); }

  std::vector<Exchange> exchanges() const {
    const std::lock_guard lock(mutex_);
    return {exchanges_.begin(), exchanges_.end()};
  }

 private:
  HttpAnswer answer(const HttpRequest& request) {
    Exchange exchange{.path = request.path, .request = {}, .outcome = {}};
    Outcome outcome = outcomeOf(request, exchange.request);
    exchange.outcome = outcome.text;
    record(exchange);
    return std::move(outcome.answer);
  }

  /// `kind` receives the document element of the request.
  Outcome outcomeOf(const HttpRequest& request, std::string& kind) {
    const Scenario scenario = gateway_.scenario();
    if (scenario == Scenario::connectionClosed) return {{.delivery = HttpAnswer::Delivery::nothing}, "closed"};
    const auto body = request.readBody();
    if (!body) return refuse(413, "Die Anfrage ist zu lang oder unvollständig.");
    const auto document = parseXml(*body);
    if (!document) return refuse(400, "Die Anfrage ist kein XML.");
    kind = document->name;
    if (kindOf(*document) == Kind::unknown) return refuse(400, "Die Nachricht ist nicht bekannt.");
    if (auto broken = brokenAnswer(scenario)) return std::move(*broken);
    if (scenario == Scenario::slowAnswer) pause();
    return delivered(gateway_.answer(*document, request.cookieHeader), scenario);
  }

  static Outcome delivered(Reply reply, Scenario scenario) {
    Outcome outcome{{.body = writeXml(reply.document), .cookies = std::move(reply.cookies)}, textOf(reply)};
    if (scenario == Scenario::halfAnswer) {
      outcome.answer.delivery = HttpAnswer::Delivery::half;
      outcome.text += ", half";
    }
    if (scenario == Scenario::orderAcceptedThenClosed && reply.ordered) {
      outcome.answer.delivery = HttpAnswer::Delivery::nothing;
      outcome.text += ", closed";
    }
    return outcome;
  }

  void pause() {
    std::unique_lock lock(mutex_);
    wake_.wait_for(lock, options_.slowness, [this] { return stopping_; });
  }

  void record(const Exchange& exchange) {
    constexpr std::size_t mostExchanges = 10'000;
    const std::lock_guard lock(mutex_);
    exchanges_.push_back(exchange);
    if (exchanges_.size() > mostExchanges) exchanges_.pop_front();
    if (options_.onExchange) options_.onExchange(exchange);
  }

  std::string page() const {
    std::ostringstream text;
    text << "Gateway simulator\n\nOrders (external administration mark, card number, date):\n";
    for (const Order& order : gateway_.orders()) {
      text << order.externalAdministrationMark << "  " << order.cardNumber << "  " << order.date
           << (order.cancelled ? "  cancelled" : "") << '\n';
    }
    return text.str();
  }

  SimulatorOptions options_;
  SystemClock systemClock_;
  mutable std::mutex mutex_;
  std::condition_variable wake_;
  bool stopping_ = false;
  std::deque<Exchange> exchanges_;
  Gateway gateway_;
  HttpServer server_;  ///< the last: it goes before what it uses
};

Simulator::Simulator(SimulatorOptions options)
    : implementation_(std::make_unique<Implementation>(std::move(options))) {}

Simulator::~Simulator() = default;

int Simulator::port() const { return implementation_->port(); }

void Simulator::setScenario(Scenario scenario) { implementation_->setScenario(scenario); }

std::vector<Exchange> Simulator::exchanges() const { return implementation_->exchanges(); }

std::vector<Order> Simulator::orders() const { return implementation_->orders(); }

}  // namespace kartix::simulator
