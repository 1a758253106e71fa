// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <QString>
#include <span>
#include <string>

#include "platform/text/document_reader.h"

namespace quillo::testing {

/// The runs in a short notation: each run's text in brackets behind the marks of its style, for
/// example "[plain ]bi[both]". Links show as "<address>".
[[nodiscard]] inline std::string outline(const StyledText& document) {
    using namespace Qt::StringLiterals;
    QString result;
    for (const StyledRun& run : document.runs) {
        const TextStyle& style = run.style;
        result += style.bold ? u"b"_s : QString();
        result += style.italic ? u"i"_s : QString();
        result += style.underline ? u"u"_s : QString();
        result += style.strikeOut ? u"s"_s : QString();
        result += style.foreground ? style.foreground->name() : QString();
        result += style.background ? u'/' + style.background->name() : QString();
        result += style.fontFamily.isEmpty() ? QString() : u'(' + style.fontFamily + u')';
        result += style.pointSize > 0 ? QString::number(style.pointSize) : QString();
        result += style.link.isEmpty() ? QString() : u'<' + style.link + u'>';
        result += u'[' + document.text.mid(run.start, run.length) + u']';
    }
    return result.toStdString();
}

/// Whether the runs cover the text in order and without gaps.
inline void expectRunsCoverText(const StyledText& document) {
    qsizetype end = 0;
    for (const StyledRun& run : document.runs) {
        ASSERT_EQ(run.start, end);
        ASSERT_GT(run.length, 0);
        end += run.length;
    }
    ASSERT_EQ(end, document.text.size());
}

/// A document, and what must come of it.
struct DocumentCase {
    const char* name;
    QByteArray document;
    const char* expected;
};

using ReadDocument = Result<StyledText> (DocumentReader::*)(const QByteArray&) const;

/// Reads each document and compares what the function makes of it, as text or as outline.
template <typename Made>
void expectRead(std::span<const DocumentCase> rows, ReadDocument read, Made made) {
    const DocumentReader reader;
    for (const DocumentCase& row : rows) {
        const auto document = (reader.*read)(row.document);
        ASSERT_TRUE(document.has_value()) << row.name;
        EXPECT_EQ(made(*document), row.expected) << row.name;
        expectRunsCoverText(*document);
    }
}

[[nodiscard]] inline std::string textOf(const StyledText& document) {
    return document.text.toStdString();
}

}  // namespace quillo::testing
