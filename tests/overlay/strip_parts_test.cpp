// SPDX-License-Identifier: MIT
// The parts of the strip and of the bar, each without a display.
#include <gtest/gtest.h>

#include <QAbstractEventDispatcher>
#include <QEventLoop>
#include <QTimer>

#include "overlay/bar_layout.h"
#include "overlay/pending_deletions.h"
#include "overlay/strip_animator.h"
#include "overlay/strip_reordering.h"
#include "overlay/strip_scroller.h"
#include "overlay/strip_selection.h"
#include "support/wait_until.h"

using namespace std::chrono_literals;

namespace quillo::testing {
namespace {

QUuid clip(char name) {
    return QUuid::createUuidV5(QUuid(), QByteArray(1, name));
}

QList<QUuid> clips(const char* names) {
    QList<QUuid> result;
    for (; *names != 0; ++names) {
        result.append(clip(*names));
    }
    return result;
}

TEST(StripAnimator, CardsStartWhereTheyWere) {
    const struct {
        const char* before;
        const char* after;
        QList<QPair<char, int>> shifts;
    } rows[] = {
        {"abcd", "abcd", {}},
        // A new card pushes the row to the right and comes in with it.
        {"abcd", "nabcd", {{'n', -1}, {'a', -1}, {'b', -1}, {'c', -1}, {'d', -1}}},
        {"abcd", "acd", {{'c', 1}, {'d', 1}}},
        {"abcd", "bcad", {{'b', 1}, {'c', 1}, {'a', -2}}},
        // One that is copied again comes first.
        {"abcd", "dabc", {{'d', 3}, {'a', -1}, {'b', -1}, {'c', -1}}},
        // Another search: nothing to see of where they came from.
        {"abcdefgh", "ahxyzuvw", {}},
        {"abcd", "wxyz", {}},
        {"", "abcd", {}},
    };
    for (const auto& row : rows) {
        QHash<QUuid, int> expected;
        for (const auto& [name, shift] : row.shifts) {
            expected.insert(clip(name), shift);
        }
        EXPECT_EQ(cardShifts(clips(row.before), clips(row.after)), expected)
            << row.before << " -> " << row.after;
    }
}

// A movement that ends while the next one is about to begin once left a frame timer behind, which
// woke the program sixty times a second for ever.
TEST(StripAnimator, NoTimerOutlivesTheMovement) {
    StripAnimator animator;
    animator.rearrange(clips("ab"), clips("ba"));
    ASSERT_TRUE(waitUntil([&] { return animator.offsetOf(clip('a')) > -200; }));
    animator.finish();
    QMetaObject::invokeMethod(&animator, &StripAnimator::finish, Qt::QueuedConnection);
    animator.rearrange(clips("ba"), clips("ab"));
    ASSERT_TRUE(waitUntil([&] { return !animator.isMoving(); }));

    int wakeUps = 0;
    QEventLoop loop;
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, &loop,
                     [&wakeUps] { ++wakeUps; });
    QTimer::singleShot(std::chrono::milliseconds(300), &loop, &QEventLoop::quit);
    loop.exec();
    EXPECT_LT(wakeUps, 10);
}

TEST(StripSelection, StaysWithItsClipOnceThePersonMovedIt) {
    StripSelection selection;
    selection.follow(clips("nabc"));
    EXPECT_EQ(selection.index(), 0);
    selection.select(2, clips("nabc"));
    selection.follow(clips("mnabc"));
    EXPECT_EQ(selection.index(), 3);
    // Deleted: the card that took its place, and from then on that one.
    selection.follow(clips("mnac"));
    EXPECT_EQ(selection.index(), 3);
    selection.follow(clips("cmna"));
    EXPECT_EQ(selection.index(), 0);
    selection.select(3, clips("cmna"));
    selection.follow(clips("cm"));
    EXPECT_EQ(selection.index(), 1);
    selection.follow({});
    EXPECT_EQ(selection.index(), 0);
}

TEST(StripScroller, StaysWithinItsLimitsAndAddsUpNotches) {
    StripScroller scroller;
    scroller.setLimit(1000);
    scroller.scrollBy(-50);
    EXPECT_EQ(scroller.position(), 0);
    scroller.glideBy(300);
    scroller.glideBy(300);
    ASSERT_TRUE(waitUntil([&] { return scroller.position() == 600; }));
    scroller.glideBy(9000);
    ASSERT_TRUE(waitUntil([&] { return scroller.position() == 1000; }));
    scroller.setLimit(400);
    EXPECT_EQ(scroller.position(), 400);
    scroller.glideBy(-300);
    scroller.jumpTo(10);
    EXPECT_FALSE(waitUntil([&] { return scroller.position() != 10; }, 250ms));
}

TEST(StripReordering, OnlyWithinAGroupAndNeverOverAPinnedCard) {
    QList<CardContent> shown;
    for (const char name : {'a', 'b', 'c'}) {
        CardContent card;
        card.clip = clip(name);
        card.isPinned = name == 'a';
        shown.append(card);
    }
    EXPECT_EQ(moveOnDragOver(shown, clip('c'), 1, true), (OrderMove{2, 1}));
    EXPECT_EQ(moveOnDragOver(shown, clip('b'), 2, true), (OrderMove{1, 2}));
    EXPECT_EQ(moveOnDragOver(shown, clip('c'), 1, false), std::nullopt);
    EXPECT_EQ(moveOnDragOver(shown, clip('c'), 0, true), std::nullopt) << "pinned";
    EXPECT_EQ(moveOnDragOver(shown, clip('c'), 2, true), std::nullopt) << "itself";
    EXPECT_EQ(moveOnDragOver(shown, clip('x'), 1, true), std::nullopt) << "not shown";
    EXPECT_EQ(moveOnDragOver(shown, clip('c'), 3, true), std::nullopt);
    EXPECT_EQ(moveOnDragOver(shown, clip('c'), -1, true), std::nullopt);
}

TEST(BarLayout, PartsGiveWayInOrderAndNeverOverlap) {
    const BarParts parts{.name = 52,
                         .badges = 190,
                         .titleBlock = 301,
                         .total = 92,
                         .search = 230,
                         .searchLeast = 150,
                         .chips = 604,
                         .lock = 80,
                         .lockSymbol = 38,
                         .buttons = 106};
    for (int width = 640; width < 2600; ++width) {
        const BarLayout layout = barLayout(parts, width);
        EXPECT_TRUE(layout.showsLockLabel || !layout.showsBadges) << width;
        EXPECT_TRUE(layout.searchWidth == 230 || !layout.showsLockLabel) << width;
        EXPECT_TRUE(layout.chipsWidth == 604 || layout.searchWidth == 150) << width;
        EXPECT_LE(layout.chipsLeft + layout.chipsWidth, layout.lockLeft) << width;
        EXPECT_LT(layout.lockLeft, layout.buttonsLeft) << width;
        EXPECT_EQ(layout.buttonsLeft + parts.buttons + kBarMargin, width);
    }
    EXPECT_TRUE(barLayout(parts, 1440).showsBadges);
    EXPECT_GE(barLayout(parts, 819).chipsWidth, 200);
}

TEST(PendingDeletions, AreUndoneTogetherOrDoneForGood) {
    QList<QUuid> gone;
    int changes = 0;
    {
        PendingDeletions deletions([&](const QList<QUuid>& ids) { gone += ids; }, 50ms);
        QObject::connect(&deletions, &PendingDeletions::changed, &deletions, [&] { ++changes; });
        deletions.add(clip('a'));
        deletions.add(clip('b'));
        deletions.add(clip('a'));
        EXPECT_EQ(deletions.clips(), clips("ab"));
        deletions.undo();
        EXPECT_FALSE(waitUntil([&] { return !gone.isEmpty(); }, 120ms));
        deletions.add(clip('c'));
        ASSERT_TRUE(waitUntil([&] { return gone == clips("c"); }));
        EXPECT_TRUE(deletions.clips().isEmpty());
        EXPECT_EQ(changes, 6);
        deletions.add(clip('d'));
        deletions.add(clip('e'));
        deletions.forget([](const QUuid& id) { return id == clip('e'); });
    }
    EXPECT_EQ(gone, clips("cd")) << "quitting completes what is pending and still there";
}

}  // namespace
}  // namespace quillo::testing
