// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QPoint>
#include <QString>
#include <QUuid>
#include <optional>

class QMimeData;

namespace quillo {

/// Under which a dragged card names its clip: the UUID as UTF-8 text.
inline const QString kClipIdMimeType = QStringLiteral("com.quillohq.clip-id");

/// Where the pointer is beside a dragged card's picture: above it, so that one sees the target.
inline constexpr QPoint kClipDragHotSpot(-12, -16);

/// Adds the clip's name to what a card's drag carries.
void setClipOfDrag(QMimeData& data, const QUuid& clip);

/// None when no clip is named.
[[nodiscard]] std::optional<QUuid> clipOfDrag(const QMimeData& data);

}  // namespace quillo
