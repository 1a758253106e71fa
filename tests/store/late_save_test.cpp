// SPDX-License-Identifier: MIT
#include <atomic>

#include "model/clip_history.h"
#include "model/pinboard.h"
#include "store_fixture.h"
#include "support/memory_user_defaults.h"

using namespace Qt::StringLiterals;
using namespace quillo;
using namespace quillo::testing;

namespace {

/// Tells how often it was read: each attempt to open the store reads it.
class CountingClock final : public Clock {
public:
    [[nodiscard]] Timestamp now() const override {
        ++readings;
        return {};
    }
    mutable std::atomic<int> readings = 0;
};

/// A store that somebody else holds locked until unlock().
class LateSaveTest : public StoreTest {
protected:
    void SetUp() override {
        StoreTest::SetUp();
        open();
        capture("known", u"known"_s);
        capture("other", u"other"_s);
        close();
        other = std::move(*SqliteDatabase::open(filePath().toUtf8()));
        ASSERT_TRUE(
            other->execute("PRAGMA locking_mode = EXCLUSIVE; BEGIN IMMEDIATE; "
                           "CREATE TABLE Held(x); DROP TABLE Held; COMMIT"));
        log.clear();
    }
    void TearDown() override { close(); }
    void openLocked(qint64 limit = 0) {
        defaults = std::make_unique<MemoryUserDefaults>(QJsonObject{{u"maxHistoryItems"_s, limit}});
        auto held = options();
        held.defaults = defaults.get();
        controller = std::make_unique<PersistenceController>(held);
        ASSERT_EQ(controller->state(), StoreState::InMemory);
    }
    void unlock() {
        other.reset();
        ASSERT_TRUE(waitUntil([this] { return controller->state() == StoreState::Loaded; }));
    }
    void capture(const QByteArray& digest, const QString& text) {
        onStore([&](ObjectContext& context) {
            EXPECT_TRUE(
                insertOrBump(context, digest, clock, [&](Clip& clip) { clip.setPlaintext(text); }));
        });
        clock.advance(std::chrono::seconds(1));
    }
    ObjectContext& view() { return controller->viewContext(); }

    std::unique_ptr<SqliteDatabase> other;
    std::unique_ptr<MemoryUserDefaults> defaults;
};

TEST_F(LateSaveTest, WhatWasHeldInMemoryIsSavedThroughTheNormalWay) {
    openLocked();
    EXPECT_EQ(view().count({}).value(), 0);
    capture("a", u"first"_s);
    capture("known", u"known"_s);
    const Timestamp last = clock.now();
    capture("b", u"second"_s);
    EXPECT_EQ(texts(view()), (QStringList{u"second"_s, u"known"_s, u"first"_s}));
    const auto held = view().fetch<Clip>({}).value();
    int everything = 0;
    int stateChanges = 0;
    QObject::connect(&view(), &ObjectContext::changed,
                     [&](const ChangeSet& changes) { everything += changes.everything ? 1 : 0; });
    QObject::connect(controller.get(), &PersistenceController::stateChanged,
                     [&] { ++stateChanges; });
    unlock();
    ASSERT_TRUE(waitUntil([&] { return everything == 1; }));
    EXPECT_EQ(stateChanges, 1);
    EXPECT_EQ(texts(view()), (QStringList{u"second"_s, u"known"_s, u"first"_s, u"other"_s}));
    for (const auto& clip : held) {
        EXPECT_EQ(clip->isDeleted(), clip->plaintext() == u"known"_s)
            << "a record keeps its identity unless the store had it already";
    }
    close();
    open();
    EXPECT_EQ(view().count({}).value(), 4);
    FetchRequest newest;
    newest.sort = {{at(ClipAttribute::CreatedAt), Qt::DescendingOrder}};
    EXPECT_EQ(view().fetch<Clip>(newest).value().first()->createdAt(), last);
}

TEST_F(LateSaveTest, TheHistoryLimitIsAppliedAfterwards) {
    openLocked(2);
    capture("a", u"first"_s);
    unlock();
    EXPECT_EQ(texts(view()), (QStringList{u"first"_s, u"other"_s}));
}

TEST_F(LateSaveTest, GroupsMadeMeanwhileAndPendingChangesSurvive) {
    openLocked();
    capture("known", u"known"_s);
    const auto group = view().insert<Pinboard>();
    group->setTitle(u"Group"_s);
    view().relate(view().fetchIds({}).value().first(), Relationship::ClipPinboards,
                  group->objectId());
    ASSERT_TRUE(view().save());
    const auto pending = view().insert<Pinboard>();
    pending->setTitle(u"Pending"_s);
    unlock();
    ASSERT_TRUE(view().save());
    close();
    open();
    FetchRequest byTitle;
    byTitle.sort = {{std::to_underlying(PinboardAttribute::Title), Qt::AscendingOrder}};
    const auto groups = view().fetch<Pinboard>(byTitle).value();
    ASSERT_EQ(groups.size(), 2);
    EXPECT_EQ(groups[1]->title(), u"Pending"_s);
    const auto members = view().related(groups[0]->objectId(), Relationship::ClipPinboards).value();
    ASSERT_EQ(members.size(), 1);
    EXPECT_EQ(view().object<Clip>(members[0].key)->plaintext(), u"known"_s);
}

TEST_F(LateSaveTest, AttemptsThatFailAreLoggedOnce) {
    const CountingClock counting;
    auto held = options();
    held.clock = &counting;
    controller = std::make_unique<PersistenceController>(held);
    const int before = counting.readings;
    ASSERT_TRUE(waitUntil([&] { return counting.readings >= before + 2; })) << "two attempts";
    controller->waitUntilIdle();
    const QStringList errors = log.lines().filter(u"load error"_s);
    EXPECT_EQ(errors.size(), 1) << errors.join(u'\n').toStdString();
    EXPECT_TRUE(QDir(folderPath()).entryList({u"set-aside-*"_s}, QDir::Dirs).isEmpty());
    close();
}

}  // namespace
