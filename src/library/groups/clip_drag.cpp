// SPDX-License-Identifier: MIT
#include "library/groups/clip_drag.h"

#include <QMimeData>

namespace quillo {

void setClipOfDrag(QMimeData& data, const QUuid& clip) {
    data.setData(kClipIdMimeType, clip.toString(QUuid::WithoutBraces).toUtf8());
}

std::optional<QUuid> clipOfDrag(const QMimeData& data) {
    const QUuid clip = QUuid::fromString(QString::fromUtf8(data.data(kClipIdMimeType)).trimmed());
    return clip.isNull() ? std::nullopt : std::optional(clip);
}

}  // namespace quillo
