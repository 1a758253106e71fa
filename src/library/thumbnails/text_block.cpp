// SPDX-License-Identifier: MIT
#include "library/thumbnails/text_block.h"

#include <algorithm>
#include <cmath>

namespace quillo {
namespace {

// Lines stand a little further apart than the font asks for.
constexpr qreal kLineSpacing = 1.13;
constexpr qreal kTabWidthPx = 28;

QTextOption wrappingOption() {
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setTabStopDistance(kTabWidthPx);
    return option;
}

QList<QTextLayout::FormatRange> formatsWithin(const QList<QTextLayout::FormatRange>& formats,
                                              qsizetype start, qsizetype length) {
    QList<QTextLayout::FormatRange> within;
    for (const QTextLayout::FormatRange& range : formats) {
        const qsizetype first = std::max<qsizetype>(range.start, start);
        const qsizetype end = std::min<qsizetype>(range.start + range.length, start + length);
        if (first < end) {
            within.append({int(first - start), int(end - first), range.format});
        }
    }
    return within;
}

std::shared_ptr<QTextLayout> makeLayout(const TextBlockSource& source, const QString& text,
                                        qsizetype start) {
    auto layout = std::make_shared<QTextLayout>(text, source.font);
    layout->setTextOption(wrappingOption());
    layout->setFormats(formatsWithin(source.formats, start, text.size()));
    layout->setCacheEnabled(true);
    return layout;
}

qreal spacedHeight(const QTextLine& line) {
    return std::round(line.height() * kLineSpacing);
}

bool fits(QTextLayout& layout, int width) {
    layout.beginLayout();
    QTextLine line = layout.createLine();
    line.setLineWidth(1e6);
    layout.endLayout();
    return line.naturalTextWidth() <= width;
}

}  // namespace

TextBlock::TextBlock(const TextBlockSource& source) {
    // What ends a text unseen is not what does not fit.
    qsizetype length = source.text.size();
    while (length > 0 && source.text[length - 1].isSpace()) {
        --length;
    }
    qsizetype start = 0;
    while (start <= length) {
        const qsizetype feed = source.text.indexOf(u'\n', start);
        const qsizetype end = feed < 0 ? length : std::min(feed, length);
        if (!layParagraph(source, start, end - start)) {
            elideLastLine(source);
            return;
        }
        start = end + 1;
    }
}

// False when a line did not fit.
bool TextBlock::layParagraph(const TextBlockSource& source, qsizetype start, qsizetype length) {
    const auto layout = makeLayout(source, source.text.mid(start, length), start);
    bool isWhole = true;
    layout->beginLayout();
    for (int number = 0;; ++number) {
        QTextLine line = layout->createLine();
        if (!line.isValid()) {
            break;
        }
        line.setLineWidth(source.area.width());
        const qreal height = spacedHeight(line);
        if (m_height + height > source.area.height()) {
            isWhole = false;
            break;
        }
        line.setPosition({});
        m_lines.push_back({layout, number, m_height + (height - line.height()) / 2});
        m_lastStart = start + line.textStart();
        m_height += int(height);
    }
    layout->endLayout();
    return isWhole;
}

void TextBlock::elideLastLine(const TextBlockSource& source) {
    if (m_lines.empty()) {
        return;
    }
    Line& last = m_lines.back();
    const QTextLine line = last.layout->lineAt(last.number);
    const QString shown = last.layout->text().mid(line.textStart(), line.textLength());
    QString kept = shown.trimmed().isEmpty() ? QString() : shown;
    while (!kept.isEmpty() && kept.back().isSpace()) {
        kept.chop(1);
    }
    auto layout = makeLayout(source, kept + QChar(0x2026), m_lastStart);
    while (!kept.isEmpty() && !fits(*layout, source.area.width())) {
        kept.chop(kept.back().isLowSurrogate() ? 2 : 1);
        layout = makeLayout(source, kept + QChar(0x2026), m_lastStart);
    }
    if (kept.isEmpty()) {
        (void)fits(*layout, source.area.width());
    }
    last = {layout, 0, last.top};
}

void TextBlock::draw(QPainter& painter, const QPointF& topLeft, const QColor& color) const {
    painter.setPen(color);
    for (const Line& line : m_lines) {
        line.layout->lineAt(line.number).draw(&painter, topLeft + QPointF(0, line.top));
    }
}

}  // namespace quillo
