// SPDX-License-Identifier: MIT
// Documents made to exhaust a reader. Each of these must come back with its text; a reader whose
// cost explodes does not get through the table.
#include <gtest/gtest.h>

#include "document_checks.h"
#include "platform/text/styled_text_builder.h"

namespace quillo::testing {
namespace {

QByteArray repeated(const char* part, int count) {
    return QByteArray(part).repeated(count);
}

const DocumentCase kHostileDocumentRows[] = {
    {"DeepGroups", "{\\rtf1 a" + repeated("{", 100'000) + "b" + repeated("}", 100'000) + "c}",
     "abc"},
    {"DeepGroupsLeftOpen", "{\\rtf1 a" + repeated("{\\b ", 100'000) + "b", "ab"},
    {"TooManyClosingBraces", "{\\rtf1 a}" + repeated("}", 100'000) + "b", "a"},
    {"BrokenEscapes", "{\\rtf1 a" + repeated("\\'", 100'000) + "xb}", "axb"},
    {"UnicodeWithoutNumbers", "{\\rtf1 a" + repeated("\\u", 100'000) + " b}", "ab"},
    {"UnicodeOutOfRange", "{\\rtf1 a\\u99999999999999999999?\\u-99999?b}", "ab"},
    {"HugeSkipCount", "{\\rtf1\\uc2000000000 a\\u98?0123456789abcdefg}", "abfg"},
    {"HugeBinary", "{\\rtf1 a\\bin2147483647 b}c", "a"},
    {"NegativeBinary", "{\\rtf1 a\\bin-5 b}", "ab"},
    {"LongWord", "{\\rtf1 a\\" + repeated("x", 1'000'000) + " b}", "ab"},
    {"OnlyNuls", "{\\rtf1 a" + QByteArray(1'000'000, '\0') + "b}", "ab"},
    {"ManyFonts", "{\\rtf1{\\fonttbl" + repeated("{\\f7\\fcharset128 x;}", 50'000) + "}a}", "a"},
    {"ManyCodePages", "{\\rtf1 " + repeated("\\ansicpg932 \\'41\\ansicpg1251 \\'41", 2) + "}",
     "AAAA"},
    {"NestedFields",
     "{\\rtf1 a" + repeated("{\\field{\\*\\fldinst HYPERLINK \"x\"{\\fldrslt ", 20'000), "a"},
    {"WildIndices", "{\\rtf1\\cf-1\\cb-2147483648\\f-7\\fs-9\\cf2147483647 a}", "a"},
    {"ManyCells", "{\\rtf1 a" + repeated("\\cell\\nestrow", 100'000) + "\\row b}", "a\nb"},
    {"NestedTables18", repeated("<table><tr><td>", 18) + "a" + repeated("</td></tr></table>", 18),
     "a"},
    {"NestedTables5000",
     repeated("<table><tr><td>", 5'000) + "a" + repeated("</td></tr></table>", 5'000) + "b",
     "a\nb"},
    {"DeepInline", repeated("<b><i>", 50'000) + "a" + repeated("</i></b>", 50'000), "a"},
    {"DeepLists", repeated("<ul><li>", 50'000) + "a", "• a"},
    {"ManyEndTags", "a" + repeated("</div></b></td>", 100'000) + "b", "ab"},
    {"ManyOpenQuotes", "a" + repeated("<b \"\" ", 100'000) + "\">\"", "a\""},
    {"ManyOpenTags", "a " + repeated("<b ", 100'000) + ">c", "a c"},
    {"ManyOpenComments", repeated("<!--", 100'000) + "-->a", "a"},
    {"ManyScripts", repeated("<script></b>", 100'000) + "</script>a", "a"},
    {"ManySpans", repeated("<span style='color:red'></span>", 300'000) + "a", "a"},
    {"LongStyle", "<b style='" + repeated("color:red;", 500'000) + "'>a</b>", "a"},
    {"WildNumbers",
     "<ol start=99999999999><li>a</ol><span style='font-size:99999999999pt'>b</span>", "0. a\nb"},
    {"WildReferences", "a&#xFFFFFFFFFF;&#0;&#xFDD0;b", "a&#xFFFFFFFFFF;\nb"}};

TEST(HostileDocument, GivesItsText) {
    for (const DocumentCase& row : kHostileDocumentRows) {
        SCOPED_TRACE(row.name);
        const QByteArray& bytes = row.document;
        const DocumentReader reader;
        const auto document =
            bytes.startsWith("{\\rtf") ? reader.readRtf(bytes) : reader.readHtml(bytes);
        ASSERT_TRUE(document.has_value());
        EXPECT_EQ(document->text.trimmed().toStdString(), row.expected);
        expectRunsCoverText(*document);
    }
}

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
