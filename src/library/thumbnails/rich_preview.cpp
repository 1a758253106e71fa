// SPDX-License-Identifier: MIT
#include "library/thumbnails/rich_preview.h"

#include <QFontDatabase>
#include <algorithm>
#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

constexpr qsizetype kLongestText = 700;
// A document's usual size is shown at the size of a card's text.
constexpr double kPixelsPerPoint = 13.0 / 12.0;
constexpr double kSmallestPx = 11;
constexpr double kLargestPx = 20;
constexpr int kPaperLightness = 0xe8;
constexpr int kInkSaturation = 40;

qsizetype firstInk(const QString& text) {
    const auto ink = std::ranges::find_if(text, [](QChar c) { return !c.isSpace(); });
    const qsizetype position = ink - text.begin();
    // Blanks at the beginning of the first line with ink are its indent.
    return ink == text.end() || position == 0 ? 0 : text.lastIndexOf(u'\n', position - 1) + 1;
}

QList<StyledRun> runsWithin(const QList<StyledRun>& runs, qsizetype start, qsizetype end) {
    QList<StyledRun> within;
    for (const StyledRun& run : runs) {
        const qsizetype first = std::max(run.start, start);
        const qsizetype last = std::min(run.start + run.length, end);
        if (first < last) {
            within.append({first - start, last - first, run.style});
        }
    }
    return within;
}

bool isPaper(const QColor& background) {
    const int darkest = std::min({background.red(), background.green(), background.blue()});
    return background.alpha() < 128 || darkest > kPaperLightness;
}

void dropPaper(StyledText& text) {
    const auto hasInk = [&](const StyledRun& run) {
        return !QStringView(text.text).mid(run.start, run.length).trimmed().isEmpty();
    };
    const auto first = std::ranges::find_if(text.runs, hasInk);
    const bool isUnderAll =
        first != text.runs.end() && std::ranges::all_of(text.runs, [&](const StyledRun& run) {
            return !hasInk(run) || run.style.background == first->style.background;
        });
    for (StyledRun& run : text.runs) {
        if (run.style.background && (isUnderAll || isPaper(*run.style.background))) {
            run.style.background.reset();
        }
    }
}

bool isFixedWidth(const QString& family) {
    constexpr std::array kMarks = {"mono"_L1, "courier"_L1, "consol"_L1, "menlo"_L1, "code"_L1};
    return std::ranges::any_of(
        kMarks, [&](QLatin1StringView mark) { return family.contains(mark, Qt::CaseInsensitive); });
}

// Black on white or white on black is the document's ink: the card has its own.
QColor readableInk(QColor wanted, const QColor& textColor, const Ground& ground) {
    wanted.setAlpha(255);
    const bool isInk = wanted.hsvSaturation() < kInkSaturation || wanted.value() < kInkSaturation;
    const bool isLost = !isReadable(wanted, ground);
    return readableText(isInk && isLost ? textColor : wanted, ground);
}

void setColors(QTextCharFormat& format, const TextStyle& style, const QColor& textColor,
               const Ground& ground) {
    Ground own = ground;
    if (style.background) {
        own = {*style.background};
        own.color.setAlpha(255);
        format.setBackground(own.color);
    }
    if (style.foreground || style.background) {
        format.setForeground(readableInk(style.foreground.value_or(textColor), textColor, own));
    }
}

void setFont(QTextCharFormat& format, const TextStyle& style) {
    if (style.bold) {
        format.setFontWeight(QFont::Bold);
    }
    format.setFontItalic(style.italic);
    format.setFontUnderline(style.underline || !style.link.isEmpty());
    format.setFontStrikeOut(style.strikeOut);
    if (style.pointSize > 0) {
        const double pixels =
            std::clamp(style.pointSize * kPixelsPerPoint, kSmallestPx, kLargestPx);
        format.setProperty(QTextFormat::FontPixelSize, int(std::lround(pixels)));
    }
    if (isFixedWidth(style.fontFamily)) {
        format.setFontFamilies({QFontDatabase::systemFont(QFontDatabase::FixedFont).family()});
    }
}

}  // namespace

StyledText cutForCard(const StyledText& document) {
    const qsizetype start = firstInk(document.text);
    qsizetype end = std::min(document.text.size(), start + kLongestText);
    if (end < document.text.size() && document.text.at(end).isLowSurrogate()) {
        --end;
    }
    StyledText cut{document.text.mid(start, end - start), runsWithin(document.runs, start, end)};
    dropPaper(cut);
    return cut;
}

QList<QTextLayout::FormatRange> cardFormats(const StyledText& text, const QColor& textColor,
                                            const Ground& ground) {
    QList<QTextLayout::FormatRange> formats;
    for (const StyledRun& run : text.runs) {
        QTextCharFormat format;
        setFont(format, run.style);
        setColors(format, run.style, textColor, ground);
        formats.append({int(run.start), int(run.length), format});
    }
    return formats;
}

}  // namespace quillo
