// SPDX-License-Identifier: MIT
#include "model/group_palette.h"

namespace quillo {
namespace {

constexpr GroupColor kPalette[] = {
    {"#FF6B6B", "Red"},    {"#FF8E72", "Orange"}, {"#FFD93D", "Yellow"},
    {"#6BCB77", "Green"},  {"#4D96FF", "Teal"},   {"#9B59B6", "Blue"},
    {"#E91E8C", "Purple"}, {"#00D9FF", "Pink"},   {"#95A5A6", "Grey"},
};

}  // namespace

std::span<const GroupColor> groupPalette() {
    return kPalette;
}

QString randomGroupColor(QRandomGenerator& random) {
    return QLatin1StringView(kPalette[random.bounded(quint32(std::size(kPalette)))].hex);
}

}  // namespace quillo
