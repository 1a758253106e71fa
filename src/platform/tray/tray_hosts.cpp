// SPDX-License-Identifier: MIT
#include "platform/tray/tray_hosts.h"

#include <xcb/xcb.h>

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QGuiApplication>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace quillo::tray {
namespace {

const QString kWatcherName = u"org.kde.StatusNotifierWatcher"_s;
const QString kWatcherPath = u"/StatusNotifierWatcher"_s;

struct Freed {
    void operator()(void* memory) const { std::free(memory); }
};
template <typename Reply>
using Owned = std::unique_ptr<Reply, Freed>;

// Null on a display that is not X11. Qt's own connection, because Qt selects there the event by
// which a tray announces itself.
xcb_connection_t* connectionOfQt() {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 != nullptr ? x11->connection() : nullptr;
}

xcb_atom_t atom(xcb_connection_t* connection, const QByteArray& name) {
    const Owned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        connection, xcb_intern_atom(connection, 0, uint16_t(name.size()), name.constData()),
        nullptr));
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

}  // namespace

TrayHosts::TrayHosts(QObject* parent) : QObject(parent) {
    xcb_connection_t* const connection = connectionOfQt();
    if (connection == nullptr) {
        return;
    }
    m_traySelection = atom(connection, "_NET_SYSTEM_TRAY_S0"_ba);
    m_managerAtom = atom(connection, "MANAGER"_ba);
    qApp->installNativeEventFilter(this);
    findTrayWindow();
}

TrayHosts::~TrayHosts() = default;

void TrayHosts::followBus(const std::optional<QDBusConnection>& bus) {
    m_bus = bus;
    if (!m_bus) {
        setNotifierHost(false);
        return;
    }
    m_watcher = std::make_unique<QDBusServiceWatcher>(kWatcherName, *m_bus,
                                                      QDBusServiceWatcher::WatchForOwnerChange);
    connect(m_watcher.get(), &QDBusServiceWatcher::serviceOwnerChanged, this,
            &TrayHosts::askForNotifierHost);
    for (const QString& signal :
         {u"StatusNotifierHostRegistered"_s, u"StatusNotifierHostUnregistered"_s}) {
        m_bus->connect(kWatcherName, kWatcherPath, kWatcherName, signal, this,
                       SLOT(askForNotifierHost()));
    }
    askForNotifierHost();
}

void TrayHosts::askForNotifierHost() {
    QDBusMessage question = QDBusMessage::createMethodCall(
        kWatcherName, kWatcherPath, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    question.setAutoStartService(false);
    question << kWatcherName << u"IsStatusNotifierHostRegistered"_s;
    const quint64 number = ++m_question;
    auto* answer = new QDBusPendingCallWatcher(m_bus->asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, number, answer] {
        answer->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        if (number == m_question) {
            setNotifierHost(reply.isValid() && reply.value().variant().toBool());
        }
    });
}

void TrayHosts::setNotifierHost(bool isThere) {
    if (m_hasNotifierHost != isThere) {
        m_hasNotifierHost = isThere;
        Q_EMIT changed();
    }
}

void TrayHosts::findTrayWindow() {
    xcb_connection_t* const connection = connectionOfQt();
    const Owned<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
        connection, xcb_get_selection_owner(connection, m_traySelection), nullptr));
    const xcb_window_t window = owner ? owner->owner : xcb_window_t(XCB_WINDOW_NONE);
    if (window != XCB_WINDOW_NONE) {
        // Qt asks for the same of this window when it docks an icon there.
        const uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
        xcb_change_window_attributes(connection, window, XCB_CW_EVENT_MASK, &mask);
        xcb_flush(connection);
    }
    if (window != m_trayWindow) {
        m_trayWindow = window;
        Q_EMIT changed();
    }
}

bool TrayHosts::nativeEventFilter(const QByteArray& type, void* message, qintptr* /*result*/) {
    if (type != "xcb_generic_event_t") {
        return false;
    }
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    const uint8_t kind = event->response_type & 0x7f;
    if (kind == XCB_CLIENT_MESSAGE) {
        const auto* told = reinterpret_cast<const xcb_client_message_event_t*>(event);
        if (told->type == m_managerAtom && told->data.data32[1] == m_traySelection) {
            QMetaObject::invokeMethod(this, &TrayHosts::findTrayWindow, Qt::QueuedConnection);
        }
    } else if (kind == XCB_DESTROY_NOTIFY && m_trayWindow != 0) {
        const auto* gone = reinterpret_cast<const xcb_destroy_notify_event_t*>(event);
        if (gone->window == m_trayWindow) {
            QMetaObject::invokeMethod(this, &TrayHosts::findTrayWindow, Qt::QueuedConnection);
        }
    }
    return false;
}

}  // namespace quillo::tray
