// SPDX-License-Identifier: MIT
#include "platform/freedesktop/portal_settings_reader.h"

#include <QDBusError>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

#include "base/logging.h"
#include "platform/freedesktop/session_bus.h"

namespace quillo {

using namespace Qt::StringLiterals;

namespace {

QUILLO_LOG_CATEGORY(lcAppearance, "SystemAppearance")

const QString kConnection = u"quillo-appearance"_s;
const QString kService = u"org.freedesktop.portal.Desktop"_s;
const QString kPath = u"/org/freedesktop/portal/desktop"_s;
const QString kInterface = u"org.freedesktop.portal.Settings"_s;
const QString kNamespace = u"org.freedesktop.appearance"_s;
const QString kKey = u"color-scheme"_s;

// "Read" wraps the value in one variant more than "ReadOne".
QVariant unwrapped(QVariant value) {
    while (value.metaType() == QMetaType::fromType<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    return value;
}

}  // namespace

PortalSettingsReader::~PortalSettingsReader() {
    m_bus = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(kConnection);
}

void PortalSettingsReader::start() {
    const QString address = sessionBusAddress();
    if (address.isEmpty()) {
        return;
    }
    m_bus = QDBusConnection::connectToBus(address, kConnection);
    if (!m_bus.isConnected()) {
        qCInfo(lcAppearance, "no session bus: %s", qUtf8Printable(m_bus.lastError().message()));
        return;
    }
    const bool isFollowed =
        m_bus.connect(QString(), kPath, kInterface, u"SettingChanged"_s, {kNamespace, kKey},
                      QString(), this, SLOT(settingChanged(QDBusMessage)));
    if (!isFollowed) {
        qCWarning(lcAppearance, "the portal's changes cannot be followed");
    }
    auto* portal =
        new QDBusServiceWatcher(kService, m_bus, QDBusServiceWatcher::WatchForRegistration, this);
    connect(portal, &QDBusServiceWatcher::serviceRegistered, this, [this] { ask(u"ReadOne"_s); });
    ask(u"ReadOne"_s);
}

void PortalSettingsReader::ask(const QString& method) {
    QDBusMessage call = QDBusMessage::createMethodCall(kService, kPath, kInterface, method);
    call.setArguments({kNamespace, kKey});
    auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, method] {
        receive(QDBusPendingReply<>(*watcher).reply(), method);
        watcher->deleteLater();
    });
}

void PortalSettingsReader::receive(const QDBusMessage& reply, const QString& method) {
    if (reply.type() == QDBusMessage::ReplyMessage) {
        report(reply.arguments().value(0));
    } else if (QDBusError(reply).type() == QDBusError::UnknownMethod && method == u"ReadOne"_s) {
        // Portals before version 2 of the interface.
        ask(u"Read"_s);
    } else {
        qCDebug(lcAppearance, "the portal states no colour scheme: %s",
                qUtf8Printable(reply.errorMessage()));
    }
}

void PortalSettingsReader::settingChanged(const QDBusMessage& signal) {
    const QVariantList arguments = signal.arguments();
    if (arguments.value(0) == kNamespace && arguments.value(1) == kKey) {
        report(arguments.value(2));
    }
}

void PortalSettingsReader::report(const QVariant& value) {
    const QVariant plain = unwrapped(value);
    if (plain.metaType() == QMetaType::fromType<uint>()) {
        Q_EMIT valueRead(plain.toUInt());
    }
}

}  // namespace quillo
