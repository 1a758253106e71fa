// SPDX-License-Identifier: MIT
#include "library/thumbnails/card_texts.h"

#include <QFontDatabase>
#include <QFontMetrics>
#include <cmath>

#include "appearance/fonts.h"

namespace quillo {
namespace {

// What ten cards on the screen and as many beside it need.
constexpr int kMostLines = 400;
constexpr int kMostBlocks = 80;
constexpr int kLongestLine = 300;
constexpr int kUnbounded = 10'000;

// A control character would break the line.
QString onOneLine(const QString& text) {
    QString plain = text.left(kLongestLine);
    for (QChar& c : plain) {
        c = c.isPrint() || c.isSurrogate() ? c : QChar(u' ');
    }
    return plain;
}

// Some fonts draw an x between digits as a multiplication sign; a format of its own keeps the
// letter a letter.
QList<QTextLayout::FormatRange> plainTimesSigns(const QString& text) {
    QList<QTextLayout::FormatRange> formats;
    for (qsizetype i = 1; i + 1 < text.size(); ++i) {
        if (text.at(i) == u'x' && text.at(i - 1).isDigit() && text.at(i + 1).isDigit()) {
            QTextCharFormat format;
            format.setProperty(QTextFormat::UserProperty, true);
            formats.append({int(i), 1, format});
        }
    }
    return formats;
}

}  // namespace

CardTexts::CardTexts(const QFont& font, int imageBadgePx)
    : m_base(font), m_imageBadgePx(imageBadgePx), m_lines(kMostLines), m_blocks(kMostBlocks) {
    makeFonts();
}

void CardTexts::setFont(const QFont& font) {
    if (font != m_base) {
        m_base = font;
        makeFonts();
    }
}

void CardTexts::setImageBadgePx(int pixels) {
    if (pixels != m_imageBadgePx) {
        m_imageBadgePx = pixels;
        makeFonts();
    }
}

void CardTexts::makeFonts() {
    m_lines.clear();
    m_blocks.clear();
    const auto set = [this](CardFont role, const QFont& font) { m_fonts[size_t(role)] = font; };
    set(CardFont::Body, sizedFont(m_base, 13, QFont::Normal));
    set(CardFont::Label, sizedFont(m_base, 12, QFont::DemiBold));
    set(CardFont::Age, sizedFont(m_base, 12, QFont::Normal));
    set(CardFont::Small, sizedFont(m_base, 11, QFont::Normal));
    set(CardFont::Digit, sizedFont(m_base, 11, QFont::Medium));
    set(CardFont::Title, sizedFont(m_base, 11, QFont::DemiBold));
    set(CardFont::Name, sizedFont(m_base, 12, QFont::DemiBold));
    set(CardFont::Letter, sizedFont(m_base, 10, QFont::Bold));
    set(CardFont::ImageBadge, sizedFont(m_base, m_imageBadgePx, QFont::Medium));
    set(CardFont::Fixed,
        sizedFont(QFontDatabase::systemFont(QFontDatabase::FixedFont), 13, QFont::Normal));
}

const CardTexts::Line& CardTexts::line(const LineKey& key) {
    if (const Line* kept = m_lines.object(key)) {
        return *kept;
    }
    const QFont& face = font(key.font);
    const QString text = QFontMetrics(face).elidedText(onOneLine(key.text), key.elide, key.width);
    auto* made = new Line{QTextLayout(text, face), {}};
    made->layout.setFormats(plainTimesSigns(text));
    made->layout.setCacheEnabled(true);
    made->layout.beginLayout();
    QTextLine only = made->layout.createLine();
    only.setLineWidth(kUnbounded);
    made->layout.endLayout();
    made->size = QSizeF(only.naturalTextWidth(), only.height());
    m_lines.insert(key, made);
    return *made;
}

int CardTexts::drawLine(QPainter& painter, const QRect& area, CardFont font, const QString& text,
                        Qt::Alignment alignment, Qt::TextElideMode elide) {
    if (text.isEmpty() || area.width() <= 0) {
        return 0;
    }
    const Line& laidOut = line({font, elide, area.width(), text});
    const qreal spare = area.width() - laidOut.size.width();
    const qreal x = alignment.testFlag(Qt::AlignRight)     ? spare
                    : alignment.testFlag(Qt::AlignHCenter) ? spare / 2
                                                           : 0;
    const QPointF corner(area.left() + x,
                         area.top() + (area.height() - laidOut.size.height()) / 2.0);
    laidOut.layout.draw(&painter, corner);
    return int(std::ceil(laidOut.size.width()));
}

int CardTexts::width(CardFont font, const QString& text) {
    return text.isEmpty()
               ? 0
               : int(std::ceil(line({font, Qt::ElideRight, kUnbounded, text}).size.width()));
}

const TextBlock* CardTexts::keptBlock(const BlockWish& wish) {
    const Block* kept = m_blocks.object({wish.clip, wish.font});
    const bool isSame = kept != nullptr && kept->wish.area == wish.area &&
                        kept->wish.formatsOf == wish.formatsOf && kept->wish.text == wish.text;
    return isSame ? &kept->laidOut : nullptr;
}

const TextBlock& CardTexts::keepBlock(const BlockWish& wish,
                                      const QList<QTextLayout::FormatRange>& formats) {
    auto* made = new Block{wish, TextBlock({wish.text, font(wish.font), wish.area, formats})};
    m_blocks.insert({wish.clip, wish.font}, made);
    return made->laidOut;
}

}  // namespace quillo
