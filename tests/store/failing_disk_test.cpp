// SPDX-License-Identifier: MIT
#include "model/clip_history.h"
#include "model/store/object_store.h"
#include "model/store/store_files.h"
#include "store/failing_vfs.h"
#include "store_fixture.h"

using namespace Qt::StringLiterals;
using namespace quillo;
using namespace quillo::testing;

namespace {

struct Fault {
    const char* name;
    DiskOperation operation;
    int code;
    bool isMetAtWork;     ///< Else only by the tidying, which has its own line in the log.
    bool isMetAtOpening;  ///< A sound store is only read then.
};

constexpr Fault kFaults[] = {
    {"a read", DiskOperation::Read, SQLITE_IOERR_READ, true, true},
    {"a write", DiskOperation::Write, SQLITE_IOERR_WRITE, true, false},
    {"a write on a full disk", DiskOperation::Write, SQLITE_FULL, true, false},
    {"a sync", DiskOperation::Sync, SQLITE_IOERR_FSYNC, true, false},
    {"a truncation", DiskOperation::Truncate, SQLITE_IOERR_TRUNCATE, false, false},
    {"a lock", DiskOperation::Lock, SQLITE_IOERR_LOCK, false, true},
    {"a map of shared memory", DiskOperation::MapShared, SQLITE_IOERR_SHMMAP, false, true},
    {"a lock of shared memory", DiskOperation::LockShared, SQLITE_IOERR_SHMLOCK, true, true},
    {"an opening", DiskOperation::Open, SQLITE_CANTOPEN, false, true},
};

// Each of the first ones, then ever fewer.
int next(int nth) {
    return nth + 1 + nth / 8;
}

/// A store with three clips on a disk on which one operation fails.
class FailingDiskTest : public StoreTest {
protected:
    void SetUp() override {
        StoreTest::SetUp();
        open();
        for (const char* name : {"a", "b", "c"}) {
            onStore([&](ObjectContext& context) { (void)store(context, name); });
        }
        // Copied while it is open, so that there is a log to read as after a crash.
        onStore([&](ObjectContext& context) {
            (void)store(context, "c");
            for (const QString& suffix : {u""_s, u"-wal"_s}) {
                QFile file(filePath() + suffix);
                ASSERT_TRUE(file.open(QIODevice::ReadOnly));
                m_template.append({suffix, file.readAll()});
            }
        });
        ASSERT_GT(m_template[1].second.size(), 0);
        close();
    }
    void putTemplate() {
        ASSERT_TRUE(QDir(folderPath()).removeRecursively());
        ASSERT_TRUE(QDir().mkpath(folderPath()));
        for (const auto& [suffix, bytes] : m_template) {
            QFile file(filePath() + suffix);
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            file.write(bytes);
        }
        m_expected = {u"a"_s, u"b"_s, u"c"_s};
    }
    Result<StoreOutcome> store(ObjectContext& context, const QByteArray& name) {
        clock.advance(std::chrono::seconds(1));
        return insertOrBump(context, name, clock, [&](Clip& clip) {
            clip.setPlaintext(QString::fromLatin1(name));
            clip.setImageData(name.repeated(9'000));
        });
    }

    // Each does one thing and notes what must be in the store by what was reported.
    bool capture(ObjectContext& context, const QByteArray& name) {
        const auto outcome = store(context, name);
        if (outcome && *outcome == StoreOutcome::Bumped) {
            m_expected.removeOne(QString::fromLatin1(name));
        }
        if (outcome) {
            m_expected.append(QString::fromLatin1(name));
        }
        return outcome.has_value();
    }
    bool limit(ObjectContext& context) {
        const auto done = enforceHistoryLimit(context, 3);
        while (done && m_expected.size() > 3) {
            m_expected.removeFirst();
        }
        return done.has_value();
    }
    bool remove(ObjectContext& context) {
        const auto clips = context.fetch<Clip>({});
        if (!clips) {
            return false;
        }
        const auto& clip = clips->first();
        const QString text = clip->plaintext().value();
        context.remove(*clip);
        const bool isSaved = context.save().has_value();
        isSaved ? (void)m_expected.removeOne(text) : context.rollback();
        return isSaved;
    }
    /// How many of the four failed; the tidying that follows may be what meets the fault.
    int work(ObjectStore& objects) {
        int failures = 0;
        const auto perform = [&](auto task) {
            objects.perform(
                [&, task](ObjectContext& context) { failures += task(context) ? 0 : 1; });
        };
        perform([this](ObjectContext& context) { return capture(context, "new"); });
        perform([this](ObjectContext& context) { return capture(context, "a"); });
        perform([this](ObjectContext& context) { return limit(context); });
        perform([this](ObjectContext& context) { return remove(context); });
        objects.waitUntilIdle();
        return failures;
    }
    /// Lets the nth operation fail, for ever larger numbers until none meets the failure.
    void forEachFailure(const Fault& fault,
                        const std::function<void(FailingVfs&, int, const std::string&)>& attempt) {
        for (int nth = 1;; nth = next(nth)) {
            const std::string where = fault.name + (" number " + std::to_string(nth));
            putTemplate();
            FailingVfs disk;
            attempt(disk, nth, where);
            const bool hasFailed = disk.hasFailed();
            expectWhatWasReported(where);
            if (!hasFailed || HasFailure()) {
                break;
            }
        }
    }
    void expectWhatWasReported(const std::string& where) {
        open();
        EXPECT_EQ(texts(controller->viewContext(), Qt::AscendingOrder), m_expected) << where;
        close();
        const auto raw = SqliteDatabase::open(filePath().toUtf8());
        EXPECT_EQ((*raw)->queryInteger("SELECT count(*) FROM pragma_integrity_check "
                                       "WHERE integrity_check <> 'ok'"),
                  0)
            << where;
    }

    QStringList m_expected;
    QList<std::pair<QString, QByteArray>> m_template;
};

TEST_F(FailingDiskTest, EachFailureIsReportedAndCostsOnlyWhatMetIt) {
    for (const Fault& fault : kFaults) {
        int reported = 0;
        forEachFailure(fault, [&](FailingVfs& disk, int nth, const std::string& where) {
            auto connections = openStore({filePath()});
            ASSERT_TRUE(connections) << where;
            ObjectStore objects(std::move(*connections), clock);
            disk.failAt(fault.operation, nth, fault.code);
            const int failures = work(objects);
            EXPECT_LE(failures, disk.hasFailed() ? 4 : 0) << where;
            reported += failures;
            disk.repair();
            objects.perform([&](ObjectContext& context) {
                EXPECT_TRUE(capture(context, "later")) << where << ": the next save works";
            });
        });
        EXPECT_EQ(reported > 0, fault.isMetAtWork) << fault.name;
    }
}

TEST_F(FailingDiskTest, AStoreThatFailsWhileItIsOpenedIsNotTouched) {
    for (const Fault& fault : kFaults) {
        int refused = 0;
        forEachFailure(fault, [&](FailingVfs& disk, int nth, const std::string& where) {
            disk.failAt(fault.operation, nth, fault.code);
            refused += loadStore({filePath()}, clock.now()).connections ? 0 : 1;
            disk.repair();
            EXPECT_TRUE(storesSetAside(filePath()).isEmpty()) << where;
        });
        EXPECT_EQ(refused > 0, fault.isMetAtOpening) << fault.name;
    }
}

}  // namespace
