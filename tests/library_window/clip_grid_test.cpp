// SPDX-License-Identifier: MIT
// What the grid decides without a window: its geometry, its keys, its selection, its words.
#include <gtest/gtest.h>

#include <random>

#include "library/window/clip_grid_band.h"
#include "library/window/clip_grid_reordering.h"
#include "library/window/clip_grid_texts.h"
#include "library/window/clip_selection.h"
#include "library/window/flow_layout.h"

using namespace std::chrono_literals;

namespace quillo {
namespace {

TEST(ClipGridLayout, ColumnsAreAsManyAsFitAndCardsBetween150And180) {
    const struct {
        int viewport;
        int columns;
        int card;
    } rows[] = {{182, 1, 150}, {212, 1, 180}, {343, 1, 180},   {344, 2, 150},
                {505, 2, 180}, {506, 3, 150}, {568, 3, 170},   {668, 4, 150},
                {100, 1, 68},  {10, 1, 1},    {5'000, 30, 154}};
    for (const auto& row : rows) {
        const ClipGridLayout layout{100, row.viewport};
        EXPECT_EQ(layout.columns(), row.columns) << row.viewport;
        EXPECT_EQ(layout.cardWidth(), row.card) << row.viewport;
        const int right = layout.cardRect(row.columns - 1).right() + 1;
        EXPECT_NEAR(layout.cardRect(0).left(), row.viewport - right, 1) << row.viewport;
    }
}

TEST(ClipGridLayout, PaintsAndHitsExactlyTheCardsThatAreThere) {
    for (const qsizetype count : {0, 1, 2, 3, 4, 100}) {
        const ClipGridLayout layout{count, 506};
        for (int top = -50; top < layout.contentHeight(); top += 13) {
            const QRect seen(0, top, 506, 250);
            const ClipGridLayout::Range range = layout.cardsBetween(seen.top(), seen.bottom());
            for (qsizetype i = 0; i < count; ++i) {
                const bool isInRange = i >= range.first && i <= range.last;
                EXPECT_TRUE(isInRange || !layout.cardRect(i).intersects(seen)) << top << ' ' << i;
            }
            EXPECT_LE(range.last - range.first + 1, 9);
        }
        for (qsizetype i = 0; i < count; ++i) {
            const QRect card = layout.cardRect(i);
            EXPECT_EQ(layout.indexAt(card.topLeft()), i);
            EXPECT_EQ(layout.indexAt(card.bottomRight()), i);
            EXPECT_EQ(layout.indexAt(card.bottomRight() + QPoint(3, 0)), -1);
            EXPECT_EQ(layout.indexAt(card.bottomLeft() + QPoint(0, 3)), -1);
        }
        EXPECT_EQ(layout.indexAt(layout.cardRect(count).center()), -1);
    }
}

// Three columns, eleven cards: the last row has two. A page is two rows.
TEST(ClipGridLayout, KeysWalkTheRows) {
    const ClipGridLayout layout{11, 506};
    const struct {
        GridMove move;
        qsizetype from;
        qsizetype to;
    } rows[] = {{GridMove::Right, 2, 3},    {GridMove::Right, 10, 10},   {GridMove::Left, 3, 2},
                {GridMove::Left, 0, 0},     {GridMove::Down, 1, 4},      {GridMove::Down, 8, 10},
                {GridMove::Down, 10, 10},   {GridMove::Up, 4, 1},        {GridMove::Up, 2, 2},
                {GridMove::PageDown, 1, 7}, {GridMove::PageDown, 5, 10}, {GridMove::PageUp, 10, 4},
                {GridMove::PageUp, 4, 1},   {GridMove::First, 7, 0},     {GridMove::Last, 0, 10},
                {GridMove::Down, -1, 0},    {GridMove::Last, -1, 10}};
    for (const auto& row : rows) {
        EXPECT_EQ(movedInGrid(row.move, row.from, layout, 400), row.to)
            << int(row.move) << " from " << row.from;
    }
    EXPECT_EQ(movedInGrid(GridMove::Down, 0, {0, 506}, 400), -1);
}

// Three columns of cards 150 wide from 16, 12 apart; eleven cards.
TEST(ClipGridLayout, TheGapIsTheOneNearestToThePoint) {
    const ClipGridLayout layout{11, 506};
    const struct {
        QPoint point;
        qsizetype before;
        QPoint line;  // Where the mark starts, from the card that stands in its row.
    } rows[] = {{{20, 20}, 0, {9, 4}},        {{90, 20}, 0, {9, 4}},     {{92, 20}, 1, {171, 4}},
                {{500, 20}, 3, {495, 4}},     {{-40, 200}, 3, {9, 164}}, {{20, -90}, 0, {9, 4}},
                {{500, 600}, 11, {333, 484}}, {{20, 9'000}, 9, {9, 484}}};
    for (const auto& row : rows) {
        const ClipGridLayout::Gap gap = layout.gapAt(row.point);
        EXPECT_EQ(gap.before, row.before) << row.point.x() << ' ' << row.point.y();
        EXPECT_EQ(gap.line.topLeft(), row.line) << row.point.x() << ' ' << row.point.y();
    }
    EXPECT_EQ(ClipGridLayout({0, 506}).gapAt({300, 300}).before, 0);
}

TEST(ClipGridBand, SelectsWhatItTouchesBesideWhatWasSelected) {
    QList<QUuid> list;
    for (int i = 0; i < 11; ++i) {
        list.append(QUuid::createUuid());
    }
    const ClipGridLayout layout{list.size(), 506};
    ClipSelection before;
    before.choose(list[4]);
    ClipSelection selection = before;
    ClipGridBand band({10, 170}, before);
    std::mt19937 random(1);
    for (int i = 0; i < 500; ++i) {
        const QPoint point(int(random() % 700) - 100, int(random() % 900) - 100);
        band.drawTo(point, layout, list, selection);
        for (int card = 0; card < list.size(); ++card) {
            const bool isTouched = layout.cardRect(card).intersects(band.area());
            ASSERT_EQ(selection.contains(list[card]), isTouched || card == 4)
                << card << ' ' << point.x() << ' ' << point.y();
        }
    }
    const QList<QUuid> shrunk = list.mid(5);
    band.startAnew(list, shrunk, selection);
    band.drawTo({11, 171}, {shrunk.size(), 506}, shrunk, selection);
    EXPECT_EQ(selection.inOrderOf(shrunk), QList{list[5]}) << "the next one takes its place";
}

// Capitals move.
TEST(ClipGridReordering, ClipsGoTogetherToAGapOrPastOthers) {
    const struct {
        const char* list;
        bool bySteps;
        int to;
        const char* after;  // Null for no move.
    } rows[] = {
        {"Abcd", false, 2, "bAcd"},   {"Abcd", false, 4, "bcdA"},  {"Abcd", false, 1, nullptr},
        {"Abcd", false, 0, nullptr},  {"abcD", false, 0, "Dabc"},  {"aBcDe", false, 5, "aceBD"},
        {"aBcDe", false, 2, "aBDce"}, {"aBCd", false, 2, nullptr}, {"aBCd", false, 5, nullptr},
        {"abc", false, 1, nullptr},   {"Abcd", true, 1, "bAcd"},   {"aBcDe", true, 1, "aceBD"},
        {"aBcDe", true, -1, "BDace"}, {"AbC", true, -1, "ACb"},    {"ABc", true, -1, nullptr},
        {"aBC", true, 1, nullptr},    {"AB", true, 1, nullptr},    {"", true, 1, nullptr}};
    for (const auto& row : rows) {
        QList<QUuid> list;
        QSet<QUuid> moved;
        QHash<QUuid, char> names;
        for (const char name : std::string_view(row.list)) {
            list.append(QUuid::createUuid());
            names.insert(list.last(), name);
            if (name < 'a') {
                moved.insert(list.last());
            }
        }
        const auto move =
            row.bySteps ? moveBySteps(list, moved, row.to) : moveToGap(list, moved, row.to);
        ASSERT_EQ(move.has_value(), row.after != nullptr) << row.list << ' ' << row.to;
        std::string after;
        for (const QUuid& clip : move ? withClipsMoved(list, *move) : QList<QUuid>()) {
            after += names[clip];
        }
        EXPECT_EQ(after, row.after != nullptr ? row.after : "") << row.list << ' ' << row.to;
    }
    const QList<QUuid> list{QUuid::createUuid(), QUuid::createUuid()};
    EXPECT_EQ(withClipsMoved(list, {{list[1]}, QUuid::createUuid()}), list) << "its place is gone";
}

TEST(ClipGridLayout, ShowingACardScrollsNoFartherThanItMust) {
    const ClipGridLayout layout{100, 506};
    EXPECT_EQ(layout.scrollToShow(0, 500, 400), 0);
    EXPECT_EQ(layout.scrollToShow(4, 100, 400), 100);
    const int scroll = layout.scrollToShow(6, 0, 400);
    const QRect seen(0, scroll, 506, 400);
    EXPECT_TRUE(seen.contains(layout.cardRect(6)));
    EXPECT_LT(scroll, layout.cardRect(0).bottom());
}

TEST(ClipSelection, FollowsAListThatChanges) {
    QList<QUuid> list;
    for (int i = 0; i < 8; ++i) {
        list.append(QUuid::createUuid());
    }
    ClipSelection selection;
    selection.choose(list[2]);
    selection.extendTo(list[4], list);
    EXPECT_EQ(selection.inOrderOf(list), list.mid(2, 3));
    selection.extendTo(list[1], list);
    EXPECT_EQ(selection.inOrderOf(list), list.mid(1, 2)) << "a range starts where it was started";
    selection.toggle(list[6]);
    selection.toggle(list[1]);
    EXPECT_EQ(selection.inOrderOf(list), (QList{list[2], list[6]}));

    QList<QUuid> grown = list;
    grown.prepend(QUuid::createUuid());
    selection.follow(list, grown);
    EXPECT_EQ(selection.inOrderOf(grown), (QList{list[2], list[6]}));
    EXPECT_EQ(selection.current(), list[1]);

    selection.choose(list[6]);
    QList<QUuid> shrunk = list;
    shrunk.removeAt(6);
    selection.follow(list, shrunk);
    EXPECT_EQ(selection.inOrderOf(shrunk), QList{list[7]}) << "the next one takes its place";
    selection.follow(shrunk, shrunk.first(3));
    EXPECT_EQ(selection.current(), list[2]);
    selection.follow(shrunk.first(3), {});
    EXPECT_TRUE(selection.isEmpty());
}

TEST(ClipGridTexts, AnAgeIsToldInItsLargestUnit) {
    const Timestamp now(1'000'000h);
    const struct {
        std::chrono::minutes age;
        const char* text;
    } rows[] = {{-5min, "now"},     {0min, "now"},         {1min, "1 min"},
                {59min, "59 min"},  {60min, "1 hr"},       {23h + 59min, "23 hr"},
                {24h, "1 day"},     {13 * 24h, "13 days"}, {14 * 24h, "2 wk"},
                {59 * 24h, "8 wk"}, {60 * 24h, "2 mo"},    {800 * 24h, "2 yr"}};
    for (const auto& row : rows) {
        EXPECT_EQ(relativeAge(now - row.age, now).toStdString(), row.text);
    }
}

TEST(FlowLayout, BoxesThatDoNotFitGoToTheNextLine) {
    const QList<QSize> sizes{{40, 10}, {50, 20}, {30, 10}, {200, 10}, {10, 10}};
    const FlowPlaces places = flowPlaces(sizes, 100, 8);
    EXPECT_EQ(
        places.boxes,
        (QList<QRect>{
            {0, 0, 40, 10}, {48, 0, 50, 20}, {0, 28, 30, 10}, {0, 46, 200, 10}, {0, 64, 10, 10}}));
    EXPECT_EQ(places.height, 74);
    EXPECT_EQ(flowPlaces(sizes, 0, 8).boxes.last().top(), 10 + 20 + 10 + 10 + 4 * 8);
    EXPECT_EQ(flowPlaces({}, 100, 8).height, 0);
}

}  // namespace
}  // namespace quillo
