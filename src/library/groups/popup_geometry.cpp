// SPDX-License-Identifier: MIT
#include "library/groups/popup_geometry.h"

#include <algorithm>

namespace quillo {
namespace {

PopupSide opposite(PopupSide side) {
    switch (side) {
        case PopupSide::Below:
            return PopupSide::Above;
        case PopupSide::Above:
            return PopupSide::Below;
        case PopupSide::Left:
            return PopupSide::Right;
        case PopupSide::Right:
            break;
    }
    return PopupSide::Left;
}

bool isVertical(PopupSide side) {
    return side == PopupSide::Below || side == PopupSide::Above;
}

// QRect's own right() and bottom() lie one inside.
int endX(const QRect& rect) {
    return rect.x() + rect.width();
}

int endY(const QRect& rect) {
    return rect.y() + rect.height();
}

int alongAnchor(int start, int anchorLength, int length, PopupAlignment alignment) {
    return alignment == PopupAlignment::Leading ? start : start + (anchorLength - length) / 2;
}

QPoint origin(const PopupRequest& request, PopupSide side, const QSize& size) {
    const QRect& anchor = request.anchor;
    const int x = alongAnchor(anchor.x(), anchor.width(), size.width(), request.alignment);
    const int y = alongAnchor(anchor.y(), anchor.height(), size.height(), request.alignment);
    switch (side) {
        case PopupSide::Below:
            return {x, endY(anchor) + request.gap};
        case PopupSide::Above:
            return {x, anchor.y() - request.gap - size.height()};
        case PopupSide::Left:
            return {anchor.x() - request.gap - size.width(), y};
        case PopupSide::Right:
            break;
    }
    return {endX(anchor) + request.gap, y};
}

bool fits(const QRect& rect, const QRect& bounds, PopupSide side) {
    return isVertical(side) ? rect.y() >= bounds.y() && endY(rect) <= endY(bounds)
                            : rect.x() >= bounds.x() && endX(rect) <= endX(bounds);
}

int movedInto(int start, int length, int boundsStart, int boundsLength) {
    return std::max(boundsStart, std::min(start, boundsStart + boundsLength - length));
}

QRect movedInto(const QRect& rect, const QRect& bounds) {
    return {QPoint(movedInto(rect.x(), rect.width(), bounds.x(), bounds.width()),
                   movedInto(rect.y(), rect.height(), bounds.y(), bounds.height())),
            rect.size()};
}

}  // namespace

PopupPlace placePopup(const PopupRequest& request) {
    const QSize size = request.wanted.boundedTo(request.bounds.size());
    const QRect wanted(origin(request, request.side, size), size);
    const QRect other(origin(request, opposite(request.side), size), size);
    const bool isBetterThere =
        !fits(wanted, request.bounds, request.side) && fits(other, request.bounds, request.side);
    return {movedInto(isBetterThere ? other : wanted, request.bounds),
            size.height() < request.wanted.height()};
}

}  // namespace quillo
