// SPDX-License-Identifier: MIT
#include "platform/freedesktop/dbus_application_service.h"

#include <QDBusError>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDeadlineTimer>
#include <thread>

#include "base/logging.h"
#include "platform/freedesktop/application_adaptor.h"
#include "platform/freedesktop/session_bus.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcService, "ApplicationService")

constexpr std::chrono::milliseconds kBetweenAttempts{50};
// Where the bus may not start a program for the name.
constexpr QLatin1StringView kNoOwner{"org.freedesktop.DBus.Error.NameHasNoOwner"};

std::optional<ApplicationAction> actionOfName(const QString& name) {
    const struct {
        QString name;
        ApplicationAction action;
    } known[] = {{u"overlay"_s, ApplicationAction::ShowOverlay},
                 {u"library"_s, ApplicationAction::ShowLibrary},
                 {u"settings"_s, ApplicationAction::ShowSettings}};
    for (const auto& entry : known) {
        if (entry.name == name) {
            return entry.action;
        }
    }
    return std::nullopt;
}

}  // namespace

ApplicationAdaptor::ApplicationAdaptor(ApplicationService* service)
    : QDBusAbstractAdaptor(service), m_service(service) {}

void ApplicationAdaptor::Activate(const QVariantMap& /*platform_data*/) {
    Q_EMIT m_service->requested(ApplicationAction::ShowLibrary);
}

void ApplicationAdaptor::Open(const QStringList& /*uris*/, const QVariantMap& platform_data) {
    Activate(platform_data);
}

void ApplicationAdaptor::ActivateAction(const QString& action_name,
                                        const QVariantList& /*parameter*/,
                                        const QVariantMap& /*platform_data*/,
                                        const QDBusMessage& call) {
    const std::optional<ApplicationAction> action = actionOfName(action_name);
    if (!action) {
        call.setDelayedReply(true);
        QDBusConnection::sessionBus().send(
            call.createErrorReply(QDBusError::InvalidArgs, u"There is no such action"_s));
        return;
    }
    Q_EMIT m_service->requested(*action);
}

DBusApplicationService::DBusApplicationService(QObject* parent) : ApplicationService(parent) {
    new ApplicationAdaptor(this);
}

DBusApplicationService::~DBusApplicationService() {
    if (m_bus) {
        m_bus->unregisterService(kApplicationId);
        m_bus->unregisterObject(kApplicationPath);
    }
}

void DBusApplicationService::offerOn(const QDBusConnection& bus) {
    m_bus = bus;
    // The object first: whoever waits for the name calls at once.
    if (!m_bus->registerObject(kApplicationPath, this)) {
        qCCritical(lcService, "The object is taken on the session bus");
    }
    QDBusMessage request =
        QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                       u"org.freedesktop.DBus"_s, u"RequestName"_s);
    constexpr uint kDoNotQueue = 4;
    request << QString(kApplicationId) << kDoNotQueue;
    auto* answer = new QDBusPendingCallWatcher(m_bus->asyncCall(request), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [answer] {
        answer->deleteLater();
        const QDBusPendingReply<uint> reply = *answer;
        constexpr uint kPrimaryOwner = 1;
        if (!reply.isValid() || reply.value() != kPrimaryOwner) {
            qCCritical(lcService, "Another process answers on the session bus in our place");
        }
    });
}

Result<void> activateRunningApplication(std::chrono::milliseconds patience) {
    if (sessionBusAddress().isEmpty()) {
        return failure(ErrorKind::Failed, u"there is no session bus"_s);
    }
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        return failure(ErrorKind::Failed, bus.lastError().message());
    }
    QDBusMessage call = QDBusMessage::createMethodCall(
        kApplicationId, kApplicationPath, u"org.freedesktop.Application"_s, u"Activate"_s);
    call.setAutoStartService(false);
    call << QVariantMap();
    const QDeadlineTimer deadline(patience);
    QDBusMessage reply = bus.call(call, QDBus::Block, int(deadline.remainingTime()));
    // One that is just starting gets its name a moment after its lock. Nothing else happens in a
    // process that only makes this call.
    while (reply.errorName() == kNoOwner && !deadline.hasExpired()) {
        std::this_thread::sleep_for(kBetweenAttempts);
        reply = bus.call(call, QDBus::Block, int(deadline.remainingTime()));
    }
    if (reply.type() != QDBusMessage::ReplyMessage) {
        return failure(ErrorKind::Failed, reply.errorMessage());
    }
    return {};
}

}  // namespace quillo
