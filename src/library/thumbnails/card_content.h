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

/// What a card's body shows. A Link whose title and image have not come shows its text, and so
/// does a RichText that was not read yet.
enum class CardPreview : quint8 { Text, Swatch, Link, Image, File, RichText };

/// What a card says, taken from its clip as plain values, so that painting reads no store.
struct CardContent {
    QUuid clip;
    QString kindLabel;
    QString symbol;
    ClipType kind = ClipType::Text;
    FilterType filter = FilterType::Text;  ///< What the clip is, finer than its kind.
    CardPreview preview = CardPreview::Text;
    QString body;                  ///< Bounded: no more than a card can show.
    QString title;                 ///< A link's title or a file's name; may be empty.
    QString address;               ///< A link's or a file's address; empty for other kinds.
    std::optional<QColor> swatch;  ///< For a colour clip.
    std::optional<Timestamp> createdAt;
    QString detail;            ///< Size, host or number of characters.
    QString sizeText;          ///< An image's or a file's size; empty when unknown.
    QString source;            ///< The name of the program that it came from; may be empty.
    QString sourceIdentifier;  ///< That program's desktop entry; may be empty.
    bool isPinned = false;     ///< In a group, what the group says replaces it.
};

/// source is the display name of the clip's program, or empty. Loads no heavy attribute and copies
/// no long text.
[[nodiscard]] CardContent cardContentFor(const Clip& clip, const QString& source);

/// The age on a card: "now", "5 min", "3 h", "2 d", then the date. A moment in the future is now.
[[nodiscard]] QString ageText(Timestamp moment, Timestamp now);

/// As people count: a pair of surrogates is one.
[[nodiscard]] qsizetype characterCount(const QString& text);

}  // namespace quillo
