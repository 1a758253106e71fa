// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QString>
#include <QUuid>
#include <optional>

#include "base/clock.h"
#include "model/clip.h"
#include "model/filter_type.h"

namespace quillo {

/// What a card says, taken from its clip as plain values, so that painting reads no store.
struct CardContent {
    QUuid clip;
    QString kindLabel;
    QString symbol;
    ClipType kind = ClipType::Text;
    FilterType filter = FilterType::Text;  ///< What the clip is, finer than its kind.
    QString body;                          ///< Bounded: no more than a card can show.
    std::optional<QColor> swatch;          ///< For a colour clip.
    std::optional<Timestamp> createdAt;
    QString detail;  ///< Size, host or number of characters.
    QString source;  ///< The program that it came from; may be empty.
    bool hasImage = false;
    bool isPinned = false;
};

/// source is the display name of the clip's program, or empty.
[[nodiscard]] CardContent cardContentFor(const Clip& clip, const QString& source);

/// The age on a card: "now", "5 min", "3 h", "2 d", then the date. A moment in the future is now.
[[nodiscard]] QString ageText(Timestamp moment, Timestamp now);

}  // namespace quillo
