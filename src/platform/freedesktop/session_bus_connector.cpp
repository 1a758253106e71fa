// SPDX-License-Identifier: MIT
#include "platform/freedesktop/session_bus_connector.h"

#include "platform/freedesktop/session_bus.h"

namespace quillo {

SessionBusConnector::SessionBusConnector(QObject* parent) : QObject(parent) {
    m_worker.setMaxThreadCount(1);
    m_worker.setExpiryTimeout(0);
}

SessionBusConnector::~SessionBusConnector() {
    m_worker.waitForDone();
}

void SessionBusConnector::start() {
    m_worker.start([this] {
        std::optional<QDBusConnection> bus;
        if (!sessionBusAddress().isEmpty()) {
            // Qt's own: its status icon uses it, and would otherwise connect on the main thread.
            bus = QDBusConnection::sessionBus();
        }
        if (bus && !bus->isConnected()) {
            bus.reset();
        }
        QMetaObject::invokeMethod(
            this, [this, bus] { Q_EMIT connected(bus); }, Qt::QueuedConnection);
    });
}

}  // namespace quillo
