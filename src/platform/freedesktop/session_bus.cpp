// SPDX-License-Identifier: MIT
#include "platform/freedesktop/session_bus.h"

#include <QFileInfo>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace quillo {

QString sessionBusAddress() {
    QString stated = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    if (!stated.isEmpty()) {
        return stated;
    }
    const QString socket =
        QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation) + u"/bus"_s;
    return QFileInfo::exists(socket) ? u"unix:path="_s + socket : QString();
}

}  // namespace quillo
