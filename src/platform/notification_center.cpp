// SPDX-License-Identifier: MIT
#include "platform/notification_center.h"

#include <algorithm>

namespace quillo {

void NotificationCenter::post(QLatin1StringView name) {
    Q_EMIT posted(QString(name));
}

bool NotificationCenter::isObserved(QLatin1StringView name) const {
    const auto [first, last] = m_observers.equal_range(name);
    return std::any_of(first, last, [](const QPointer<QObject>& one) { return !one.isNull(); });
}

}  // namespace quillo
