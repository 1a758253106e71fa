// SPDX-License-Identifier: MIT
#include "app/updates/update_feed.h"

#include <QSysInfo>

namespace quillo {

UpdateFeed builtInUpdateFeed() {
    return {QUrl(QStringLiteral(QUILLO_UPDATE_FEED)),
            QByteArray::fromBase64(QByteArrayLiteral(QUILLO_UPDATE_KEY)),
            QStringLiteral(QUILLO_VERSION), QSysInfo::kernelVersion()};
}

}  // namespace quillo
