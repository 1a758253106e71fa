// SPDX-License-Identifier: MIT
#pragma once

#include <QFont>
#include <QPainter>
#include <QRect>

#include "library/thumbnails/card_content.h"
#include "library/thumbnails/card_picture.h"
#include "library/thumbnails/card_texts.h"
#include "library/window/library_look.h"

namespace quillo {

/// What varies from one painting of a grid card to the next.
struct GridCardState {
    QString age;
    CardPicture picture;
    bool isSelected = false;
    bool isCurrent = false;  ///< It has the keyboard focus.
    bool isHovered = false;
};

/// Draws the cards of the library's grid: picture or text, a badge of the kind, and below a line
/// with source, age and pin. Keeps the texts that it laid out. Main thread.
class GridCardPainter final {
public:
    static constexpr int kFooterHeight = 32;

    explicit GridCardPainter(const QFont& font);

    void setLook(const LibraryLook& look);
    void setFont(const QFont& font) { m_texts.setFont(font); }
    void forgetTexts() { m_texts.forget(); }

    /// The ring of a selected card reaches 3 pixels beyond the area.
    void paint(QPainter& painter, const QRect& area, const CardContent& card,
               const GridCardState& state);
    /// What stands for a card that is not read yet.
    void paintBlank(QPainter& painter, const QRect& area) const;

    /// The card as CardPictures is to be asked for it: without what is not shown here.
    [[nodiscard]] static CardContent asked(CardContent card);
    /// The size that CardPictures is to be given: the same for cards of every width.
    [[nodiscard]] static QSize askedSize();

private:
    struct Face;

    void paintBody(const Face& face);
    void paintImage(const Face& face);
    void paintFile(const Face& face);
    void paintFilePicture(const Face& face, const QRect& place) const;
    void paintText(const Face& face);
    void paintBadge(const Face& face) const;
    void paintFooter(const Face& face);
    void paintSource(const Face& face, const QRect& place);
    void paintOutline(const Face& face) const;

    LibraryLook m_look;
    CardTexts m_texts;
};

}  // namespace quillo
