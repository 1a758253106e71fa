// SPDX-License-Identifier: MIT
// The rules that read a copied text: what is dropped, what is a link, what HTML reduces to.
#include <gtest/gtest.h>

#include "capture/html_plain_text.h"
#include "capture/image_normalizer.h"
#include "capture/sensitive_filter.h"
#include "capture/web_link.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

TEST(SensitiveFilter, DropsCodesAndCredentialsAndNothingElse) {
    const struct {
        QString text;
        bool isSensitive;
    } rows[] = {
        {u"123456"_s, true},
        {u"123456\n"_s, true},
        {u"123456\r\n"_s, true},
        {u"١٢٣٤٥٦"_s, true},
        {u"123456\n\n"_s, false},
        {u" 123456"_s, false},
        {u"1234567"_s, false},
        {u"12345"_s, false},
        {u"123 456"_s, false},
        {u"first\n123456"_s, false},
        {u"otpauth://totp/Example?x=ABC"_s, true},
        {u"OTPAUTH://totp/x"_s, false},
        {u" otpauth://totp/x"_s, false},
        {u"mypassword=1"_s, true},
        {u"Password = x"_s, false},
        {u"password: x"_s, false},
        {u"curl -H 'Authorization: Bearer abc'"_s, true},
        {u"curl -H 'Authorization:Bearer x'"_s, false},
        {u"Bearer abc"_s, false},
        {u"API_KEY=abc"_s, true},
        {u"apikey=abc"_s, false},
        {u"CLIENT_SECRET=x"_s, true},
        {QString(), false},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(isSensitive(row.text), row.isSensitive) << row.text.toStdString();
    }
}

TEST(WebLink, IsAWholeTextWithAWebSchemeAndNoWhiteSpace) {
    const struct {
        QString text;
        bool isLink;
    } rows[] = {
        {u"https://host/a"_s, true},
        {u"http://host"_s, true},
        {u"https://example.org/wiki/Käse?q=a|b#c"_s, true},
        {u"https://user:pw@[2001:db8::1]:8080/x"_s, true},
        {u"ftp://host/x"_s, false},
        {u"mailto:a@b.c"_s, false},
        {u"host/a"_s, false},
        {u" https://host/a"_s, false},
        {u"https://host/a\n"_s, false},
        {u"https://host/a b"_s, false},
        {u"https://host/\u00a0b"_s, false},
        {u"https://host/\u0007b"_s, false},
        {u"https://[bad"_s, false},
        {u"https://host:99999999/"_s, false},
        {u"see https://host/a"_s, false},
        {u"httpsomething"_s, false},
        {QString(), false},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(isWebLink(row.text), row.isLink) << row.text.toStdString();
    }
}

TEST(HtmlPlainText, CutsTagsThenReplacesEntitiesInOrder) {
    const struct {
        QByteArray html;
        std::optional<QString> text;
    } rows[] = {
        {"<b>a &amp;lt; b</b>", u"a < b"_s},
        {"<p>Fish &amp;amp; chips</p>", u"Fish &amp; chips"_s},
        {"\n <div>one</div><div>two&nbsp;&quot;x&#39;&apos;</div> \n", u"onetwo \"x''"_s},
        {"a <> b < c", u"a <> b < c"_s},
        {"1 << 2 <i>x</i>", u"1 x"_s},
        {"open <tag", u"open <tag"_s},
        {"<!-- a > b -->c", u"b -->c"_s},
        {"", u""_s},
        {"\xff\xfe", std::nullopt},
        {"caf\xc3\xa9", u"café"_s},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(plainTextOfHtml(row.html), row.text) << row.html.toStdString();
    }
}

TEST(StoredSize, ScalesTheLongerSideToTheBoundAndNeverEnlarges) {
    const struct {
        QSize size;
        QSize stored;
    } rows[] = {
        {{4000, 1000}, {1920, 480}},
        {{1920, 1920}, {1920, 1920}},
        {{3000, 2000}, {1920, 1280}},
        {{100, 5000}, {38, 1920}},
        {{1921, 1}, {1920, 1}},
        {{10, 10}, {10, 10}},
        {{60000, 1}, {1920, 1}},
        {{0, 10}, {}},
        {{10, -1}, {}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(storedSize(row.size, kLongestStoredSide),
                  row.stored.isEmpty() ? QSize() : row.stored)
            << row.size.width() << "x" << row.size.height();
    }
}

}  // namespace
}  // namespace quillo
