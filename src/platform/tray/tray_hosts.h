// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractNativeEventFilter>
#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <memory>
#include <optional>

namespace quillo::tray {

/// Knows which panels take icons at present: a host of StatusNotifierItem (freedesktop, the watcher
/// org.kde.StatusNotifierWatcher on the session bus), and one of the System Tray Protocol (the
/// owner of the selection _NET_SYSTEM_TRAY_S0). Follows both as they come and go; asks nothing in
/// between and never waits for the bus. Main thread.
class TrayHosts final : public QObject, private QAbstractNativeEventFilter {
    Q_OBJECT

public:
    explicit TrayHosts(QObject* parent = nullptr);
    ~TrayHosts() override;

    /// Once the session bus is known; none when there is no such bus.
    void followBus(const std::optional<QDBusConnection>& bus);

    /// None until it is known.
    [[nodiscard]] std::optional<bool> hasNotifierHost() const { return m_hasNotifierHost; }
    [[nodiscard]] bool hasTrayWindow() const { return m_trayWindow != 0; }

Q_SIGNALS:
    void changed();

private Q_SLOTS:
    void askForNotifierHost();

private:
    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;
    void setNotifierHost(bool isThere);
    void findTrayWindow();

    std::optional<QDBusConnection> m_bus;
    std::unique_ptr<QDBusServiceWatcher> m_watcher;
    std::optional<bool> m_hasNotifierHost;
    quint64 m_question = 0;  ///< Of several answers the newest counts.
    quint32 m_trayWindow = 0;
    quint32 m_traySelection = 0;
    quint32 m_managerAtom = 0;
};

}  // namespace quillo::tray
