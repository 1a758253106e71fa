// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

namespace quillo {

/// Where updates come from and what they are held against.
struct UpdateFeed {
    QUrl address;          ///< Empty in a distribution's build, whose package manager updates it.
    QByteArray publicKey;  ///< 32 bytes.
    QString runningVersion;
    QString systemVersion;  ///< The kernel's.
};

/// What this build was made with.
[[nodiscard]] UpdateFeed builtInUpdateFeed();

}  // namespace quillo
