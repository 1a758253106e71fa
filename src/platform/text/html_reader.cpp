// SPDX-License-Identifier: MIT
#include "platform/text/html_reader.h"

#include <QTextBlock>
#include <QTextDocument>
#include <QTextFragment>
#include <QUtf8StringView>
#include <algorithm>

#include "platform/text/html_flattener.h"
#include "platform/text/styled_text_builder.h"

namespace quillo {
namespace {

using namespace Qt::StringLiterals;

// Twice over what a page with that much text needs; the rest of a longer document is not read.
constexpr qsizetype kMaxHtmlUnits = 16 * 1024 * 1024;

/// A document that loads nothing, whatever its text names.
class InertDocument final : public QTextDocument {
protected:
    QVariant loadResource(int /*type*/, const QUrl& /*name*/) override { return {}; }
};

QByteArrayView withoutPadding(QByteArrayView document) {
    constexpr QByteArrayView kByteOrderMark("\xEF\xBB\xBF");
    if (document.startsWith(kByteOrderMark)) {
        document = document.sliced(kByteOrderMark.size());
    }
    while (document.endsWith('\0')) {
        document.chop(1);
    }
    return document;
}

double pointSizeOf(const QTextCharFormat& format) {
    constexpr double kPointsPerPixel = 0.75;
    const int pixels = format.intProperty(QTextFormat::FontPixelSize);
    return pixels > 0 ? pixels * kPointsPerPixel : std::max(0.0, format.fontPointSize());
}

std::optional<QColor> visibleColor(const QBrush& brush) {
    const bool isVisible = brush.style() == Qt::SolidPattern && brush.color().alpha() > 0;
    return isVisible ? std::optional(brush.color()) : std::nullopt;
}

TextStyle styleOf(const QTextCharFormat& format) {
    const QStringList families = format.fontFamilies().toStringList();
    return {.bold = format.fontWeight() >= QFont::DemiBold,
            .italic = format.fontItalic(),
            .underline = format.fontUnderline(),
            .strikeOut = format.fontStrikeOut(),
            .fontFamily = families.value(0),
            .pointSize = pointSizeOf(format),
            .foreground = visibleColor(format.foreground()),
            .background = visibleColor(format.background()),
            .link = format.toolTip()};
}

QString plainCharacters(QString text) {
    std::ranges::replace(text, QChar(QChar::LineSeparator), QChar(u'\n'));
    std::ranges::replace(text, QChar(QChar::ParagraphSeparator), QChar(u'\n'));
    std::ranges::replace(text, QChar(QChar::Nbsp), QChar(u' '));
    text.removeIf([](QChar c) {
        const bool isControl = c.unicode() < 0x20 && c != u'\n' && c != u'\t';
        return isControl || c == QChar(QChar::ObjectReplacementCharacter);
    });
    return text;
}

StyledText collect(const QTextDocument& document) {
    StyledTextBuilder builder;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        if (block != document.begin()) {
            builder.appendLineFeed();
        }
        for (auto it = block.begin(); !it.atEnd() && !builder.isFull(); ++it) {
            const QTextFragment fragment = it.fragment();
            builder.append(plainCharacters(fragment.text()), styleOf(fragment.charFormat()));
        }
    }
    return builder.take();
}

}  // namespace

Result<StyledText> styledTextFromHtml(const QByteArray& document) {
    const QByteArrayView bytes = withoutPadding(document);
    if (!QUtf8StringView(bytes.data(), bytes.size()).isValidUtf8()) {
        return failure(ErrorKind::Malformed, u"HTML that is not UTF-8"_s);
    }
    const QString html = QString::fromUtf8(bytes).left(kMaxHtmlUnits);
    const QString flow = HtmlFlattener(html).run();
    InertDocument rendered;
    rendered.setUndoRedoEnabled(false);
    rendered.setHtml(u"<p style=\"white-space:pre-wrap\">"_s + flow + u"</p>"_s);
    return collect(rendered);
}

}  // namespace quillo
