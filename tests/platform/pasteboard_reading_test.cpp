// SPDX-License-Identifier: MIT
#include "platform/pasteboard_reading.h"

#include <gtest/gtest.h>

#include "support/pasteboard_fixture.h"

using namespace Qt::StringLiterals;

namespace quillo::testing {

namespace {

PasteboardReading readingOf(FakePasteboard& pasteboard, const QList<CopiedTarget>& targets) {
    pasteboard.copyFrom(targets);
    return PasteboardReading(pasteboard.open());
}

QByteArray wide(const QString& text) {
    return {reinterpret_cast<const char*>(text.utf16()), text.size() * 2};
}

TEST(PasteboardReading, ListsCopiedFilesOneItemEach) {
    FakePasteboard pasteboard;
    auto reading = readingOf(pasteboard, recordedClipboard(u"thunar-threefiles"_s));
    const QList<QUrl> urls = reading.fileUrls();
    ASSERT_EQ(urls.size(), 3);
    EXPECT_EQ(urls.at(0).toLocalFile(), u"/home/user/doc/files/dir/a.txt"_s);
    EXPECT_TRUE(urls.at(2).toLocalFile().contains(u'#')) << qPrintable(urls.at(2).toString());
}

TEST(PasteboardReading, NeitherAsksForNorGivesASecret) {
    FakePasteboard pasteboard;
    auto reading = readingOf(pasteboard, recordedClipboard(u"keepassxc-password"_s));
    EXPECT_FALSE(reading.string(PasteboardType::String));
    EXPECT_TRUE(reading.isConcealed());
    for (const char* target : {"UTF8_STRING", "text/plain", "STRING", "TEXT"}) {
        EXPECT_EQ(pasteboard.fetchCount(target), 0) << target;
    }
}

TEST(PasteboardReading, TakesTheMostFaithfulTextThatIsGiven) {
    struct Row {
        const char* name;
        QList<CopiedTarget> targets;
        QString text;
    };
    const auto gtk = [](const CopiedTarget& last) {
        return QList<CopiedTarget>{refused("UTF8_STRING"), refused("COMPOUND_TEXT"),
                                   refused("text/plain;charset=utf-8"), last};
    };
    const std::vector<Row> table{
        {"UTF-8 before the others",
         {given("text/plain", "no"), given("text/plain;charset=utf-8", "no"),
          given("UTF8_STRING", "yes")},
         u"yes"_s},
        {"the next when the first is refused",
         {refused("UTF8_STRING"), given("text/plain;charset=UTF-8", "\xc3\xbc")},
         u"ü"_s},
        {"UTF-16 by its charset, kana without NUL bytes included",
         {given("text/plain;charset=utf-16", wide(u"あい"_s))},
         u"あい"_s},
        {"UTF-16 by its mark, big-endian",
         {given("text/plain;charset=utf-16", QByteArray("\xfe\xff\0A\0\xfc", 6))},
         u"Aü"_s},
        {"the reply's charset, not the request's",
         {given("text/plain", "\xa4", "text/plain;charset=ISO-8859-15")},
         u"€"_s},
        {"Latin-1", {given("STRING", "gr\xfc\xdf")}, u"grüß"_s},
        {"Latin-1 that ends like a cut UTF-8 sequence", {given("STRING", "caf\xe9")}, u"café"_s},
        {"UTF-8 that calls itself Latin-1", {given("STRING", "gr\xc3\xbc\xc3\x9f")}, u"grüß"_s},
        {"compound text",
         {given("TEXT", "\xfc \x1b$(BF|K\\\x1b(B\x1b%G\xf0\x9f\x8e\x89\x1b%@!", "COMPOUND_TEXT")},
         u"ü 日本🎉!"_s},
        {"trailing NULs", {given("UTF8_STRING", QByteArray("a\0\0", 3))}, u"a"_s},
        {"escapes and CR LF of one toolkit",
         gtk(given("text/plain", "\\u65e5 \\U0001f389\r\n\\u0041 \\x")), u"日 🎉\n\\u0041 \\x"_s},
        {"escapes in Latin-1 of that toolkit", gtk(given("STRING", "\xfc\\u65e5")), u"ü日"_s},
        {"what looks like an escape elsewhere",
         {given("text/plain", "\\u65e5\r\n")},
         u"\\u65e5\r\n"_s},
        {"bytes that are no text",
         {given("UTF8_STRING",
                "a\xff"
                "b")},
         u"a\ufffd"
         "b"_s},
        {"an unknown charset", {given("text/plain;charset=x-none", "plain")}, u"plain"_s},
        {"half a character in UTF-16",
         {given("text/plain;charset=utf-16", QByteArray("a\0\x3d\xd8z\0", 6))},
         u"a\ufffdz"_s},
        {"half a character as an escape", gtk(given("text/plain", "\\ud83d!")), u"\ufffd!"_s},
        {"both halves as escapes", gtk(given("text/plain", "\\ud83c\\udf89")), u"🎉"_s},
    };
    for (const Row& row : table) {
        SCOPED_TRACE(row.name);
        FakePasteboard pasteboard;
        auto reading = readingOf(pasteboard, row.targets);
        EXPECT_EQ(reading.string(PasteboardType::String), row.text);
    }
}

TEST(PasteboardReading, GivesHtmlAsUtf8) {
    const QString page = u"<p>ü日</p>"_s;
    const std::vector<std::pair<const char*, QByteArray>> table{
        {"UTF-8", page.toUtf8()},
        {"UTF-8 with a mark", "\xef\xbb\xbf" + page.toUtf8()},
        {"UTF-8 with NULs", page.toUtf8() + QByteArray(2, '\0')},
        {"UTF-16 with a mark", "\xff\xfe" + wide(page)},
        {"UTF-16 without", wide(page)},
        {"UTF-16 with NULs", "\xff\xfe" + wide(page) + QByteArray(2, '\0')},
    };
    for (const auto& [name, bytes] : table) {
        SCOPED_TRACE(name);
        FakePasteboard pasteboard;
        auto reading = readingOf(pasteboard, {given("text/html", bytes)});
        EXPECT_EQ(reading.data(PasteboardType::Html), page.toUtf8());
        EXPECT_EQ(reading.kept().representations.value(0).reply.bytes, bytes) << "kept as it came";
    }
}

// Found by fuzzing: the bytes came through as they were, and no reader took them for UTF-8.
TEST(PasteboardReading, KeepsHtmlThatIsCutWithinACharacter) {
    const QByteArray begin = "<meta charset=utf-8>ü";
    FakePasteboard pasteboard;
    auto reading = readingOf(pasteboard, {given("text/html", begin + "\xe6")});
    EXPECT_EQ(reading.data(PasteboardType::Html), begin + "\ufffd");
}

TEST(PasteboardReading, FindsAddresses) {
    struct Row {
        const char* name;
        CopiedTarget target;
        std::optional<QString> url;
        qsizetype files;
    };
    const std::vector<Row> table{
        {"UTF-8 in x-moz-url", given("text/x-moz-url", "https://a/\nT"), u"https://a/"_s, 0},
        {"a web address in a list", given("text/uri-list", "# two\r\nmailto:a@b\r\nHTTPS://a/\r\n"),
         u"HTTPS://a/"_s, 0},
        {"files and others",
         given("text/uri-list", "#x\r\nfile:///a%20b\r\n\r\nfile:///c\nsmb://d/e\r\n"),
         std::nullopt, 2},
        {"files of a file manager alone",
         given("x-special/gnome-copied-files", QByteArray("cut\nfile:///a\nfile:///b\0", 25)),
         std::nullopt, 2},
        {"nothing of use", given("text/uri-list", QByteArray("\0\r\n#", 4)), std::nullopt, 0},
    };
    for (const Row& row : table) {
        SCOPED_TRACE(row.name);
        FakePasteboard pasteboard;
        auto reading = readingOf(pasteboard, {row.target});
        EXPECT_EQ(reading.string(PasteboardType::Url), row.url);
        EXPECT_EQ(reading.fileUrls().size(), row.files);
    }
}

TEST(PasteboardReading, AnImageBesideRtfAndTextIsNotEvenAskedFor) {
    const CopiedTarget png = given("image/png", "png");
    const CopiedTarget bmp = given("image/bmp", "bmp");
    const CopiedTarget rtf = given("text/richtext", "{\\rtf1}");
    struct Row {
        const char* name;
        QList<CopiedTarget> targets;
        bool isImage;
    };
    const std::vector<Row> table{
        {"RTF and text", {png, bmp, rtf, given("STRING", "cells")}, false},
        {"RTF and an empty text", {png, bmp, rtf, given("STRING", "")}, true},
        {"RTF alone", {png, bmp, rtf}, true},
        {"text alone", {png, bmp, given("STRING", "x")}, true},
        {"HTML", {given("text/html", "<img>"), png, bmp}, true},
    };
    for (const Row& row : table) {
        SCOPED_TRACE(row.name);
        FakePasteboard pasteboard;
        auto reading = readingOf(pasteboard, row.targets);
        EXPECT_EQ(reading.data(PasteboardType::Png).has_value(), row.isImage);
        EXPECT_EQ(reading.anyImage().has_value(), row.isImage);
        EXPECT_EQ(pasteboard.fetchCount("image/png"), row.isImage ? 1 : 0);
    }
}

TEST(PasteboardReading, FindsImagesUnderOtherNames) {
    FakePasteboard pasteboard;
    auto reading = readingOf(
        pasteboard, {given("PIXMAP", "x"), given("application/x-qt-image", "x"),
                     given("image/svg+xml", "x"), given("image/x-wmf", "x"), refused("image/webp"),
                     given("text/ico", "ico"), given("image/bmp", "bmp")});
    EXPECT_EQ(reading.anyImage(), "bmp") << "the refused one is passed over";
    EXPECT_EQ(pasteboard.fetchCount("text/ico"), 0);
}

TEST(PasteboardReading, AsksOnceForEachTargetAndKeepsWhatItGotInTheOwnersOrder) {
    FakePasteboard pasteboard;
    auto reading = readingOf(pasteboard, {given("text/html", "h"), refused("image/png"),
                                          given("UTF8_STRING", "t"), given("x/unread", "u")});
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(reading.string(PasteboardType::String));
        EXPECT_FALSE(reading.data(PasteboardType::Png));
        EXPECT_TRUE(reading.data(PasteboardType::Html));
    }
    EXPECT_EQ(pasteboard.fetchCount("TARGETS"), 1);
    EXPECT_EQ(pasteboard.fetchCount("UTF8_STRING"), 1);
    EXPECT_EQ(pasteboard.fetchCount("image/png"), 1);
    ASSERT_EQ(reading.kept().representations.size(), 2);
    EXPECT_EQ(reading.kept().representations.at(0).target, "text/html");
}

TEST(PasteboardReading, NamesTypesWithoutWhatTheirParametersMayTell) {
    FakePasteboard pasteboard;
    auto reading = readingOf(
        pasteboard,
        {given("TIMESTAMP", ""), given("TARGETS", ""), given("MULTIPLE", ""),
         given("a/b;name=\"secret.doc\"", ""), given("text/plain;format=flowed;charset=utf-8", ""),
         given(QByteArray(300, 'x'), ""), given("a\nb", ""), given(QByteArray(5000, 'y'), "")});
    EXPECT_EQ(reading.types(),
              (QStringList{u"a/b"_s, u"text/plain;charset=utf-8"_s, QString(100, u'x'), u"a?b"_s}));
}

}  // namespace

}  // namespace quillo::testing
