// SPDX-License-Identifier: MIT
#pragma once

namespace quillo {

class ClipGrid;

/// Makes the grid a list of cards for screen readers (AT-SPI, through QAccessible): each card an
/// item with its kind, text, source and age, that can be selected, copied, deleted and asked for
/// its menu. Cards are made known as they are asked for, whatever the size of the history. May be
/// called again. Main thread.
void installClipGridAccessibility();

/// Tells screen readers which card has the focus now.
void announceCurrent(ClipGrid& grid);
/// Tells screen readers that other cards are shown.
void announceClips(ClipGrid& grid);

}  // namespace quillo
