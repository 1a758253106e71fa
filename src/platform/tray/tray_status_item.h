// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QMenu>
#include <QSystemTrayIcon>
#include <memory>
#include <optional>

#include "platform/status_item.h"
#include "platform/tray/tray_hosts.h"

namespace quillo::tray {

/// The status item as StatusNotifierItem or, where the panel knows only that, in the tray of the
/// System Tray Protocol. Which of the two it is Qt decides once for the life of the process, when
/// its first icon is made; so none is made before a panel of either kind is there, and where both
/// are, StatusNotifierItem is taken.
class TrayStatusItem final : public StatusItem {
    Q_OBJECT

public:
    explicit TrayStatusItem(QObject* parent = nullptr);
    ~TrayStatusItem() override;

    /// Once the session bus is known; none when there is no such bus. No icon is shown before.
    void followBus(const std::optional<QDBusConnection>& bus) { m_hosts.followBus(bus); }

    void setImage(const QIcon& image) override;
    void setToolTip(const QString& text) override;
    void setMenu(const QList<StatusMenuItem>& items) override;
    [[nodiscard]] bool isAvailable() const override { return m_icon != nullptr; }
    [[nodiscard]] std::optional<QRect> iconRect() const override;

private:
    enum class Protocol { NotifierItem, TrayWindow };

    void hostsChanged();
    [[nodiscard]] bool hasHost();
    void showIcon();
    void fill(QMenu& menu, const QList<StatusMenuItem>& items);
    void addItem(QMenu& menu, const StatusMenuItem& item);

    TrayHosts m_hosts;
    std::optional<Protocol> m_protocol;  ///< What Qt took, once it had to.
    QIcon m_image;
    QString m_toolTip;
    QMenu m_menu;
    std::unique_ptr<QSystemTrayIcon> m_icon;
};

}  // namespace quillo::tray
