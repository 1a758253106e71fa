// SPDX-License-Identifier: MIT
#include "platform/freedesktop/network_path_monitor.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFileInfo>
#include <deque>
#include <memory>
#include <utility>

#include "platform/freedesktop/routing_table.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

const QString kService = u"org.freedesktop.NetworkManager"_s;
const QString kPath = u"/org/freedesktop/NetworkManager"_s;

// NMState and NMConnectivityState of the service's D-Bus interface.
constexpr uint kConnectedSite = 60;
constexpr uint kBehindPortal = 2;
constexpr uint kFullyConnected = 4;

QString connectionName(const void* owner) {
    return u"quillo-network-%1"_s.arg(quintptr(owner));
}

// Without a socket there is no bus; trying to connect would only write to the log.
QString systemBusAddress() {
    QString stated = qEnvironmentVariable("DBUS_SYSTEM_BUS_ADDRESS");
    if (!stated.isEmpty()) {
        return stated;
    }
    const QString socket = u"/run/dbus/system_bus_socket"_s;
    return QFileInfo::exists(socket) ? u"unix:path="_s + socket : QString();
}

QDBusMessage questionForProperties() {
    QDBusMessage call = QDBusMessage::createMethodCall(
        kService, kPath, u"org.freedesktop.DBus.Properties"_s, u"GetAll"_s);
    call.setArguments({kService});
    call.setAutoStartService(false);
    return call;
}

}  // namespace

std::optional<bool> pathFromNetworkManager(uint state, uint connectivity) {
    if (connectivity == kBehindPortal) {
        return false;
    }
    if (state >= kConnectedSite || connectivity == kFullyConnected) {
        return true;
    }
    return std::nullopt;
}

class NetworkPathMonitor::Worker final : public QObject {
public:
    explicit Worker(const Options& options) : m_options(options) {}
    ~Worker() override {
        m_bus = QDBusConnection(QString());
        QDBusConnection::disconnectFromBus(connectionName(this));
    }
    Q_DISABLE_COPY_MOVE(Worker)

    /// Any thread.
    void add(std::chrono::milliseconds patience, Callback callback) {
        {
            const std::lock_guard lock(m_mutex);
            m_waiting.emplace_back(patience, std::move(callback));
        }
        QMetaObject::invokeMethod(this, [this] { checkNext(); }, Qt::QueuedConnection);
    }

private:
    using Job = std::pair<std::chrono::milliseconds, Callback>;

    void checkNext() {
        std::unique_lock lock(m_mutex);
        Job job = std::move(m_waiting.front());
        m_waiting.pop_front();
        lock.unlock();
        check(job.first, std::move(job.second));
    }

    void check(std::chrono::milliseconds patience, Callback callback) {
        if (!connectToBus()) {
            callback(hasRoute());
            return;
        }
        auto* watcher = new QDBusPendingCallWatcher(
            m_bus.asyncCall(questionForProperties(), int(patience.count())), this);
        // What is connected is copied, the callback cannot be.
        auto shared = std::make_shared<Callback>(std::move(callback));
        connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, shared] {
            (*shared)(isSatisfied(*watcher));
            watcher->deleteLater();
        });
    }

    [[nodiscard]] bool hasRoute() const {
        return m_options.hasRoute ? m_options.hasRoute() : hasDefaultRoute();
    }

    [[nodiscard]] bool connectToBus() {
        if (!m_bus.isConnected()) {
            const QString address =
                m_options.busAddress.isEmpty() ? systemBusAddress() : m_options.busAddress;
            if (address.isEmpty()) {
                return false;
            }
            QDBusConnection::disconnectFromBus(connectionName(this));
            m_bus = QDBusConnection::connectToBus(address, connectionName(this));
        }
        return m_bus.isConnected();
    }

    [[nodiscard]] bool isSatisfied(const QDBusPendingReply<QVariantMap>& reply) const {
        if (reply.isError()) {
            return hasRoute();
        }
        const QVariantMap properties = reply.value();
        return pathFromNetworkManager(properties.value(u"State"_s).toUInt(),
                                      properties.value(u"Connectivity"_s).toUInt())
            .value_or(hasRoute());
    }

    const Options& m_options;
    QDBusConnection m_bus{QString()};
    std::mutex m_mutex;
    std::deque<Job> m_waiting;  ///< Guarded by the mutex.
};

NetworkPathMonitor::NetworkPathMonitor() : NetworkPathMonitor(Options{}) {}

NetworkPathMonitor::NetworkPathMonitor(Options options) : m_options(std::move(options)) {
    m_thread.setObjectName(u"network state"_s);
}

NetworkPathMonitor::~NetworkPathMonitor() {
    m_thread.quit();
    m_thread.wait();
}

NetworkPathMonitor::Worker* NetworkPathMonitor::worker() {
    const std::lock_guard lock(m_mutex);
    if (m_worker == nullptr) {
        m_worker = new Worker(m_options);
        m_worker->moveToThread(&m_thread);
        QObject::connect(&m_thread, &QThread::finished, m_worker, &QObject::deleteLater);
        m_thread.start();
    }
    return m_worker;
}

void NetworkPathMonitor::check(std::chrono::milliseconds patience, Callback callback) {
    worker()->add(patience, std::move(callback));
}

}  // namespace quillo
