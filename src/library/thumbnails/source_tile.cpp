// SPDX-License-Identifier: MIT
#include "library/thumbnails/source_tile.h"

#include <algorithm>
#include <iterator>

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

}  // namespace quillo
