// SPDX-License-Identifier: MIT
#pragma once

namespace quillo {

class ClipStrip;

/// Makes the strip a list of cards for screen readers (AT-SPI, through QAccessible): each card an
/// item with its kind, text, age and source, that can be pressed, deleted and asked for its menu.
/// May be called again. Main thread.
void installStripAccessibility();

/// Tells screen readers which card has the focus now.
void announceSelection(ClipStrip& strip);
/// Tells screen readers that other cards are shown.
void announceCards(ClipStrip& strip);

}  // namespace quillo
