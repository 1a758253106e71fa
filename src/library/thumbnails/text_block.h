// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QFont>
#include <QList>
#include <QPainter>
#include <QSize>
#include <QString>
#include <QTextLayout>
#include <memory>
#include <vector>

namespace quillo {

/// What to lay out. Line feeds divide paragraphs; formats count from the text's start.
struct TextBlockSource {
    QString text;
    QFont font;
    QSize area;  ///< In logical pixels; lines that do not fit are left out.
    QList<QTextLayout::FormatRange> formats;
};

/// A text laid out once in an area and drawn many times; the last line that fits ends with an
/// ellipsis where more follows. Main thread.
class TextBlock final {
public:
    explicit TextBlock(const TextBlockSource& source);

    /// color is for what no format colours.
    void draw(QPainter& painter, const QPointF& topLeft, const QColor& color) const;

    [[nodiscard]] int height() const { return m_height; }

private:
    struct Line {
        std::shared_ptr<QTextLayout> layout;
        int number = 0;
        qreal top = 0;
    };

    [[nodiscard]] bool layParagraph(const TextBlockSource& source, qsizetype start,
                                    qsizetype length);
    void elideLastLine(const TextBlockSource& source);

    std::vector<Line> m_lines;
    qsizetype m_lastStart = 0;  ///< Where the last line begins in the text.
    int m_height = 0;
};

}  // namespace quillo
