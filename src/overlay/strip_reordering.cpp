// SPDX-License-Identifier: MIT
#include "overlay/strip_reordering.h"

#include <algorithm>

namespace quillo {

std::optional<OrderMove> moveOnDragOver(const QList<CardContent>& shown, const QUuid& dragged,
                                        int overIndex, bool isGroupShown) {
    const auto from = std::ranges::find(shown, dragged, &CardContent::clip);
    if (!isGroupShown || from == shown.end() || overIndex < 0 || overIndex >= shown.size()) {
        return std::nullopt;
    }
    const CardContent& over = shown.at(overIndex);
    if (over.clip == dragged || over.isPinned) {
        return std::nullopt;
    }
    return OrderMove{from - shown.begin(), overIndex};
}

}  // namespace quillo
