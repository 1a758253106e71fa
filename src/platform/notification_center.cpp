// SPDX-License-Identifier: MIT
#include "platform/notification_center.h"

namespace quillo {

void NotificationCenter::post(QLatin1StringView name) {
    Q_EMIT posted(QString(name));
}

}  // namespace quillo
