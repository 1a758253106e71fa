// SPDX-License-Identifier: MIT
// A store that another process holds locked: here the work itself says so.
#include "model/store/held_work.h"

#include "store_fixture.h"
#include "support/in_memory_store.h"

using namespace Qt::StringLiterals;
using namespace quillo;
using namespace quillo::testing;

namespace {

class HeldWorkTest : public StoreTest {
protected:
    void SetUp() override {
        StoreTest::SetUp();
        auto memory = inMemory(clock);
        memory.lockedRetryInterval = std::chrono::milliseconds(1);
        controller = std::make_unique<PersistenceController>(memory);
        log.clear();
    }
    HeldWork::Work work(const QString& name) {
        return [this, name](ObjectContext&) -> Result<void> {
            if (isLocked) {
                ++attempts;
                return failure(ErrorKind::Busy, u"locked"_s);
            }
            done += name;
            return name == u"bad"_s ? Result<void>(failure(ErrorKind::DiskFull, u"full"_s))
                                    : Result<void>();
        };
    }

    std::atomic<bool> isLocked = false;
    std::atomic<int> attempts = 0;
    QStringList done;
};

TEST_F(HeldWorkTest, WhatALockHoldsUpIsDoneInOrderWhenTheLockIsGone) {
    controller->performPatiently(work(u"before"_s), 1);
    isLocked = true;
    for (const QString& name : {u"first"_s, u"bad"_s, u"third"_s}) {
        controller->performPatiently(work(name), 1);
    }
    ASSERT_TRUE(waitUntil([this] { return attempts >= 3; })) << "it is tried again by itself";
    isLocked = false;
    ASSERT_TRUE(waitUntil([this] {
        return log.lines().contains(
            u"PersistenceController: The store is free again; the clips held in memory are saved"_s);
    }));
    controller->performPatiently(work(u"last"_s), 1);
    controller->waitUntilIdle();
    EXPECT_EQ(done, (QStringList{u"before"_s, u"first"_s, u"bad"_s, u"third"_s, u"last"_s}));
    EXPECT_EQ(log.lines().filter(u"is locked"_s).size(), 1) << "said once";
}

TEST_F(HeldWorkTest, TheEndTriesOnceMoreAndSaysWhatIsLost) {
    isLocked = true;
    controller->performPatiently(work(u"a"_s), 1);
    controller->performPatiently(work(u"b"_s), 1);
    controller->waitUntilIdle();
    close();
    EXPECT_GE(attempts, 2);
    EXPECT_EQ(log.lines().last(),
              u"PersistenceController: The store stayed locked; clips that were held in memory: "
              "2 lost"_s);
}

TEST_F(HeldWorkTest, WhatIsHeldIsBounded) {
    struct Row {
        const char* name;
        HeldWork::Bounds bounds;
        QList<qint64> sizes;
        qsizetype kept;
    };
    const Row rows[] = {
        {"by number", {.pieces = 2, .bytes = 100}, {1, 1, 1}, 2},
        {"by size", {.pieces = 9, .bytes = 100}, {60, 60, 40}, 2},
        {"but for the first", {.pieces = 9, .bytes = 100}, {500, 1}, 1},
    };
    for (const Row& row : rows) {
        done.clear();
        log.clear();
        onStore([&](ObjectContext& context) {
            HeldWork held(row.bounds);
            isLocked = true;
            for (const qint64 size : row.sizes) {
                held.add(work(u"piece"_s), size, context);
            }
            isLocked = false;
            held.tryAgain(context);
            EXPECT_TRUE(held.isEmpty()) << row.name;
        });
        EXPECT_EQ(done.size(), row.kept) << row.name;
        EXPECT_EQ(log.lines().filter(u"is dropped"_s).size(), row.sizes.size() - row.kept)
            << row.name;
    }
}

}  // namespace
