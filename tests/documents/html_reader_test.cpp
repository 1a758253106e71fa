// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <thread>

#include "document_checks.h"
#include "platform/text/document_reader.h"

namespace quillo::testing {
namespace {

struct TextCase {
    const char* name;
    QByteArray html;
    const char* text;
};

void PrintTo(const TextCase& row, std::ostream* out) {
    *out << row.name;
}

class HtmlText : public ::testing::TestWithParam<TextCase> {};

TEST_P(HtmlText, IsRenderedAsText) {
    const auto document = DocumentReader().readHtml(GetParam().html);
    ASSERT_TRUE(document.has_value());
    EXPECT_EQ(document->text.toStdString(), GetParam().text);
    expectRunsCoverText(*document);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, HtmlText,
    ::testing::Values(
        TextCase{"Empty", "", ""}, TextCase{"PlainText", "just  text\nhere", "just text here"},
        TextCase{"LessThanInText", "if a < b and 1<2 then", "if a < b and 1<2 then"},
        TextCase{"UnfinishedTag", "a <b and no more", "a <b and no more"},
        TextCase{"QuotesThatDoNotMatch", "a<b title=\"x>y</b>", "ay"},
        TextCase{"References", "&lt;b&gt; &amp; &eacute;&#8212;&#x1F389;", "<b> & é—🎉"},
        TextCase{"UnknownReference", "AT&T &nosuch; &", "AT&T &nosuch; &"},
        TextCase{"NonBreakingSpace", "a&nbsp;&nbsp;b\xC2\xA0 c", "a  b  c"},
        TextCase{"Paragraphs", "<p>a</p><p>b</p>", "a\nb"},
        TextCase{"ParagraphsLeftOpen", "<p>a<p>b", "a\nb"},
        TextCase{"NestedBlocks", "<div><div>a</div></div><div>b</div>", "a\nb"},
        TextCase{"BlocksBreakTheTextAround", "a<div>b</div>c", "a\nb\nc"},
        TextCase{"WhiteSpaceBetweenBlocks", "<p> a </p>\n\n <p>\n b\n</p>", "a\nb"},
        TextCase{"LineBreaks", "a<br>b<br/>c</br>d", "a\nb\nc\nd"},
        TextCase{"BreakAtTheEndOfABlock", "<p>a<br></p><p>b</p>", "a\nb"},
        TextCase{"EmptyLine", "<div>a</div><div><br></div><div>b</div>", "a\n\nb"},
        TextCase{"BreakBetweenBlocks", "<div>a</div><br><div>b</div>", "a\n\nb"},
        TextCase{"SpaceAroundInlineElements", "a <b> b</b> <i>c</i>d", "a b cd"},
        TextCase{"Preformatted", "<pre>\n  a\n\n\tb  c\n</pre>d", "  a\n\n\tb  c\nd"},
        TextCase{"WhiteSpaceByStyle", "<div style=\"white-space:pre-wrap\">a  b\nc</div>",
                 "a  b\nc"},
        TextCase{"WhiteSpaceBackToNormal",
                 "<pre>a  b<span style='white-space: normal'> c   d</span></pre>", "a  b c d"},
        TextCase{"Bullets", "<ul><li>a</li><li>b</li></ul>", "• a\n• b"},
        TextCase{"Numbers", "<ol start=3><li>a<li>b</ol>c", "3. a\n4. b\nc"},
        TextCase{"NestedLists", "<ol><li>a<ul><li>b</ul><li>c</ol>", "1. a\n• b\n2. c"},
        TextCase{"ListWithoutMarks", "<ul style='list-style: none'><li>a</ul>", "a"},
        TextCase{"ParagraphInItem", "<ul><li><p>a</p></li></ul>", "• a"},
        TextCase{"Table",
                 "<table>\n<tr>\n <td> a </td>\n <th>b</th></tr><tr><td>c</td><td>d</td></tr>"
                 "</table>e",
                 "a\tb\nc\td\ne"},
        TextCase{"TableLeftOpen", "<table><tr><td>a<td>b<tr><td>c<td>d</table>e", "a\tb\nc\td\ne"},
        TextCase{"EmptyCells", "<table><tr><td></td><td><br></td><td>c</td></tr></table>", "\t\tc"},
        TextCase{"EmptyRow",
                 "<table><tr><td>a</td></tr><tr><td></td></tr><tr><td>b</td></tr></table>",
                 "a\n\nb"},
        TextCase{"BlocksInCells",
                 "<table><tr><td><p>a</p></td><td><p>b</p><p>c</p></td></tr></table>", "a\tb\nc"},
        TextCase{"NestedTable",
                 "<table><tr><td>a<table><tr><td>b</td><td>c</td></tr></table></td><td>d</td></tr>"
                 "</table>",
                 "a\nb\tc\td"},
        TextCase{"ScriptsAndStyles",
                 "a<script>var x = '<p>no';</script><style>p{}</style><title>no</title>b", "ab"},
        TextCase{"ScriptLeftOpen", "a<script>no", "a"},
        TextCase{"Head", "<html><head><title>t</title><meta x></head><body>a</body></html>", "a"},
        TextCase{"Comments", "a<!-- no <b> -->b<!doctype x><?xml y?>c<![if !x]>d<![endif]>",
                 "abcd"},
        TextCase{"CommentLeftOpen", "a<!-- b", "a<!-- b"},
        TextCase{"HiddenElements",
                 "a<span style='display:none'>b<b>c</b></span>d<p hidden>e</p>"
                 "<svg><text>f</text></svg>g",
                 "adg"},
        TextCase{"Resources",
                 "a<img src='file:///etc/hostname'><object data=x>b</object>"
                 "<link rel=stylesheet href=x><iframe src=y>c</iframe>d",
                 "ad"},
        TextCase{"Fragment",
                 "<html><body>x<ul><!--StartFragment--><li>a</li><!--EndFragment--></ul>y</body>",
                 "• a"},
        TextCase{"QtParagraphs",
                 "<html><head><meta name=\"qrichtext\" content=\"1\"/></head><body><p>a  b</p>"
                 "<p>c</p></body>",
                 "a  b\nc"},
        TextCase{"StructureCharactersOfQt",
                 "a\xEF\xB7\x90"
                 "b\xEF\xBF\xBC"
                 "c",
                 "abc"},
        TextCase{"ByteOrderMarkAndNuls", QByteArray("\xEF\xBB\xBF<p>a\0\0", 9), "a"},
        TextCase{"DeclaredCharsetIsNotBelieved", "<meta charset=iso-8859-1>\xC3\xA9", "é"}),
    [](const auto& row) { return std::string(row.param.name); });

struct RunCase {
    const char* name;
    QByteArray html;
    const char* outline;
};

void PrintTo(const RunCase& row, std::ostream* out) {
    *out << row.name;
}

class HtmlRuns : public ::testing::TestWithParam<RunCase> {};

TEST_P(HtmlRuns, CarryTheStyles) {
    const auto document = DocumentReader().readHtml(GetParam().html);
    ASSERT_TRUE(document.has_value());
    EXPECT_EQ(outline(*document), GetParam().outline);
    expectRunsCoverText(*document);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, HtmlRuns,
    ::testing::Values(
        RunCase{"Elements", "a <b>b</b> <em>c</em> <u>d</u> <del>e</del>",
                "[a ]b[b][ ]i[c][ ]u[d][ ]s[e]"},
        RunCase{"AcrossBlocks", "<b><p>a</p><p>b</p></b>c", "b[a\nb\n][c]"},
        RunCase{"CrossedTags", "<b>a<i>b</b>c</i>", "b[a]bi[b][c]"},
        RunCase{"Heading", "<h2>a</h2>b", "b[a\n][b]"},
        RunCase{"StyleAttribute",
                "<span style='font-weight: 700; font-style:italic; text-decoration:underline'>a"
                "</span>",
                "biu[a]"},
        RunCase{"StyleTurnsOff", "<b>a<span style='font-weight:normal'>b</span></b>", "b[a][b]"},
        RunCase{"Colors",
                "<span style='color: rgb(255, 0, 0); background: #00ff00'>a</span>"
                "<font color=blue>b</font><span style='background-color:rgba(0,0,0,0)'>c</span>",
                "#ff0000/#00ff00[a]#0000ff[b][c]"},
        RunCase{"Fonts",
                "<span style='font-family: &quot;DejaVu Sans&quot;, serif; font-size:12pt'>a</span>"
                "<font face='Arial'>b</font><span style='font-size:16px'>c</span>",
                "(DejaVu Sans)12[a](Arial)[b]12[c]"},
        RunCase{"Links", "a <a href='https://e.org/?a=1&amp;b=2'>b <b>c</b></a> d",
                "[a ]u<https://e.org/?a=1&b=2>[b ]bu<https://e.org/?a=1&b=2>[c][ d]"},
        RunCase{"LinkWithoutUnderline", "<a href='x:y' style='text-decoration:none'>a</a>",
                "<x:y>[a]"},
        RunCase{"AnchorIsNoLink", "<a name=x>a</a>", "[a]"},
        RunCase{"TitleIsNoLink", "<span title='https://e.org'><b>a</b></span>", "b[a]"},
        RunCase{"UnsafeStyleIsDropped",
                "<span style='background:url(http://e.org/x.png);color:red}'>a</span>", "[a]"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(HtmlReader, RefusesBytesThatAreNotUtf8) {
    for (const QByteArray& bytes :
         {QByteArray("caf\xE9"), QByteArray("\xFF\xFE<\0b\0", 6), QByteArray("a\xC3")}) {
        const auto document = DocumentReader().readHtml(bytes);
        ASSERT_FALSE(document.has_value());
        EXPECT_EQ(document.error().kind, ErrorKind::Malformed);
    }
}

TEST(HtmlReader, WorksOffTheMainThread) {
    std::string text;
    std::thread([&] {
        const auto document = DocumentReader().readHtml("<ul><li>a</li></ul><a href='x:y'>b</a>");
        text = document ? document->text.toStdString() : "failed";
    }).join();
    EXPECT_EQ(text, "• a\nb");
}

}  // namespace
}  // namespace quillo::testing
