// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "document_checks.h"

namespace quillo::testing {
namespace {

const DocumentCase kRtfTextRows[] = {
    {"Empty", "{\\rtf1}", ""},
    {"OneWord", "{\\rtf1 word}", "word"},
    {"LeadingSpaceAndByteOrderMark", "\xEF\xBB\xBF \r\n{\\rtf1 word}", "word"},
    {"LineEndsOfTheFileAreNoText", "{\\rtf1 a\r\nb\nc}", "abc"},
    {"Paragraphs", "{\\rtf1 a\\par b\\line c\\par}", "a\nb\nc"},
    {"OnlyOneFinalLineEndIsDropped", "{\\rtf1 a\\par\\par}", "a\n"},
    {"NothingButAParagraphEnd", "{\\rtf1\\par}", ""},
    {"EscapedLineEndIsAParagraph", "{\\rtf1 a\\\nb\\\rc}", "a\nb\nc"},
    {"HexLineEndIsAParagraph", "{\\rtf1 a\\'0db\\'0d\\'0ac\\'0ad}", "a\nb\nc\nd"},
    {"EscapedBraces", "{\\rtf1 \\{\\\\\\}}", "{\\}"},
    {"OneSpaceEndsAWord", "{\\rtf1\\b  x\\b0 y}", " xy"},
    {"Dashes", "{\\rtf1 a\\emdash b\\endash c}", "a—b–c"},
    {"Quotes", "{\\rtf1\\ldblquote a\\rdblquote\\lquote b\\rquote}", "“a”‘b’"},
    {"Symbols", "{\\rtf1 a\\~b\\_c\\-d\\bullet\\tab e}", "a\u00A0b\u2011cd•\te"},
    {"UnicodeWithFallback", "{\\rtf1 \\u252\\'fcber\\u8211?x}", "über–x"},
    {"UnicodeFallbackWord", "{\\rtf1 a\\u8212\\emdash b}", "a—b"},
    {"UnicodeMissingFallbackKeepsStructure", "{\\rtf1 a\\u8212\\par b}", "a—\nb"},
    {"UnicodeNegative", "{\\rtf1\\uc0\\u-30050 x}", "語x"},
    {"UnicodeSurrogates", "{\\rtf1 \\u55356\\'3f\\u57225\\'3f!}", "🎉!"},
    {"UnicodeNegativeSurrogates", "{\\rtf1 \\u-10180?\\u-8311?!}", "🎉!"},
    {"UnicodeBeyondThePlane", "{\\rtf1 \\u127881?!}", "🎉!"},
    {"UnicodeLoneSurrogate", "{\\rtf1 a\\u55356?b}", "a\uFFFDb"},
    {"UnicodeSkipOfTwoBytes", "{\\rtf1\\uc2 \\u26085\\'93\\'fax}", "日x"},
    {"UnicodeSkipEndsWithTheGroup", "{\\rtf1{\\uc3\\u8211 ?}abc}", "–abc"},
    {"UnicodeSkipIsPartOfTheGroup", "{\\rtf1{\\uc0\\u252 x}\\u252 ?y}", "üxüy"},
    {"UnicodeWithoutNumber", "{\\rtf1 a\\u b\\u-c}", "ab-c"},
    {"SymbolFontPrivateArea", "{\\rtf1 \\u-3913 ?}", "•"},
    {"WesternBytes", "{\\rtf1\\ansi caf\\'e9 \\'80}", "café €"},
    {"RawHighBytes", "{\\rtf1\\ansi caf\xE9}", "café"},
    {"DocumentCodePage", "{\\rtf1\\ansicpg1251 \\'cf\\'f0\\'e8}", "При"},
    {"UnknownCodePageIsWestern", "{\\rtf1\\ansicpg31337 \\'e9}", "é"},
    {"MacCharset", "{\\rtf1\\mac \\'8e}", "é"},
    {"CodePageOfTheFont",
     "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0\\fcharset0 A;}{\\f1\\fcharset204 B;}}"
     "\\'e9\\f1\\'e9{\\f0\\'e9}\\'e9}",
     "éйéй"},
    {"CodePageOfAFlatFontTable", "{\\rtf1{\\fonttbl\\f0\\fnil A;\\f1\\fcharset161 B;}\\f1\\'e1}",
     "α"},
    {"SymbolFontBullet", "{\\rtf1{\\fonttbl{\\f3\\fcharset2 Symbol;}}{\\f3\\'b7} item}", "• item"},
    {"BytesOfOneCharacterInTwoEscapes",
     "{\\rtf1{\\fonttbl{\\f0\\fcharset128 M;}}\\f0\\'93\\'fa\\'96\\'7b}", "日本"},
    {"SecondByteAsRawLetter", "{\\rtf1{\\fonttbl{\\f0\\fcharset128 M;}}\\f0\\'83e\\'83X}", "テス"},
    {"EscapedSecondByte", "{\\rtf1{\\fonttbl{\\f0\\fcharset128 M;}}\\f0\\'95\\\\}", "表"},
    {"BrokenHexEscape", "{\\rtf1 a\\'zzb}", "azzb"},
    {"Row", "{\\rtf1\\trowd\\intbl a\\cell b\\cell\\row c\\cell d\\cell\\row}", "a\tb\nc\td"},
    {"EmptyCells", "{\\rtf1 \\cell b\\cell\\cell\\row after}", "\tb\t\nafter"},
    {"NestedTable",
     "{\\rtf1 o\\cell x\\nestcell y\\nestcell{\\*\\nesttableprops\\nestrow}"
     "{\\nonesttables\\par}z\\nestcell{\\*\\nesttableprops\\nestrow}\\cell p\\cell\\row}",
     "o\tx\ty\nz\tp"},
    {"StarredUnknownDestination", "{\\rtf1 a{\\*\\newthing b{c}}d}", "ad"},
    {"UnknownWordWithoutStar", "{\\rtf1 a{\\newthing b}c}", "abc"},
    {"SkippedDestinations",
     "{\\rtf1{\\stylesheet{\\s0 Normal;}}{\\info{\\title T}}{\\header h}"
     "a{\\footnote f{\\b g}}{\\pict 89504e47}{\\object x{\\result y}}b}",
     "ab"},
    {"BinaryData", QByteArray("{\\rtf1 a{\\pict\\bin5 }}{\\\0}b}", 28), "ab"},
    {"HiddenText", "{\\rtf1 a{\\v b}c\\v d\\v0 e}", "ace"},
    {"ListText", "{\\rtf1{\\listtext 1.\\tab}one\\par{\\pntext 2.\\tab}two}", "1.\tone\n2.\ttwo"},
    {"UnicodePairTakesTheBetterHalf", "{\\rtf1 {\\upr{ae?}{\\*\\ud{\\uc0 \\u228 \\u8212 }}}x}",
     "ä—x"},
    {"HeadersKeepFieldsOut", "{\\rtf1 {\\header{\\field{\\*\\fldinst PAGE}{\\fldrslt 7}}}a}", "a"},
    {"NulsAreIgnored", QByteArray("{\\rtf1 a\0b}\0\0", 13), "ab"},
    {"TextAfterTheDocument", "{\\rtf1 a}b{c}", "a"},
    {"CutShortInText", "{\\rtf1 a{\\b bc", "abc"},
    {"CutShortInWord", "{\\rtf1 a\\pa", "a"},
    {"CutShortInEscape", "{\\rtf1 a\\'4", "a"},
    {"CutShortAtBackslash", "{\\rtf1 a\\", "a"}};

TEST(RtfText, IsReadAsWritten) {
    expectRead(kRtfTextRows, &DocumentReader::readRtf, textOf);
}

const DocumentCase kRtfRunsRows[] = {
    {"BoldAndOff", "{\\rtf1 a\\b b\\b0 c}", "[a]b[b][c]"},
    {"GroupRestores", "{\\rtf1 a{\\b\\i b}c}", "[a]bi[b][c]"},
    {"UnderlineKinds", "{\\rtf1\\ulwave a\\ulnone b\\ul c\\ul0 d}", "u[a][b]u[c][d]"},
    {"StrikeOut", "{\\rtf1\\strike a\\strike0 b}", "s[a][b]"},
    {"PlainResets", "{\\rtf1\\b\\i\\ul\\fs40 a\\plain b}", "biu20[a][b]"},
    {"ParagraphResetKeepsCharacters", "{\\rtf1\\b a\\par\\pard b}", "b[a\nb]"},
    {"Colors",
     "{\\rtf1{\\colortbl;\\red255\\green0\\blue0;\\red0\\green0\\blue300;}"
     "a\\cf1 b\\cf2\\highlight1 c\\cf0\\highlight0 d\\cf9 e}",
     "[a]#ff0000[b]#0000ff/#ff0000[c][de]"},
    {"FontsAndSizes",
     "{\\rtf1\\deff1{\\fonttbl{\\f0 Times New Roman;}{\\f1\\fswiss\\fcharset0 "
     "Arial{\\*\\falt Helvetica};}}\\f0\\fs25 a\\plain b}",
     "(Times New Roman)12.5[a](Arial)[b]"},
    {"Hyperlink",
     "{\\rtf1 a{\\field{\\*\\fldinst HYPERLINK \"https://e.org/?a=1\" \\\\o \"tip\"}"
     "{\\fldrslt{\\ul b}}}c}",
     "[a]u<https://e.org/?a=1>[b][c]"},
    {"HyperlinkWithAnchor", "{\\rtf1{\\field{\\*\\fldinst{HYPERLINK \\\\l \"top\"}}{\\fldrslt b}}}",
     "<#top>[b]"},
    {"HyperlinkWithStarredResult",
     "{\\rtf1{\\field{\\*\\fldinst{ HYPERLINK \"x:y\"}}{\\*\\fldrslt{b}}}c}", "<x:y>[b][c]"},
    {"OtherField", "{\\rtf1{\\field{\\*\\fldinst PAGE}{\\fldrslt 7}}}", "[7]"}};

TEST(RtfRuns, CarryTheStyles) {
    expectRead(kRtfRunsRows, &DocumentReader::readRtf, outline);
}

TEST(RtfReader, RefusesWhatIsNoRtf) {
    for (const QByteArray& bytes : {QByteArray(), QByteArray("text"), QByteArray("{\\rt"),
                                    QByteArray("x{\\rtf1 a}"), QByteArray("<html>")}) {
        const auto document = DocumentReader().readRtf(bytes);
        ASSERT_FALSE(document.has_value()) << bytes.toStdString();
        EXPECT_EQ(document.error().kind, ErrorKind::Malformed);
    }
}

}  // namespace
}  // namespace quillo::testing
