// SPDX-License-Identifier: MIT
#pragma once

#include <QCache>
#include <QFont>
#include <QHash>
#include <QPainter>
#include <QRect>
#include <QTextLayout>
#include <QUuid>
#include <array>

#include "library/thumbnails/text_block.h"

namespace quillo {

/// The fonts of a card.
enum class CardFont : quint8 {
    Body,
    Label,
    Age,
    Small,
    Digit,
    Title,
    Name,
    Fixed,
    ImageBadge,
    Letter
};

/// The texts of cards, each laid out once and kept while it is shown often. Main thread.
class CardTexts final {
public:
    CardTexts(const QFont& font, int imageBadgePx);

    void setFont(const QFont& font);
    void setImageBadgePx(int pixels);
    /// Colours of formats are laid out with a text.
    void forgetBlocks() { m_blocks.clear(); }
    void forget() {
        m_blocks.clear();
        m_lines.clear();
    }

    [[nodiscard]] const QFont& font(CardFont font) const { return m_fonts[size_t(font)]; }

    /// One line in the painter's pen, vertically centred, elided where it is too long. Gives the
    /// width that it takes.
    int drawLine(QPainter& painter, const QRect& area, CardFont font, const QString& text,
                 Qt::Alignment alignment = Qt::AlignLeft, Qt::TextElideMode elide = Qt::ElideRight);
    [[nodiscard]] int width(CardFont font, const QString& text);

    /// The clip's laid-out text of that source; kept until the source is another one. One text of a
    /// clip is kept for each font.
    struct BlockWish {
        QUuid clip;
        CardFont font = CardFont::Body;
        QString text;
        QSize area;
        const void* formatsOf =
            nullptr;  ///< What the formats come from; another one lays out anew.
    };
    template <typename Formats>
    const TextBlock& block(const BlockWish& wish, Formats formats) {
        if (const TextBlock* kept = keptBlock(wish)) {
            return *kept;
        }
        return keepBlock(wish, formats());
    }
    const TextBlock& block(const BlockWish& wish) {
        return block(wish, [] { return QList<QTextLayout::FormatRange>(); });
    }

private:
    struct LineKey {
        CardFont font = CardFont::Body;
        Qt::TextElideMode elide = Qt::ElideRight;
        int width = 0;
        QString text;

        friend bool operator==(const LineKey&, const LineKey&) = default;
        friend size_t qHash(const LineKey& key, size_t seed = 0) noexcept {
            return qHashMulti(seed, int(key.font), int(key.elide), key.width, key.text);
        }
    };
    struct Line {
        QTextLayout layout;
        QSizeF size;
    };
    struct BlockKey {
        QUuid clip;
        CardFont font = CardFont::Body;

        friend bool operator==(const BlockKey&, const BlockKey&) = default;
        friend size_t qHash(const BlockKey& key, size_t seed = 0) noexcept {
            return qHashMulti(seed, key.clip, int(key.font));
        }
    };
    struct Block {
        BlockWish wish;
        TextBlock laidOut;
    };

    const Line& line(const LineKey& key);
    const TextBlock* keptBlock(const BlockWish& wish);
    const TextBlock& keepBlock(const BlockWish& wish,
                               const QList<QTextLayout::FormatRange>& formats);
    void makeFonts();

    QFont m_base;
    int m_imageBadgePx;
    std::array<QFont, 10> m_fonts;
    QCache<LineKey, Line> m_lines;
    QCache<BlockKey, Block> m_blocks;
};

}  // namespace quillo
