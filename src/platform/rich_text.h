// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QColor>
#include <QList>
#include <QString>
#include <optional>

#include "base/result.h"

namespace quillo {

/// The character formatting of one run.
struct TextStyle {
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strikeOut = false;
    QString fontFamily;    ///< Empty where the document names none.
    double pointSize = 0;  ///< 0 where the document names none.
    std::optional<QColor> foreground;
    std::optional<QColor> background;
    QString link;  ///< Target of a hyperlink, or empty.

    friend bool operator==(const TextStyle&, const TextStyle&) = default;
};

/// A stretch of text in one style. Offsets count UTF-16 code units.
struct StyledRun {
    qsizetype start = 0;
    qsizetype length = 0;
    TextStyle style;

    friend bool operator==(const StyledRun&, const StyledRun&) = default;
};

/// A rich document reduced to what a card, a text field or a paste needs. Line feeds stand
/// between paragraphs and rows, tabs between table cells. The runs cover the text without gaps, in
/// order.
struct StyledText {
    QString text;
    QList<StyledRun> runs;
};

/// Reads rich documents. Input is hostile until parsed: nesting, length and time are bounded and
/// no resource that a document names is ever loaded. Thread-safe; not for the main thread, where
/// a large document would be felt.
class RichTextReader {
public:
    virtual ~RichTextReader() = default;

    /// Rich Text Format 1.9. Malformed when the bytes are no RTF document; a document that is cut
    /// short gives what could be read.
    [[nodiscard]] virtual Result<StyledText> readRtf(const QByteArray& document) const = 0;

    /// HTML in UTF-8, rendered as text: line breaks, list marks and table cells are kept, markup,
    /// scripts and styles are not. Malformed when the bytes are not UTF-8.
    [[nodiscard]] virtual Result<StyledText> readHtml(const QByteArray& document) const = 0;
};

/// A stand-alone HTML document (UTF-8) with the text's paragraphs and styles.
[[nodiscard]] QByteArray htmlFromStyledText(const StyledText& text);

}  // namespace quillo
