// SPDX-License-Identifier: MIT
// What a feed says, and which of its versions is the newest.
#include <gtest/gtest.h>

#include "app/updates/appcast.h"
#include "app/updates/update_signature.h"
#include "app/updates/version_order.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

const QByteArray kSignature = QByteArray(64, 's').toBase64();

QByteArray feed(const QByteArray& items) {
    return "<?xml version=\"1.0\"?><rss version=\"2.0\" "
           "xmlns:u=\"urn:x\"><channel><title>t</title>" +
           items + "</channel></rss>";
}

QByteArray item(const QByteArray& version, const QByteArray& attributes = {},
                const QByteArray& fields = {}) {
    return "<item><title>T</title>" + fields +
           "<enclosure url=\"https://host/q.tar.xz\" length=\"9\" " + "u:edSignature=\"" +
           kSignature + "\" u:version=\"" + version + "\" " + attributes + "/></item>";
}

TEST(VersionOrder, ComparesAsPeopleDo) {
    // Each is newer than the one before it.
    const QStringList ascending{
        u""_s,       u"0.0.1"_s, u"0.9"_s,      u"0.10"_s, u"1.0a1"_s,
        u"1.0b1"_s,  u"1.0b2"_s, u"1.0-rc.1"_s, u"1.0"_s,  u"1.0.1"_s,
        u"1.0.10"_s, u"1.1"_s,   u"2"_s,        u"10"_s,   u"99999999999999999999999999"_s};
    for (qsizetype i = 0; i < ascending.size(); ++i) {
        for (qsizetype j = 0; j < ascending.size(); ++j) {
            EXPECT_EQ(compareVersions(ascending[i], ascending[j]), i <=> j)
                << ascending[i].toStdString() << " and " << ascending[j].toStdString();
        }
    }
    for (const auto& [left, right] :
         {std::pair{u"1.0"_s, u"1"_s}, std::pair{u"v1.2"_s, u"V1.2"_s},
          std::pair{u"01.002"_s, u"1.2.0.0"_s}, std::pair{u"1.2+git5"_s, u"1.2"_s}}) {
        EXPECT_EQ(compareVersions(left, right), std::strong_ordering::equal) << left.toStdString();
    }
}

TEST(Appcast, OffersTheNewestVersionForThisSystem) {
    const QByteArray fields =
        "<u:version>1.5</u:version><u:shortVersionString>1.5 Otter</u:shortVersionString>";
    const QByteArray enclosure =
        "url=\"https://host/q\" length=\"9\" u:edSignature=\"" + kSignature + "\"";
    const struct {
        const char* name;
        QByteArray items;
        QString offered;  ///< Empty: nothing newer.
    } rows[] = {
        {"nothing", "", {}},
        {"the same", item("1.0"), {}},
        {"older", item("0.9"), {}},
        {"newer", item("1.1"), u"1.1"_s},
        {"in any order", item("1.2") + item("1.10") + item("1.9"), u"1.10"_s},
        {"for Linux", item("1.1", "u:os=\"linux\""), u"1.1"_s},
        {"for another system", item("1.1", "u:os=\"windows\"") + item("1.05"), u"1.05"_s},
        {"two systems in one item",
         "<item><enclosure u:os=\"macos\" u:version=\"2\" url=\"https://host/m\"/>"
         "<enclosure u:os=\"Linux\" u:version=\"1.3\" url=\"https://host/l\"/></item>",
         u"1.3"_s},
        {"a newer kernel only",
         item("1.1", {}, "<u:minimumSystemVersion>6.2</u:minimumSystemVersion>"),
         {}},
        {"an older kernel too",
         item("1.1", {}, "<u:minimumSystemVersion>6.1</u:minimumSystemVersion>"), u"1.1"_s},
        {"testers' channel", item("1.1", {}, "<u:channel>beta</u:channel>"), {}},
        {"versions as elements", "<item>" + fields + "<enclosure " + enclosure + "/></item>",
         u"1.5 Otter"_s},
        {"elements behind", "<item><enclosure " + enclosure + "/>" + fields + "</item>",
         u"1.5 Otter"_s},
        {"no version", "<item><enclosure " + enclosure + "/></item>", {}},
        {"no enclosure", "<item>" + fields + "</item>", {}},
        {"a version that shows something else",
         item("9\xe2\x80\xae"
              "1"),
         {}},
        {"a version without end", item(QByteArray(65, '9')), {}},
        {"patches inside an item",
         "<item><u:deltas><enclosure u:version=\"9\" url=\"https://host/d\"/></u:deltas></item>",
         {}},
        {"notes are not looked at",
         item("1.1", {}, "<description><![CDATA[<item>]]></description>"), u"1.1"_s},
    };
    for (const auto& row : rows) {
        const auto items = parseAppcast(feed(row.items), u"6.1.0"_s);
        ASSERT_TRUE(items.has_value()) << row.name << items.error().text.toStdString();
        const auto newest = newestUpdate(*items, u"1.0"_s);
        EXPECT_EQ(newest ? newest->displayVersion : QString(), row.offered) << row.name;
    }
}

TEST(Appcast, WhatIsNoFeedIsAnError) {
    const QByteArray entities =
        "<!DOCTYPE rss [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;&a;\">]>"
        "<rss><channel><title>&b;</title></channel></rss>";
    const struct {
        const char* name;
        QByteArray bytes;
    } rows[] = {
        {"nothing", ""},
        {"a web page", "<html><body>log in</body></html>"},
        {"cut off", feed(item("1.1")).chopped(20)},
        {"no XML", "1.1 https://host/q"},
        {"entities", entities},
        {"an unknown entity", feed("<item>&nbsp;</item>")},
        {"a document type", "<!DOCTYPE rss SYSTEM \"file:///etc/passwd\"><rss/>"},
        {"too deep", feed(QByteArray("<a>").repeated(15) + QByteArray("</a>").repeated(15))},
        {"too many", feed(item("1.1").repeated(1'001))},
        {"too large", feed(QByteArray(kLargestFeedBytes, ' '))},
        {"an unbound prefix",
         "<rss><channel><item><x:version>1</x:version></item></channel></rss>"},
    };
    for (const auto& row : rows) {
        const auto items = parseAppcast(row.bytes, u"6.1"_s);
        ASSERT_FALSE(items.has_value()) << row.name;
        EXPECT_EQ(items.error().kind, ErrorKind::Malformed) << row.name;
    }
}

TEST(Appcast, AnItemIsCompleteOnlyWithAnHttpsAddressASizeAndASignature) {
    const QByteArray good = item("1.1");
    const QByteArray signature = kSignature;
    const struct {
        QByteArray from;
        QByteArray to;
        bool isComplete;
    } rows[] = {
        {"", "", true},
        {"https://", "http://", false},
        {"https://host/q.tar.xz", "q.tar.xz", false},
        {"https://host", "file://host", false},
        {"https://host", "https://", false},
        {"\"9\"", "\"0\"", false},
        {"\"9\"", "\"-9\"", false},
        {"\"9\"", "\"9e3\"", false},
        {"\"9\"", "\"268435456\"", true},
        {"\"9\"", "\"268435457\"", false},
        {signature, "", false},
        {signature, signature.first(84), false},
        {signature, QByteArray(63, 's').toBase64(), false},
        {signature, QByteArray("!").repeated(88), false},
    };
    for (const auto& row : rows) {
        QByteArray changed = good;
        const auto items = parseAppcast(
            feed(row.from.isEmpty() ? changed : changed.replace(row.from, row.to)), {});
        ASSERT_TRUE(items.has_value());
        ASSERT_EQ(items->size(), 1U);
        EXPECT_EQ(isComplete(items->front()), row.isComplete)
            << row.from.toStdString() << " -> " << row.to.toStdString();
    }
}

TEST(UpdateSignature, HoldsForTheKeyTheMessageAndNothingElse) {
    // RFC 8032, 7.1, the first test.
    const auto key =
        QByteArray::fromHex("d75a980182b10ab7d54bfed3c964073a0ee172f3daa62325af021a68f707511a");
    const auto signature = QByteArray::fromHex(
        "e5564300c360ac729086e2cc806e828a84877f1eb8e5d974d873e06522490155"
        "5fb8821590a33bacc61e39701cf9b46bd25bf5f0595bbe24655141438e7a100b");
    EXPECT_TRUE(isSignedBy(key, "", signature));
    QByteArray otherKey = key;
    otherKey[0] = 1;
    QByteArray otherSignature = signature;
    otherSignature[63] = 0x0a;
    EXPECT_FALSE(isSignedBy(key, "x", signature));
    // As long as nothing, for who counts in 16 bits.
    EXPECT_FALSE(isSignedBy(key, QByteArray(65'536, 'x'), signature));
    EXPECT_FALSE(isSignedBy(otherKey, "", signature));
    EXPECT_FALSE(isSignedBy(key, "", otherSignature));
    EXPECT_FALSE(isSignedBy(key, "", QByteArray(64, '\0')));
    EXPECT_FALSE(isSignedBy(key.first(31), "", signature));
    EXPECT_FALSE(isSignedBy(key, "", signature.first(63)));
    EXPECT_FALSE(isSignedBy({}, "", {}));
}

}  // namespace
}  // namespace quillo
