// SPDX-License-Identifier: MIT
#include "platform/tray/tray_status_item.h"

#include "base/logging.h"

namespace quillo::tray {
namespace {

QUILLO_LOG_CATEGORY(lcTray, "StatusItem")

}  // namespace

TrayStatusItem::TrayStatusItem(QObject* parent) : StatusItem(parent) {
    connect(&m_hosts, &TrayHosts::changed, this, &TrayStatusItem::hostsChanged);
}

TrayStatusItem::~TrayStatusItem() = default;

void TrayStatusItem::hostsChanged() {
    const bool isWanted = hasHost();
    if (isWanted == isAvailable()) {
        return;
    }
    if (isWanted) {
        showIcon();
    } else {
        m_icon.reset();
    }
    qCInfo(lcTray, "Status item: %s",
           !isWanted                              ? "no panel takes it"
           : m_protocol == Protocol::NotifierItem ? "StatusNotifierItem"
                                                  : "system tray");
    Q_EMIT availabilityChanged();
}

bool TrayStatusItem::hasHost() {
    const std::optional<bool> notifier = m_hosts.hasNotifierHost();
    if (!notifier) {
        return false;
    }
    if (!m_protocol && (*notifier || m_hosts.hasTrayWindow())) {
        m_protocol = *notifier ? Protocol::NotifierItem : Protocol::TrayWindow;
    }
    return m_protocol == Protocol::NotifierItem ? *notifier : m_protocol && m_hosts.hasTrayWindow();
}

void TrayStatusItem::showIcon() {
    m_icon = std::make_unique<QSystemTrayIcon>();
    m_icon->setIcon(m_image);
    m_icon->setToolTip(m_toolTip);
    m_icon->setContextMenu(&m_menu);
    connect(m_icon.get(), &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                // The second of two quick clicks is told otherwise: both together open once.
                if (reason == QSystemTrayIcon::Trigger) {
                    Q_EMIT activated();
                }
            });
    m_icon->show();
}

void TrayStatusItem::setImage(const QIcon& image) {
    m_image = image;
    if (m_icon) {
        m_icon->setIcon(image);
    }
}

void TrayStatusItem::setToolTip(const QString& text) {
    m_toolTip = text;
    if (m_icon) {
        m_icon->setToolTip(text);
    }
}

void TrayStatusItem::setMenu(const QList<StatusMenuItem>& items) {
    // The menu itself stays: a panel goes on showing the one that it was given first.
    m_menu.clear();
    qDeleteAll(m_menu.findChildren<QMenu*>(Qt::FindDirectChildrenOnly));
    fill(m_menu, items);
}

void TrayStatusItem::fill(QMenu& menu, const QList<StatusMenuItem>& items) {
    for (const StatusMenuItem& item : items) {
        if (item.title.isEmpty()) {
            menu.addSeparator();
        } else if (!item.submenu.isEmpty()) {
            QMenu* const inner = menu.addMenu(item.icon, item.title);
            fill(*inner, item.submenu);
        } else {
            addItem(menu, item);
        }
    }
}

void TrayStatusItem::addItem(QMenu& menu, const StatusMenuItem& item) {
    QAction* const action = menu.addAction(item.icon, item.title);
    action->setShortcut(item.key);
    action->setIconVisibleInMenu(true);
    action->setEnabled(bool(item.action));
    if (item.mark != StatusMenuItem::Mark::None) {
        action->setCheckable(true);
        action->setChecked(item.mark == StatusMenuItem::Mark::Checked);
    }
    connect(
        action, &QAction::triggered, this,
        [item] {
            if (item.action) {
                item.action(item);
            }
        },
        Qt::QueuedConnection);
}

std::optional<QRect> TrayStatusItem::iconRect() const {
    const QRect rect = m_icon ? m_icon->geometry() : QRect();
    return rect.isEmpty() ? std::nullopt : std::optional(rect);
}

}  // namespace quillo::tray
