// SPDX-License-Identifier: MIT
// What a page's bytes say of its title and its picture.
#include <gtest/gtest.h>

#include <QElapsedTimer>

#include "capture/link_preview_page.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

std::string shown(const std::optional<QString>& text) {
    return text ? '"' + text->toStdString() + '"' : "none";
}

TEST(LinkPreviewPage, MetaElementsAreReadInFourPatterns) {
    const struct {
        QString html;
        std::optional<QString> title;
    } rows[] = {
        {uR"(<meta property="og:title" content="T">)"_s, u"T"_s},
        {uR"(<meta content="T" property="og:title">)"_s, u"T"_s},
        {uR"(<meta name="og:title" content="T">)"_s, u"T"_s},
        {uR"(<meta content="T" name="og:title">)"_s, u"T"_s},
        {uR"(<META Property="OG:Title" Content="T">)"_s, u"T"_s},
        {u"<meta\n  property=\"og:title\"\n  content=\"T\"\n/>"_s, u"T"_s},
        // A property wins over a name, its content behind it over its content before it.
        {uR"(<meta name="og:title" content="N"><meta property="og:title" content="P">)"_s, u"P"_s},
        {uR"(<meta content="B" property="og:title"><meta property="og:title" content="A">)"_s,
         u"A"_s},
        // The first element, and in it the last content.
        {uR"(<meta property="og:title" content="1"><meta property="og:title" content="2">)"_s,
         u"1"_s},
        {uR"(<meta property="og:title" content="1" content="2">)"_s, u"2"_s},
        {uR"(<meta property="og:title" x content="1" content="2)"_s, u"1"_s},
        // An empty one is passed over.
        {uR"(<meta property="og:title" content=""><meta name="og:title" content="N">)"_s, u"N"_s},
        {uR"(<meta property="og:title" content=""><meta property="og:title" content="2">)"_s, {}},
        // Not trimmed; may span lines and hold a ">".
        {u"<meta property=\"og:title\" content=\" a > b\nc \">"_s, u" a > b\nc "_s},
        {uR"(<meta content="a > b" property="og:title">)"_s, u"a > b"_s},
        {uR"(<meta content="a > b" x > property="og:title">)"_s, {}},
        {uR"(<meta property="og:title" content="&lt;b&gt; &quot;x&quot; &#39;y&#39; &amp;lt; &nbsp;">)"_s,
         u"<b> \"x\" 'y' < &nbsp;"_s},
        // Other quotation marks, another key, a gap missing, no element.
        {u"<meta property='og:title' content='T'>"_s, {}},
        {uR"(<meta property="og:title:x" content="T">)"_s, {}},
        {uR"(<metaproperty="og:title" content="T">)"_s, {}},
        {uR"(<meta property="og:title"content="T">)"_s, {}},
        {uR"(<meta property="og:title" content="T)"_s, {}},
        {uR"(<meta x> property="og:title" content="T">)"_s, {}},
        {uR"(< meta property="og:title" content="T">)"_s, {}},
        {QString(), {}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(extractMeta(row.html, "og:title"_L1), row.title)
            << row.html.toStdString() << shown(extractMeta(row.html, "og:title"_L1));
    }
}

TEST(LinkPreviewPage, TheTitleElementIsTrimmedAndItsReferencesStay) {
    const struct {
        QString html;
        std::optional<QString> title;
    } rows[] = {
        {u"<title> Hello &amp; bye </title>"_s, u"Hello &amp; bye"_s},
        {u"<TITLE lang=en>\r\n\tx\u00a0y\n</Title>"_s, u"x\u00a0y"_s},
        {u"<title></title><title>second</title>"_s, u"second"_s},
        {u"<title><b>x</b></title><svg><title>icon</title>"_s, u"icon"_s},
        {u"<title>  </title><title>second</title>"_s, {}},
        {u"<title>never ended"_s, {}},
        {u"<title"_s, {}},
        {u"<title>a</titl"_s, {}},
        {u"title>a</title>"_s, {}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(extractTitle(row.html), row.title)
            << row.html.toStdString() << shown(extractTitle(row.html));
    }
}

TEST(LinkPreviewPage, IsDecodedAsUtf8ElseAsTheCharsetItNames) {
    const QByteArray cyrillic = QByteArray::fromHex("cff0e8e2e5f2");  // windows-1251
    const struct {
        const char* name;
        QByteArray bytes;
        QByteArray contentType;
        std::optional<QString> text;
    } rows[] = {
        {"UTF-8", "gr\xc3\xbc\xc3\x9f", {}, u"grüß"_s},
        {"UTF-8 whatever is named", "gr\xc3\xbc\xc3\x9f", "text/html; charset=iso-8859-1",
         u"grüß"_s},
        {"byte-order mark", "\xef\xbb\xbfx", {}, u"x"_s},
        {"cut within a character", "x\xc3", {}, u"x"_s},
        {"named by the header", cyrillic, "text/html; Charset=\"Windows-1251\"", u"Привет"_s},
        {"named by an element",
         "<meta charset=windows-1251>" + cyrillic,
         {},
         u"<meta charset=windows-1251>Привет"_s},
        {"named by an old element",
         "<meta http-equiv=\"Content-Type\" content=\"text/html; charset=windows-1251\">" +
             cyrillic,
         "text/html",
         u"<meta http-equiv=\"Content-Type\" content=\"text/html; charset=windows-1251\">Привет"_s},
        {"Latin means what Windows made of it", "\x93x\x94", "text/html; charset=ISO-8859-1",
         u"“x”"_s},
        {"Japanese", QByteArray::fromHex("93fa967b"), "text/html;charset=Shift_JIS", u"日本"_s},
        {"UTF-16", QByteArray::fromHex("fffe4100fc00"), {}, u"Aü"_s},
        {"no name", cyrillic, "text/html", {}},
        {"UTF-8 in name only", cyrillic, "text/html; charset=utf-8", {}},
        {"an unknown name", cyrillic, "text/html; charset=klingon", {}},
        {"a hostile name", cyrillic, "text/html; charset=../../etc/passwd,x=y", {}},
        {"named too late",
         QByteArray(5'000, ' ') + "<meta charset=windows-1251>" + cyrillic,
         {},
         {}},
    };
    for (const auto& row : rows) {
        const auto text = decodePage(row.bytes, row.contentType);
        EXPECT_EQ(text, row.text) << row.name << ' ' << shown(text);
    }
}

TEST(LinkPreviewPage, APictureIsWhereThePageSaysSeenFromThePage) {
    const QUrl page(u"https://host/a/b?q"_s);
    const struct {
        QString text;
        std::optional<QString> address;
    } rows[] = {
        {u"/img/p.png"_s, u"https://host/img/p.png"_s},
        {u"p.png"_s, u"https://host/a/p.png"_s},
        {u"../p.png?x=1"_s, u"https://host/p.png?x=1"_s},
        {u"//cdn/x.png"_s, u"https://cdn/x.png"_s},
        {u"http://other/x.png"_s, u"http://other/x.png"_s},
        {u"data:image/png;base64,AA=="_s, u"data:image/png;base64,AA=="_s},
        {u"http://[bad/"_s, std::nullopt},
    };
    for (const auto& row : rows) {
        const auto address = resolveImageUrl(row.text, page);
        EXPECT_EQ(address ? std::optional(address->toString()) : std::nullopt, row.address)
            << row.text.toStdString();
    }
}

// A regular expression would need hours for each of these.
TEST(LinkPreviewPage, PagesMadeToTakeLongDoNot) {
    const QString pieces[] = {
        u"<meta"_s,
        u"<meta "_s,
        u"<meta property=\"og:title\" "_s,
        u"<meta content=\"x"_s,
        u"<meta content=\"\" "_s,
        u"content=\"\" "_s,
        u"<meta content=\"x> "_s,
        u"<meta property=\"og:title\">"_s,
        u"property=\"og:title\""_s,
        u"<title"_s,
        u"<title>"_s,
        u"<title>x<"_s,
    };
    constexpr qsizetype kPage = 2'000'000;
    QElapsedTimer timer;
    timer.start();
    for (const QString& piece : pieces) {
        const QString page = u"<meta "_s + piece.repeated(kPage / piece.size());
        (void)extractMeta(page, "og:title"_L1);
        (void)extractTitle(page);
    }
    EXPECT_LT(timer.elapsed(), 30'000);
}

}  // namespace
}  // namespace quillo
