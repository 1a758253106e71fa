// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QThreadPool>
#include <optional>

namespace quillo {

/// Connects the process to the session bus without anybody waiting for it. Main thread.
class SessionBusConnector final : public QObject {
    Q_OBJECT

public:
    explicit SessionBusConnector(QObject* parent = nullptr);
    /// Waits for an attempt that is under way.
    ~SessionBusConnector() override;

    /// Begins; connected() follows from the event loop.
    void start();

Q_SIGNALS:
    /// Once, with none where there is no session bus. The connection may be used on this thread.
    void connected(const std::optional<QDBusConnection>& bus);

private:
    QThreadPool m_worker;
};

}  // namespace quillo
