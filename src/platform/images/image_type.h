// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayView>
#include <QString>

namespace quillo {

/// See ImageCodec::mimeType.
[[nodiscard]] QString imageMimeType(QByteArrayView bytes);

}  // namespace quillo
