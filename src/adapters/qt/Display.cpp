#include "adapters/qt/Display.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <QCoreApplication>
#include <QDir>
#include <QJsonArray>
#include <QJsonObject>
#include <QPluginLoader>
#include <QStringList>
#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <thread>
#include <utility>

namespace kartix::adapters::qt {
namespace {

/// A display on a machine that does not answer is given up after this time.
constexpr std::chrono::seconds patience{5};

/// Loads the plug-in, because one that is there but cannot be loaded would end the process later.
bool pluginLoads(const QString& platform) {
  QStringList folders = QCoreApplication::libraryPaths();
  for (QString& folder : folders) folder += QStringLiteral("/platforms");
  const QString own = qEnvironmentVariable("QT_QPA_PLATFORM_PLUGIN_PATH");
  if (!own.isEmpty()) folders.prepend(own);
  for (const QString& folder : std::as_const(folders)) {
    const QDir dir(folder);
    for (const QString& file : dir.entryList({QStringLiteral("*.so")}, QDir::Files)) {
      QPluginLoader plugin(dir.filePath(file));
      const QJsonArray keys = plugin.metaData()[QStringLiteral("MetaData")][QStringLiteral("Keys")].toArray();
      if (keys.contains(platform) && plugin.load()) return true;
    }
  }
  return false;
}

/// Nothing for a server that does not answer.
using XConnection = std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)>;

/// Connects to the X server, which checks the authorisation too. In a thread of its own, since a server on another
/// machine may keep the connection waiting.
bool xServerAnswers() {
  if (qEnvironmentVariableIsEmpty("DISPLAY")) return false;
  auto answer = std::make_shared<std::promise<XConnection>>();
  auto connected = answer->get_future();
  std::thread([answer] {
    XConnection connection(xcb_connect(nullptr, nullptr), xcb_disconnect);
    if (xcb_connection_has_error(connection.get()) != 0) connection.reset();
    answer->set_value(std::move(connection));
  }).detach();
  if (connected.wait_for(patience) != std::future_status::ready) return false;
  XConnection connection = connected.get();
  const bool good = connection != nullptr;
  // A server whose last client goes begins anew, and breaks off whoever comes meanwhile: this one stays until the
  // next question.
  static std::atomic<xcb_connection_t*> kept = nullptr;
  xcb_disconnect(kept.exchange(connection.release()));
  return good;
}

bool waylandAnswers() {
  QString name = qEnvironmentVariable("WAYLAND_DISPLAY");
  if (name.isEmpty()) return false;
  if (!name.startsWith(u'/')) name = qEnvironmentVariable("XDG_RUNTIME_DIR") + u'/' + name;
  const QByteArray path = name.toLocal8Bit();
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.size() >= static_cast<qsizetype>(sizeof address.sun_path)) return false;
  path.toStdString().copy(address.sun_path, sizeof address.sun_path - 1);
  const int handle = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  if (handle < 0) return false;
  const bool good = connect(handle, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  close(handle);
  return good;
}

/// Platforms that draw on devices of their own are left out: whether they can start is not to be found out safely.
bool displayAnswers(const QString& platform) {
  if (platform == u"xcb") return xServerAnswers();
  if (platform.startsWith(u"wayland")) return waylandAnswers();
  return platform == u"offscreen" || platform == u"minimal" || platform == u"vnc";
}

QStringList candidates() {
  const QString wished = qEnvironmentVariable("QT_QPA_PLATFORM");
  if (!wished.isEmpty()) return wished.split(u';', Qt::SkipEmptyParts);
  if (qEnvironmentVariable("XDG_SESSION_TYPE") == u"wayland")
    return {QStringLiteral("wayland"), QStringLiteral("xcb")};
  return {QStringLiteral("xcb"), QStringLiteral("wayland")};
}

}  // namespace

std::optional<std::string> usablePlatform() {
  for (const QString& candidate : candidates()) {
    const QString name = candidate.section(u':', 0, 0);
    if (displayAnswers(name) && pluginLoads(name)) return candidate.toStdString();
  }
  return std::nullopt;
}

bool visiblePlatform(const std::string& name) { return name != "offscreen" && name != "minimal"; }

}  // namespace kartix::adapters::qt
