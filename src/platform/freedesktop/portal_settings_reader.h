// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QVariant>

namespace quillo {

/// Asks the desktop portal for the colour scheme and follows it. Lives on a thread that may wait
/// for the bus.
class PortalSettingsReader final : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;
    ~PortalSettingsReader() override;

    /// Connects to the session bus and asks; does nothing where there is no bus.
    void start();

Q_SIGNALS:
    /// A value of color-scheme came.
    void valueRead(uint value);

private Q_SLOTS:
    void settingChanged(const QDBusMessage& signal);

private:
    void ask(const QString& method);
    void receive(const QDBusMessage& reply, const QString& method);
    void report(const QVariant& value);

    QDBusConnection m_bus{QString()};
};

}  // namespace quillo
