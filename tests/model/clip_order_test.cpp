// SPDX-License-Identifier: MIT
#include "model/clip_order.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace quillo;

namespace {

QUuid id(QChar letter) {
    return QUuid(letter.unicode(), 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xAB);
}

QList<QUuid> ids(const QString& letters) {
    QList<QUuid> result;
    for (const QChar letter : letters) {
        result += id(letter);
    }
    return result;
}

// An order written as letters, a pinned one followed by "!".
ClipOrderEntries order(const QString& text) {
    ClipOrderEntries result;
    for (const QChar c : text) {
        if (c == u'!') {
            result.last().isPinned = true;
        } else {
            result += ClipOrderEntry{id(c)};
        }
    }
    return result;
}

QString text(const QList<QUuid>& clips) {
    QString result;
    for (const QUuid& clip : clips) {
        result += QChar(char16_t(clip.data1));
    }
    return result;
}

QString text(const ClipOrderEntries& entries) {
    QString result;
    for (const ClipOrderEntry& entry : entries) {
        result += text(QList{entry.clipId}) + (entry.isPinned ? u"!"_s : u""_s);
    }
    return result;
}

TEST(ClipOrderTest, PlacesMembersAndIsNormalised) {
    struct Row {
        QString order, newestFirst, shown, normalized;
    };
    const Row rows[] = {
        {u""_s, u"CBA"_s, u"CBA"_s, u"CBA"_s},
        {u"B!"_s, u"CBA"_s, u"BCA"_s, u"B!CA"_s},
        {u"AB"_s, u"BA"_s, u"AB"_s, u"AB"_s},
        {u"A!BC"_s, u"NCBA"_s, u"ANBC"_s, u"A!BCN"_s},
        {u"ABC!"_s, u"NCBA"_s, u"ABCN"_s, u"ABC!N"_s},
        {u"ABC"_s, u"NMCBA"_s, u"NMABC"_s, u"ABCNM"_s},
        {u"X!A"_s, u"NA"_s, u"AN"_s, u"AN"_s},
        {u"XYZ!A"_s, u"NA"_s, u"AN"_s, u"AN"_s},
        {u"X!"_s, u""_s, u""_s, u""_s},
        {u"ABA!"_s, u"BA"_s, u"AB"_s, u"AB"_s},
    };
    for (const Row& row : rows) {
        const auto members = ids(row.newestFirst);
        EXPECT_EQ(text(orderedClipIds(order(row.order), members)), row.shown)
            << row.order.toStdString();
        EXPECT_EQ(text(normalizedOrder(order(row.order), members)), row.normalized)
            << row.order.toStdString();
    }
}

TEST(ClipOrderTest, PinsInPlaceAndAtTheEnd) {
    EXPECT_EQ(text(withPinToggled({}, id(u'A'))), u"A!"_s);
    EXPECT_EQ(text(withPinToggled(order(u"AB"_s), id(u'C'))), u"ABC!"_s);
    EXPECT_EQ(text(withPinToggled(order(u"A!B"_s), id(u'A'))), u"AB"_s);
    EXPECT_TRUE(isPinned(order(u"AB!B"_s), id(u'B')));
    EXPECT_FALSE(isPinned(order(u"BB!"_s), id(u'B'))) << "the first entry counts";
    EXPECT_FALSE(isPinned({}, id(u'B')));
    EXPECT_EQ(text(orderAsShown(order(u"BA!X!"_s), ids(u"ANB"_s))), u"A!NB"_s);
}

TEST(ClipOrderTest, MovesOneEntry) {
    struct Row {
        qsizetype from, to;
        QString moved;
    };
    const Row rows[] = {{0, 2, u"BCA"_s}, {0, 3, u"BCA"_s},  {2, 0, u"CAB"_s},
                        {1, 1, u"ABC"_s}, {0, 1, u"BAC"_s},  {0, 4, u"ABC"_s},
                        {3, 0, u"ABC"_s}, {-1, 0, u"ABC"_s}, {0, -1, u"ABC"_s}};
    for (const Row& row : rows) {
        EXPECT_EQ(text(withEntryMoved(order(u"ABC"_s), row.from, row.to)), row.moved)
            << row.from << " to " << row.to;
    }
    EXPECT_TRUE(withEntryMoved({}, 0, 0).isEmpty());
}

TEST(ClipOrderTest, AMoveInANarrowedListLandsBesideItsVisibleNeighbour) {
    struct Row {
        QString order, visible;
        OrderMove move;
        QString moved;
    };
    const Row rows[] = {
        {u"ABCDE"_s, u"ABCDE"_s, {0, 2}, u"BCADE"_s}, {u"ABCDE"_s, u"ABCDE"_s, {4, 1}, u"AEBCD"_s},
        {u"ABCDE"_s, u"ACE"_s, {0, 1}, u"BCADE"_s},   {u"ABCDE"_s, u"ACE"_s, {0, 3}, u"BCDEA"_s},
        {u"ABCDE"_s, u"ACE"_s, {2, 1}, u"ABECD"_s},   {u"ABCDE"_s, u"ACE"_s, {2, 0}, u"EABCD"_s},
        {u"ABCDE"_s, u"BD"_s, {1, 0}, u"ADBCE"_s},    {u"ABCDE"_s, u"BD"_s, {0, 2}, u"ACDBE"_s},
        {u"ABCDE"_s, u"ECA"_s, {0, 2}, u"AEBCD"_s},   {u"ABCDE"_s, u"ACE"_s, {1, 1}, u"ABCDE"_s},
        {u"ABCDE"_s, u"ACE"_s, {2, 3}, u"ABCDE"_s},   {u"ABCDE"_s, u"ACE"_s, {3, 0}, u"ABCDE"_s},
        {u"ABCDE"_s, u"ACE"_s, {0, 4}, u"ABCDE"_s},   {u"ABCDE"_s, u"AXE"_s, {0, 1}, u"ABCDE"_s},
        {u"ABCDE"_s, u"XA"_s, {0, 1}, u"ABCDE"_s},    {u""_s, u""_s, {0, 0}, u""_s},
    };
    for (const Row& row : rows) {
        const auto whole = moveInOrder(ids(row.order), ids(row.visible), row.move);
        ClipOrderEntries entries = order(row.order);
        if (whole.has_value()) {
            entries = withEntryMoved(entries, whole->from, whole->to);
        }
        EXPECT_EQ(text(entries), row.moved)
            << row.visible.toStdString() << row.move.from << " to " << row.move.to;
    }
}

TEST(ClipOrderTest, IsStoredInOneExactForm) {
    const ClipOrderEntries entries = order(u"a!b"_s);
    const QByteArray document =
        R"([{"clipID":"00000061-0000-0000-0000-0000000000AB","isPinned":true},)"
        R"({"clipID":"00000062-0000-0000-0000-0000000000AB","isPinned":false}])";
    EXPECT_EQ(encodeClipOrder(entries), document);
    EXPECT_EQ(decodeClipOrder(document), entries);
    EXPECT_EQ(encodeClipOrder({}), "[]");
}

TEST(ClipOrderTest, ADocumentOfAnotherFormIsEmpty) {
    const QByteArray uuid = "00000061-0000-0000-0000-0000000000ab";
    const QByteArray good = R"({"isPinned":false, "new":[1], "clipID":")" + uuid + R"("})";
    EXPECT_EQ(decodeClipOrder("[" + good + "]"), order(u"a"_s));
    const QByteArray documents[] = {
        "",
        "[",
        "null",
        good,
        "[" + good + "]x",
        "[" + good + ",7]",
        "[" + good + R"(,{"clipID":")" + uuid + R"("}])",
        R"([{"isPinned":true}])",
        R"([{"clipID":")" + uuid + R"(","isPinned":1}])",
        R"([{"clipID":")" + uuid + R"(","isPinned":null}])",
        R"([{"clipID":"{)" + uuid + R"(}","isPinned":true}])",
        R"([{"clipID":")" + QByteArray(uuid).remove(8, 1) + R"(","isPinned":true}])",
        R"([{"clipID":")" + QByteArray(uuid).replace('b', 'g') + R"(","isPinned":true}])",
        R"([{"clipID":")" + QByteArray(uuid).replace('-', '0') + R"(","isPinned":true}])",
        R"([{"clipID":97,"isPinned":true}])",
        QByteArray(100'000, '['),
        QByteArray("[{\"clipID\":\"\xff\xfe\0", 14),
    };
    for (const QByteArray& document : documents) {
        EXPECT_TRUE(decodeClipOrder(document).isEmpty()) << document.left(90).toStdString();
    }
}

}  // namespace
