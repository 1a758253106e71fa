// SPDX-License-Identifier: MIT
#include "library/thumbnails/source_tile.h"

#include <QPainter>
#include <algorithm>
#include <iterator>

#include "library/thumbnails/card_content.h"
#include "library/thumbnails/card_texts.h"

namespace quillo {
namespace {

constexpr QRgb kColors[] = {0xff2a7a63, 0xff333333, 0xffb8501c, 0xff6654c9, 0xff1b62c4, 0xffa03a7a,
                            0xffc03a3a, 0xff1f7388, 0xff4f7526, 0xff7a5a36, 0xff4a5b78};

}  // namespace

QString tileLetter(const QString& name) {
    const auto letter = std::ranges::find_if(name, [](QChar c) { return c.isLetterOrNumber(); });
    return letter == name.end() ? QString() : QString(letter->toUpper());
}

// FNV-1a; Qt's own hash differs from run to run.
QColor tileColor(const QString& identifier) {
    quint32 hash = 2'166'136'261U;
    for (const char byte : identifier.toUtf8()) {
        hash = (hash ^ quint8(byte)) * 16'777'619U;
    }
    return QColor::fromRgb(kColors[hash % std::size(kColors)]);
}

void paintSourceTile(QPainter& painter, CardTexts& texts, const QRect& place,
                     const CardContent& card) {
    const QString& identifier = card.sourceIdentifier;
    painter.setPen(Qt::NoPen);
    painter.setBrush(tileColor(identifier.isEmpty() ? card.source : identifier));
    painter.drawRoundedRect(place, 4, 4);
    painter.setPen(Qt::white);
    texts.drawLine(painter, place, CardFont::Letter, tileLetter(card.source), Qt::AlignHCenter);
}

}  // namespace quillo
