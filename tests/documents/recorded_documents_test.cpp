// SPDX-License-Identifier: MIT
// Clipboards recorded from real programs: the rich document must say what the program's own plain
// text says.
#include <gtest/gtest.h>

#include <algorithm>

#include "document_checks.h"
#include "support/pasteboard_fixture.h"

namespace quillo::testing {
namespace {

using namespace Qt::StringLiterals;

QByteArray recorded(const QString& folder, const QString& target) {
    const QList<CopiedTarget> targets = recordedClipboard(folder);
    const auto found = std::ranges::find(targets, target.toUtf8(), &CopiedTarget::target);
    EXPECT_TRUE(found != targets.end() && found->reply) << "no such target was recorded";
    return found != targets.end() ? found->reply.value_or(RawReply{}).bytes : QByteArray();
}

/// Programs differ in blank lines, in whether a cell begins a line, in list marks and in spaces at
/// line ends; nothing else is levelled.
std::string levelled(QString text) {
    text.remove(QChar(u'\0'));
    text.replace(u'\t', u'\n');
    QStringList lines;
    // The word processor writes the space before this character behind it.
    text.replace(u"語🎉  "_s, u"語 🎉 "_s);
    for (const QString& line : text.split(u'\n')) {
        const QString content = line.startsWith(u"• "_s) ? line.sliced(2) : line;
        if (!content.trimmed().isEmpty()) {
            lines.append(content.trimmed());
        }
    }
    return lines.join(u'\n').toStdString();
}

struct RecordedCase {
    const char* name;
    const char* folder;
    const char* target;
    const char* outlinePart;  ///< Must be found in the outline of the runs.
};

void PrintTo(const RecordedCase& row, std::ostream* out) {
    *out << row.name;
}

class RecordedDocument : public ::testing::TestWithParam<RecordedCase> {
protected:
    [[nodiscard]] static Result<StyledText> read() {
        const QString target = QString::fromUtf8(GetParam().target);
        const QByteArray bytes = recorded(QString::fromUtf8(GetParam().folder), target);
        const DocumentReader reader;
        return target.contains(u"html"_s) ? reader.readHtml(bytes) : reader.readRtf(bytes);
    }
};

TEST_P(RecordedDocument, SaysWhatThePlainTextSays) {
    const auto document = read();
    ASSERT_TRUE(document.has_value());
    expectRunsCoverText(*document);
    const QByteArray plain = recorded(QString::fromUtf8(GetParam().folder), u"UTF8_STRING"_s);
    EXPECT_EQ(levelled(document->text), levelled(QString::fromUtf8(plain)));
    EXPECT_NE(outline(*document).find(GetParam().outlinePart), std::string::npos)
        << outline(*document);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, RecordedDocument,
    ::testing::Values(
        RecordedCase{"WriterRtf", "writer-line", "text/rtf", "<https://example.com/>[link]"},
        RecordedCase{"WriterHtml", "writer-line", "text/html", "#cc0000[red ünïcödé]"},
        RecordedCase{"WordProcessorRtf", "abiword-doc", "text/rtf", "12[bold]"},
        RecordedCase{"SpreadsheetRtf", "calc-cells", "text/rtf", "[Name\tQty\tPrice\nÄpfel\t3"},
        RecordedCase{"SpreadsheetHtml", "calc-cells", "text/html", "Total\t\t7.5]"},
        RecordedCase{"BrowserHtml", "chromium-rich", "text/html",
                     "<https://example.com/path?q=1&r=2#frag>[link text]"},
        RecordedCase{"ToolkitHtml", "qt6-html", "text/html", "b[Qt6 bold ü][ ]i[it]"},
        RecordedCase{"EditorHtml", "qt6-rtf", "text/html", "b[bold][ ]#ff0000[red ü]"}),
    [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace quillo::testing
