// SPDX-License-Identifier: MIT
#pragma once

#include <QFont>
#include <QPainter>
#include <QRect>
#include <QString>
#include <memory>
#include <optional>

#include "appearance/panel_look.h"
#include "library/thumbnails/card_content.h"
#include "library/thumbnails/card_picture.h"

namespace quillo {

enum class CardButton : quint8 { None, Delete, Group };

/// What varies from one painting of a card to the next.
struct CardState {
    int index = -1;  ///< The digit on its badge less one; none when negative.
    QString age;
    CardPicture picture;
    bool isHovered = false;
    bool showsDelete = false;  ///< The button stands in the header, in place of age and pin.
    bool showsGroup = false;
    CardButton hoveredButton = CardButton::None;
    bool isDropTarget = false;
};

/// Draws cards of 280 × 240 logical pixels, sharp at every scale. Keeps the texts that it laid out,
/// so a window keeps its painter too; a repainted card then costs a fraction of its first painting.
/// Main thread.
class CardPainter final {
public:
    /// imageBadgePx is the font size of an image's badges.
    CardPainter(const PanelLook& look, const QFont& font, int imageBadgePx = 10);
    ~CardPainter();
    CardPainter(const CardPainter&) = delete;
    CardPainter& operator=(const CardPainter&) = delete;

    void setLook(const PanelLook& look);
    void setFont(const QFont& font);
    void setImageBadgePx(int pixels);
    /// Drops the texts that are kept, as when clips were deleted.
    void forgetTexts();

    /// Draws one card into area, in the painter's logical coordinates.
    void paint(QPainter& painter, const QRect& area, const CardContent& card,
               const CardState& state) const;

    /// The part of a card that shows its picture or text.
    [[nodiscard]] static QRect bodyArea(const QRect& card);

    // Where the buttons of the header are hit, 24 × 24 each.
    [[nodiscard]] static QRect deleteButtonArea(const QRect& card);
    [[nodiscard]] static QRect groupButtonArea(const QRect& card);
    /// The button of a card at a point, among those that its state shows.
    [[nodiscard]] static CardButton buttonAt(const QRect& card, const CardState& state,
                                             QPoint point);

private:
    class Private;
    std::unique_ptr<Private> d;
};

/// The font size of an image's badges, in pixels, by the setting "imageBadgeSize".
[[nodiscard]] int imageBadgePx(const std::optional<QString>& setting);

}  // namespace quillo
