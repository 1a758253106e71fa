// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <thread>

#include "document_checks.h"

namespace quillo::testing {
namespace {

const DocumentCase kHtmlTextRows[] = {
    {"Empty", "", ""},
    {"PlainText", "just  text\nhere", "just text here"},
    {"LessThanInText", "if a < b and 1<2 then", "if a < b and 1<2 then"},
    {"UnfinishedTag", "a <b and no more", "a <b and no more"},
    {"QuotesThatDoNotMatch", "a<b title=\"x>y</b>", "ay"},
    {"References", "&lt;b&gt; &amp; &eacute;&#8212;&#x1F389;", "<b> & é—🎉"},
    {"UnknownReference", "AT&T &nosuch; &", "AT&T &nosuch; &"},
    {"NonBreakingSpace", "a&nbsp;&nbsp;b\xC2\xA0 c", "a  b  c"},
    {"Paragraphs", "<p>a</p><p>b</p>", "a\nb"},
    {"ParagraphsLeftOpen", "<p>a<p>b", "a\nb"},
    {"NestedBlocks", "<div><div>a</div></div><div>b</div>", "a\nb"},
    {"BlocksBreakTheTextAround", "a<div>b</div>c", "a\nb\nc"},
    {"WhiteSpaceBetweenBlocks", "<p> a </p>\n\n <p>\n b\n</p>", "a\nb"},
    {"LineBreaks", "a<br>b<br/>c</br>d", "a\nb\nc\nd"},
    {"BreakAtTheEndOfABlock", "<p>a<br></p><p>b</p>", "a\nb"},
    {"EmptyLine", "<div>a</div><div><br></div><div>b</div>", "a\n\nb"},
    {"BreakBetweenBlocks", "<div>a</div><br><div>b</div>", "a\n\nb"},
    {"SpaceAroundInlineElements", "a <b> b</b> <i>c</i>d", "a b cd"},
    {"Preformatted", "<pre>\n  a\n\n\tb  c\n</pre>d", "  a\n\n\tb  c\nd"},
    {"WhiteSpaceByStyle", "<div style=\"white-space:pre-wrap\">a  b\nc</div>", "a  b\nc"},
    {"WhiteSpaceBackToNormal", "<pre>a  b<span style='white-space: normal'> c   d</span></pre>",
     "a  b c d"},
    {"Bullets", "<ul><li>a</li><li>b</li></ul>", "• a\n• b"},
    {"Numbers", "<ol start=3><li>a<li>b</ol>c", "3. a\n4. b\nc"},
    {"NestedLists", "<ol><li>a<ul><li>b</ul><li>c</ol>", "1. a\n• b\n2. c"},
    {"ListWithoutMarks", "<ul style='list-style: none'><li>a</ul>", "a"},
    {"ParagraphInItem", "<ul><li><p>a</p></li></ul>", "• a"},
    {"Table",
     "<table>\n<tr>\n <td> a </td>\n <th>b</th></tr><tr><td>c</td><td>d</td></tr>"
     "</table>e",
     "a\tb\nc\td\ne"},
    {"TableLeftOpen", "<table><tr><td>a<td>b<tr><td>c<td>d</table>e", "a\tb\nc\td\ne"},
    {"EmptyCells", "<table><tr><td></td><td><br></td><td>c</td></tr></table>", "\t\tc"},
    {"EmptyRow", "<table><tr><td>a</td></tr><tr><td></td></tr><tr><td>b</td></tr></table>",
     "a\n\nb"},
    {"BlocksInCells", "<table><tr><td><p>a</p></td><td><p>b</p><p>c</p></td></tr></table>",
     "a\tb\nc"},
    {"NestedTable",
     "<table><tr><td>a<table><tr><td>b</td><td>c</td></tr></table></td><td>d</td></tr>"
     "</table>",
     "a\nb\tc\td"},
    {"ScriptsAndStyles", "a<script>var x = '<p>no';</script><style>p{}</style><title>no</title>b",
     "ab"},
    {"ScriptLeftOpen", "a<script>no", "a"},
    {"Head", "<html><head><title>t</title><meta x></head><body>a</body></html>", "a"},
    {"Comments", "a<!-- no <b> -->b<!doctype x><?xml y?>c<![if !x]>d<![endif]>", "abcd"},
    {"CommentLeftOpen", "a<!-- b", "a<!-- b"},
    {"HiddenElements",
     "a<span style='display:none'>b<b>c</b></span>d<p hidden>e</p>"
     "<svg><text>f</text></svg>g",
     "adg"},
    {"Resources",
     "a<img src='file:///etc/hostname'><object data=x>b</object>"
     "<link rel=stylesheet href=x><iframe src=y>c</iframe>d",
     "ad"},
    {"Fragment", "<html><body>x<ul><!--StartFragment--><li>a</li><!--EndFragment--></ul>y</body>",
     "• a"},
    {"QtParagraphs",
     "<html><head><meta name=\"qrichtext\" content=\"1\"/></head><body><p>a  b</p>"
     "<p>c</p></body>",
     "a  b\nc"},
    {"StructureCharactersOfQt",
     "a\xEF\xB7\x90"
     "b\xEF\xBF\xBC"
     "c",
     "abc"},
    {"ByteOrderMarkAndNuls", QByteArray("\xEF\xBB\xBF<p>a\0\0", 9), "a"},
    {"DeclaredCharsetIsNotBelieved", "<meta charset=iso-8859-1>\xC3\xA9", "é"}};

TEST(HtmlText, IsRenderedAsText) {
    expectRead(kHtmlTextRows, &DocumentReader::readHtml, textOf);
}

const DocumentCase kHtmlRunsRows[] = {
    {"Elements", "a <b>b</b> <em>c</em> <u>d</u> <del>e</del>", "[a ]b[b][ ]i[c][ ]u[d][ ]s[e]"},
    {"AcrossBlocks", "<b><p>a</p><p>b</p></b>c", "b[a\nb\n][c]"},
    {"CrossedTags", "<b>a<i>b</b>c</i>", "b[a]bi[b][c]"},
    {"Heading", "<h2>a</h2>b", "b[a\n][b]"},
    {"StyleAttribute",
     "<span style='font-weight: 700; font-style:italic; text-decoration:underline'>a"
     "</span>",
     "biu[a]"},
    {"StyleTurnsOff", "<b>a<span style='font-weight:normal'>b</span></b>", "b[a][b]"},
    {"Colors",
     "<span style='color: rgb(255, 0, 0); background: #00ff00'>a</span>"
     "<font color=blue>b</font><span style='background-color:rgba(0,0,0,0)'>c</span>",
     "#ff0000/#00ff00[a]#0000ff[b][c]"},
    {"Fonts",
     "<span style='font-family: &quot;DejaVu Sans&quot;, serif; font-size:12pt'>a</span>"
     "<font face='Arial'>b</font><span style='font-size:16px'>c</span>",
     "(DejaVu Sans)12[a](Arial)[b]12[c]"},
    {"Links", "a <a href='https://e.org/?a=1&amp;b=2'>b <b>c</b></a> d",
     "[a ]u<https://e.org/?a=1&b=2>[b ]bu<https://e.org/?a=1&b=2>[c][ d]"},
    {"LinkWithoutUnderline", "<a href='x:y' style='text-decoration:none'>a</a>", "<x:y>[a]"},
    {"AnchorIsNoLink", "<a name=x>a</a>", "[a]"},
    {"TitleIsNoLink", "<span title='https://e.org'><b>a</b></span>", "b[a]"},
    {"UnsafeStyleIsDropped", "<span style='background:url(http://e.org/x.png);color:red}'>a</span>",
     "[a]"}};

TEST(HtmlRuns, CarryTheStyles) {
    expectRead(kHtmlRunsRows, &DocumentReader::readHtml, outline);
}

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
