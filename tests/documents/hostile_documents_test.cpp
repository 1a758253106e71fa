// SPDX-License-Identifier: MIT
// Documents made to exhaust a reader. Each of these must come back with its text; a reader whose
// cost explodes does not get through the table.
#include <gtest/gtest.h>

#include "document_checks.h"
#include "platform/text/document_reader.h"
#include "platform/text/styled_text_builder.h"

namespace quillo::testing {
namespace {

struct HostileCase {
    const char* name;
    QByteArray document;
    const char* text;
};

void PrintTo(const HostileCase& row, std::ostream* out) {
    *out << row.name;
}

QByteArray repeated(const char* part, int count) {
    return QByteArray(part).repeated(count);
}

class HostileDocument : public ::testing::TestWithParam<HostileCase> {};

TEST_P(HostileDocument, GivesItsText) {
    const QByteArray& bytes = GetParam().document;
    const DocumentReader reader;
    const auto document =
        bytes.startsWith("{\\rtf") ? reader.readRtf(bytes) : reader.readHtml(bytes);
    ASSERT_TRUE(document.has_value());
    EXPECT_EQ(document->text.trimmed().toStdString(), GetParam().text);
    expectRunsCoverText(*document);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, HostileDocument,
    ::testing::Values(
        HostileCase{"DeepGroups",
                    "{\\rtf1 a" + repeated("{", 100'000) + "b" + repeated("}", 100'000) + "c}",
                    "abc"},
        HostileCase{"DeepGroupsLeftOpen", "{\\rtf1 a" + repeated("{\\b ", 100'000) + "b", "ab"},
        HostileCase{"TooManyClosingBraces", "{\\rtf1 a}" + repeated("}", 100'000) + "b", "a"},
        HostileCase{"BrokenEscapes", "{\\rtf1 a" + repeated("\\'", 100'000) + "xb}", "axb"},
        HostileCase{"UnicodeWithoutNumbers", "{\\rtf1 a" + repeated("\\u", 100'000) + " b}", "ab"},
        HostileCase{"UnicodeOutOfRange", "{\\rtf1 a\\u99999999999999999999?\\u-99999?b}", "ab"},
        HostileCase{"HugeSkipCount", "{\\rtf1\\uc2000000000 a\\u98?0123456789abcdefg}", "abfg"},
        HostileCase{"HugeBinary", "{\\rtf1 a\\bin2147483647 b}c", "a"},
        HostileCase{"NegativeBinary", "{\\rtf1 a\\bin-5 b}", "ab"},
        HostileCase{"LongWord", "{\\rtf1 a\\" + repeated("x", 1'000'000) + " b}", "ab"},
        HostileCase{"OnlyNuls", "{\\rtf1 a" + QByteArray(1'000'000, '\0') + "b}", "ab"},
        HostileCase{"ManyFonts",
                    "{\\rtf1{\\fonttbl" + repeated("{\\f7\\fcharset128 x;}", 50'000) + "}a}", "a"},
        HostileCase{"ManyCodePages",
                    "{\\rtf1 " + repeated("\\ansicpg932 \\'41\\ansicpg1251 \\'41", 2) + "}",
                    "AAAA"},
        HostileCase{
            "NestedFields",
            "{\\rtf1 a" + repeated("{\\field{\\*\\fldinst HYPERLINK \"x\"{\\fldrslt ", 20'000),
            "a"},
        HostileCase{"WildIndices", "{\\rtf1\\cf-1\\cb-2147483648\\f-7\\fs-9\\cf2147483647 a}", "a"},
        HostileCase{"ManyCells", "{\\rtf1 a" + repeated("\\cell\\nestrow", 100'000) + "\\row b}",
                    "a\nb"},
        HostileCase{"NestedTables18",
                    repeated("<table><tr><td>", 18) + "a" + repeated("</td></tr></table>", 18),
                    "a"},
        HostileCase{
            "NestedTables5000",
            repeated("<table><tr><td>", 5'000) + "a" + repeated("</td></tr></table>", 5'000) + "b",
            "a\nb"},
        HostileCase{"DeepInline", repeated("<b><i>", 50'000) + "a" + repeated("</i></b>", 50'000),
                    "a"},
        HostileCase{"DeepLists", repeated("<ul><li>", 50'000) + "a", "• a"},
        HostileCase{"ManyEndTags", "a" + repeated("</div></b></td>", 100'000) + "b", "ab"},
        HostileCase{"ManyOpenQuotes", "a" + repeated("<b \"\" ", 100'000) + "\">\"", "a\""},
        HostileCase{"ManyOpenTags", "a " + repeated("<b ", 100'000) + ">c", "a c"},
        HostileCase{"ManyOpenComments", repeated("<!--", 100'000) + "-->a", "a"},
        HostileCase{"ManyScripts", repeated("<script></b>", 100'000) + "</script>a", "a"},
        HostileCase{"ManySpans", repeated("<span style='color:red'></span>", 300'000) + "a", "a"},
        HostileCase{"LongStyle", "<b style='" + repeated("color:red;", 500'000) + "'>a</b>", "a"},
        HostileCase{
            "WildNumbers",
            "<ol start=99999999999><li>a</ol><span style='font-size:99999999999pt'>b</span>",
            "0. a\nb"},
        HostileCase{"WildReferences", "a&#xFFFFFFFFFF;&#0;&#xFDD0;b", "a&#xFFFFFFFFFF;\nb"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(HostileDocuments, AreCutOffAtTheBound) {
    const DocumentReader reader;
    const auto rtf = reader.readRtf("{\\rtf1 " + QByteArray(kMaxDocumentUnits + 10, 'x') + "}");
    ASSERT_TRUE(rtf.has_value());
    EXPECT_EQ(rtf->text.size(), kMaxDocumentUnits);
    const auto html = reader.readHtml("<p>" + QByteArray(kMaxDocumentUnits, 'x') + "</p><p>y</p>");
    ASSERT_TRUE(html.has_value());
    EXPECT_EQ(html->text.size(), kMaxDocumentUnits);
}

}  // namespace
}  // namespace quillo::testing
