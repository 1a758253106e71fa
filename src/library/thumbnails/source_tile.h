// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QString>

class QPainter;
class QRect;

namespace quillo {

class CardTexts;
struct CardContent;

/// What stands for a program without an icon: the first letter of its name in upper case, empty
/// where the name has none.
[[nodiscard]] QString tileLetter(const QString& name);

/// The tile's colour: the same for the same identifier on every machine, and one that carries a
/// white letter at 4.5 : 1.
[[nodiscard]] QColor tileColor(const QString& identifier);

/// Both together on the place.
void paintSourceTile(QPainter& painter, CardTexts& texts, const QRect& place,
                     const CardContent& card);

}  // namespace quillo
