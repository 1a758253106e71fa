// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QList>
#include <QTextLayout>

#include "appearance/contrast.h"
#include "platform/rich_text.h"

namespace quillo {

/// The beginning of a document, no more than a card can show, without blank lines before the text.
/// A background that lies under the whole text is the document's paper and is left out, and so is
/// white: the card is the paper here.
[[nodiscard]] StyledText cutForCard(const StyledText& document);

/// The text's own styling as it suits a card: sizes kept within what a card can carry, fixed-width
/// families as the system's fixed font, colours moved as far as it takes to be read on the ground.
[[nodiscard]] QList<QTextLayout::FormatRange> cardFormats(const StyledText& text,
                                                          const QColor& textColor,
                                                          const Ground& ground);

}  // namespace quillo
