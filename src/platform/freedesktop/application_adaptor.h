// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusAbstractAdaptor>
#include <QDBusContext>
#include <QDBusMessage>
#include <QStringList>
#include <QVariantMap>

#include "platform/application_service.h"

namespace quillo {

/// The methods of org.freedesktop.Application as they come from the bus. A part of
/// DBusApplicationService.
class ApplicationAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit ApplicationAdaptor(ApplicationService* service);

public Q_SLOTS:
    void Activate(const QVariantMap& platform_data);
    /// Nothing of ours opens files: shows what Activate shows.
    void Open(const QStringList& uris, const QVariantMap& platform_data);
    void ActivateAction(const QString& action_name, const QVariantList& parameter,
                        const QVariantMap& platform_data, const QDBusMessage& call);

private:
    ApplicationService* m_service;
};

}  // namespace quillo
