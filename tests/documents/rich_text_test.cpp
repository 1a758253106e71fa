// SPDX-License-Identifier: MIT
#include "platform/rich_text.h"

#include <gtest/gtest.h>

#include "document_checks.h"
#include "platform/text/document_reader.h"

namespace quillo::testing {
namespace {

using namespace Qt::StringLiterals;

StyledText styled(const QString& text, const TextStyle& style) {
    return {text, {{0, text.size(), style}}};
}

TextStyle bold() {
    TextStyle style;
    style.bold = true;
    return style;
}

TextStyle linked(const QString& target) {
    TextStyle style;
    style.link = target;
    return style;
}

TEST(HtmlFromStyledText, KeepsTextAndStylesOfARichDocument) {
    const DocumentReader reader;
    const auto rtf = reader.readRtf(
        "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0\\fcharset0 DejaVu Sans;}}"
        "{\\colortbl;\\red200\\green0\\blue0;\\red255\\green255\\blue0;}"
        "\\fs24 plain {\\b bold {\\i both}}\\par   three spaces  <tag> &amp;\\par\\par"
        "{\\field{\\*\\fldinst HYPERLINK \"https://e.org/?a=1&b=2\"}{\\fldrslt{\\ul link}}}\\tab"
        "{\\cf1\\highlight2\\strike out}\\u55356?\\u57225?}");
    ASSERT_TRUE(rtf.has_value());
    const auto html = reader.readHtml(htmlFromStyledText(*rtf));
    ASSERT_TRUE(html.has_value());
    EXPECT_EQ(html->text.toStdString(), rtf->text.toStdString());
    EXPECT_EQ(outline(*html), outline(*rtf));
}

struct LineCase {
    const char* name;
    const char* text;
    const char* readBack;
};

const LineCase kHtmlLinesRows[] = {{"Empty", "", ""},
                                   {"LastLineFeedEndsTheParagraph", "a\n", "a"},
                                   {"EmptyLines", "a\n\n\nb", "a\n\n\nb"},
                                   {"Spaces", " a  b   c ", " a  b   c "},
                                   {"Tabs", "a\t\tb\n\tc", "a\t\tb\n\tc"},
                                   {"Markup", "<script>&lt;\"'", "<script>&lt;\"'"},
                                   {"Controls",
                                    "a\x01\x1B"
                                    "b",
                                    "ab"}};

TEST(HtmlLines, ReadBack) {
    for (const LineCase& row : kHtmlLinesRows) {
        SCOPED_TRACE(row.name);
        const StyledText text = styled(QString::fromUtf8(row.text), bold());
        const auto html = DocumentReader().readHtml(htmlFromStyledText(text));
        ASSERT_TRUE(html.has_value());
        EXPECT_EQ(html->text.toStdString(), row.readBack);
    }
}

TEST(HtmlFromStyledText, WritesOnlyLinksThatAreSafeToOffer) {
    for (const auto& [link, isWritten] :
         {std::pair{u"http://e.org"_s, true}, std::pair{u"HTTPS://e.org"_s, true},
          std::pair{u"mailto:a@e.org"_s, true}, std::pair{u"file:///tmp/a"_s, true},
          std::pair{u"javascript:alert(1)"_s, false}, std::pair{u"data:text/html,x"_s, false},
          std::pair{u"#top"_s, false}}) {
        const QByteArray html = htmlFromStyledText(styled(u"a"_s, linked(link)));
        EXPECT_EQ(html.contains("href="), isWritten) << link.toStdString();
        EXPECT_EQ(html.contains(link.toUtf8()), isWritten) << link.toStdString();
    }
}

TEST(HtmlFromStyledText, LetsNoStyleOutOfItsAttribute) {
    TextStyle style = linked(u"http://e.org/\"><b>"_s);
    style.fontFamily = u"x';}\"><script>y"_s;
    const QByteArray html = htmlFromStyledText(styled(u"a"_s, style));
    EXPECT_FALSE(html.contains("<script"));
    EXPECT_FALSE(html.contains("<b>"));
    EXPECT_FALSE(html.contains("x'"));
}

TEST(HtmlFromStyledText, ToleratesRunsThatDoNotFit) {
    const StyledText text{u"abcdef"_s, {{-3, 5, {}}, {1, 2, bold()}, {4, 99, {}}}};
    const auto html = DocumentReader().readHtml(htmlFromStyledText(text));
    ASSERT_TRUE(html.has_value());
    EXPECT_EQ(html->text, text.text);
}

}  // namespace
}  // namespace quillo::testing
