#include "adapters/dbe/DbeChooser.h"

#include "adapters/dbe/Handles.h"

namespace kartix::adapters {
namespace {

/// A connection of one of the two libraries, with the handles it has there.
struct Route {
  std::int16_t owner = 0;
  platform::DbeLibrary* library = nullptr;
  std::int16_t client = 0;
  std::int16_t connection = 0;
};

class DbeChooser : public platform::DbeLibrary {
 public:
  DbeChooser(std::unique_ptr<platform::DbeLibrary> embedded, std::unique_ptr<platform::DbeLibrary> server)
      : embedded_(std::move(embedded)),
        server_(std::move(server)),
        current_(embedded_.get()),
        asked_(embedded_.get()) {}

  void secure(const platform::ServerSecurity& security) override { server_->secure(security); }
  std::string failureReason() const override { return asked_->failureReason(); }

  std::int16_t DBE_Initialize() override { return clients_.add(true); }

  std::int16_t DBE_Connect(std::int16_t client, std::int16_t mode, std::string_view server, std::string_view port,
                           std::string_view user, std::string_view password) override {
    if (!clients_.find(client)) return -1;
    Route route;
    route.owner = client;
    route.library = server.find_first_not_of(' ') == std::string_view::npos ? embedded_.get() : server_.get();
    asked_ = route.library;
    route.client = route.library->DBE_Initialize();
    if (route.client < 0) return route.client;
    route.connection = route.library->DBE_Connect(route.client, mode, server, port, user, password);
    const std::int16_t handle = route.connection < 0 ? route.connection : routes_.add(route);
    if (handle >= 0) current_ = route.library;
    if (handle < 0) route.library->DBE_CLEANUP(route.client);
    return handle;
  }

  std::int16_t DBE_OpenDataBase(std::int16_t client, std::int16_t connection, std::string_view name,
                                std::string_view user, std::string_view password, std::int16_t mode) override {
    const Route* const to = find(client, connection);
    return to ? to->library->DBE_OpenDataBase(to->client, to->connection, name, user, password, mode) : noRoute;
  }

  std::int16_t DBE_Query(std::int16_t client, std::int16_t connection, std::string& cursor, std::string& count,
                         std::string& buffer) override {
    const Route* const to = find(client, connection);
    if (to) {
      current_ = to->library;
      return to->library->DBE_Query(to->client, to->connection, cursor, count, buffer);
    }
    buffer = "Keine Verbindung";
    return noRoute;
  }

  std::int16_t DBE_GetNextEntry(std::int16_t client, std::int16_t connection, std::int16_t mode,
                                std::string_view cursor, std::string& count, std::string& buffer) override {
    const Route* const to = find(client, connection);
    if (!to) return noRoute;
    current_ = to->library;
    return to->library->DBE_GetNextEntry(to->client, to->connection, mode, cursor, count, buffer);
  }

  std::int16_t DBE_CloseCursor(std::int16_t client, std::int16_t connection, std::string_view cursor) override {
    const Route* const to = find(client, connection);
    return to ? to->library->DBE_CloseCursor(to->client, to->connection, cursor) : noRoute;
  }

  std::int16_t DBE_Execute(std::int16_t client, std::int16_t connection, std::string_view statement) override {
    const Route* const to = find(client, connection);
    return to ? to->library->DBE_Execute(to->client, to->connection, statement) : noRoute;
  }

  std::int16_t DBE_Disconnect(std::int16_t client, std::int16_t connection) override {
    const Route* const to = find(client, connection);
    if (!to) return noRoute;
    const std::int16_t result = to->library->DBE_Disconnect(to->client, to->connection);
    to->library->DBE_CLEANUP(to->client);
    routes_.remove(connection);
    return result;
  }

  std::int16_t DBE_CLEANUP(std::int16_t client) override {
    routes_.removeIf([&](const Route& route) {
      // What is cleaned up in the library takes its connection along.
      return route.owner == client && (route.library->DBE_CLEANUP(route.client), true);
    });
    return clients_.remove(client) ? std::int16_t{0} : noRoute;
  }

  std::string DBE_COPYBUF(std::string_view row, std::int16_t field, std::size_t capacity) override {
    return current_->DBE_COPYBUF(row, field, capacity);
  }

  std::size_t TXT_BUFFERSIZE() override { return current_->TXT_BUFFERSIZE(); }

  std::string TXT_DBTOWIN(std::string_view date, std::string_view format) override {
    return current_->TXT_DBTOWIN(date, format);
  }

 private:
  static constexpr std::int16_t noRoute = -1;

  const Route* find(std::int16_t client, std::int16_t connection) {
    const Route* const route = routes_.find(connection);
    if (!route || route->owner != client) return nullptr;
    asked_ = route->library;
    return route;
  }

  std::unique_ptr<platform::DbeLibrary> embedded_;
  std::unique_ptr<platform::DbeLibrary> server_;
  platform::DbeLibrary* current_;  ///< whose rows are read: of the connection that was used last
  platform::DbeLibrary* asked_;    ///< what failed last, if anything did
  dbe::Handles<bool> clients_;
  dbe::Handles<Route> routes_;
};

}  // namespace

std::unique_ptr<platform::DbeLibrary> makeDbeChooser(std::unique_ptr<platform::DbeLibrary> embedded,
                                                     std::unique_ptr<platform::DbeLibrary> server) {
  return std::make_unique<DbeChooser>(std::move(embedded), std::move(server));
}

}  // namespace kartix::adapters
