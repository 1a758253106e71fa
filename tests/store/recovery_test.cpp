// SPDX-License-Identifier: MIT
#include <sqlite3.h>
#include <sys/stat.h>

#include <cerrno>

#include "model/clip_history.h"
#include "model/store/object_store.h"
#include "model/store/sqlite_error.h"
#include "model/store/store_files.h"
#include "store_fixture.h"

using namespace Qt::StringLiterals;
using namespace quillo;
using namespace quillo::testing;

namespace {

class RecoveryTest : public StoreTest {
protected:
    void makeStoreWithClips() {
        open();
        onStore([this](ObjectContext& context) {
            for (int i = 0; i < 40; ++i) {
                Clip::create(context, clock.now())
                    ->setPlaintext(QString(400, QChar(u'a' + i % 26)));
            }
            ASSERT_TRUE(context.save());
        });
        close();
    }
    QByteArray storeBytes() {
        QFile file(filePath());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }
    mode_t modeOf(const QString& path) {
        struct stat status = {};
        EXPECT_EQ(stat(path.toUtf8().constData(), &status), 0) << path.toStdString();
        return status.st_mode & 0777;
    }
    qsizetype count() { return controller->viewContext().count({}).value(); }
};

TEST_F(RecoveryTest, AFreshStoreIsForItsOwnerAlone) {
    umask(0);
    open();
    umask(022);
    addText(u"t"_s);
    EXPECT_EQ(controller->state(), StoreState::Loaded);
    EXPECT_EQ(controller->storePath(), filePath());
    EXPECT_EQ(modeOf(folderPath()), mode_t{0700});
    for (const QString& suffix : {u""_s, u"-wal"_s, u"-shm"_s}) {
        EXPECT_EQ(modeOf(filePath() + suffix), mode_t{0600}) << suffix.toStdString();
    }
    close();
    chmod(filePath().toUtf8().constData(), 0644);
    chmod(folderPath().toUtf8().constData(), 0755);
    open();
    EXPECT_EQ(modeOf(folderPath()), mode_t{0700});
    EXPECT_EQ(modeOf(filePath()), mode_t{0600});
    EXPECT_EQ(count(), 1);
}

TEST_F(RecoveryTest, AFileThatIsNoUsableStoreIsSetAsideAndAnEmptyOneOpened) {
    makeStoreWithClips();
    const QByteArray sound = storeBytes();
    ASSERT_GT(sound.size(), 8 * 4096);
    QByteArray scribbledHeader = sound;
    scribbledHeader.replace(0, 16, "0123456789abcdef");
    QByteArray scribbledSchema = sound;
    scribbledSchema.replace(100, 3000, QByteArray(3000, '\x5a'));
    QByteArray otherTables;
    {
        QTemporaryDir other;
        QFile(other.filePath(u"o"_s)).open(QIODevice::WriteOnly);
        const auto path = other.filePath(u"o"_s);
        ASSERT_TRUE((*SqliteDatabase::open(path.toUtf8()))
                        ->execute("CREATE TABLE Clip(x); PRAGMA user_version = 1"));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        otherTables = file.readAll();
    }
    struct Row {
        const char* name;
        QByteArray bytes;
    };
    const Row rows[] = {
        {"text", "just some notes\n"},
        {"a long text", QByteArray("just some notes\n").repeated(1'000)},
        {"truncated in a page", sound.left(5'000)},
        {"truncated at a page", sound.left(4 * 4096)},
        {"half of the header", sound.left(50)},
        {"header scribbled over", scribbledHeader},
        {"schema scribbled over", scribbledSchema},
        {"tables of another program", otherTables},
    };
    for (const Row& row : rows) {
        writeFile(row.bytes);
        for (const char* suffix : {".shm", ".wal"}) {
            QFile side(filePath() + QLatin1StringView(suffix));
            ASSERT_TRUE(side.open(QIODevice::WriteOnly));
        }
        open();
        EXPECT_EQ(controller->state(), StoreState::Loaded) << row.name;
        EXPECT_EQ(count(), 0) << row.name;
        const QDir aside(storesSetAside(filePath()).last());
        QFile kept(aside.filePath(u"Quillo.sqlite"_s));
        ASSERT_TRUE(kept.open(QIODevice::ReadOnly)) << row.name;
        EXPECT_EQ(kept.readAll(), row.bytes) << row.name << " is kept as it was";
        EXPECT_TRUE(aside.exists(u"Quillo.sqlite.wal"_s)) << row.name;
        EXPECT_TRUE(aside.exists(u"Quillo.sqlite.shm"_s)) << row.name;
        EXPECT_EQ(modeOf(aside.path()), mode_t{0700});
        close();
        clock.advance(std::chrono::seconds(1));
    }
    EXPECT_EQ(storesSetAside(filePath()).size(), 3) << "the last three are kept";
}

TEST_F(RecoveryTest, ADirectoryInTheStoresPlaceIsSetAside) {
    ASSERT_TRUE(QDir().mkpath(filePath() + u"/inside"_s));
    open();
    EXPECT_EQ(controller->state(), StoreState::Loaded);
    EXPECT_TRUE(QFileInfo(filePath()).isFile());
    EXPECT_TRUE(QDir(storesSetAside(filePath()).value(0)).exists(u"Quillo.sqlite/inside"_s));
}

TEST_F(RecoveryTest, AnEmptyFileIsAFreshStore) {
    writeFile("");
    open();
    EXPECT_EQ(controller->state(), StoreState::Loaded);
    EXPECT_EQ(count(), 0);
    EXPECT_TRUE(storesSetAside(filePath()).isEmpty());
}

TEST_F(RecoveryTest, DamageFoundWhileRunningIsAnErrorAndNothingMore) {
    makeStoreWithClips();
    QByteArray bytes = storeBytes();
    constexpr qsizetype kPage = 4096;
    const qsizetype damaged = bytes.indexOf(QByteArray(400, 'z')) / kPage * kPage;
    ASSERT_GT(damaged, 0);
    bytes.replace(damaged, kPage, QByteArray(kPage, '\x5a'));
    writeFile(bytes);
    open();
    ASSERT_EQ(controller->state(), StoreState::Loaded) << "the page is not needed at the start";
    const auto clips = controller->viewContext().fetch<Clip>({});
    ASSERT_FALSE(clips);
    EXPECT_EQ(clips.error().kind, ErrorKind::Malformed);
    onStore([&](ObjectContext& context) {
        EXPECT_FALSE(context.batchDelete({}));
        EXPECT_TRUE(insertOrBump(context, "new", clock, [](Clip&) {})) << "captures go on";
    });
    EXPECT_TRUE(storesSetAside(filePath()).isEmpty());
}

TEST_F(RecoveryTest, AFileInTheFoldersPlaceIsLeftAlone) {
    QFile file(folderPath());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("mine");
    file.close();
    open();
    EXPECT_EQ(controller->state(), StoreState::InMemory);
    close();
    EXPECT_EQ(QFileInfo(folderPath()).size(), 4);
}

TEST(StoreErrorTest, OnlyADamagedOrForeignFileCountsAsUnusable) {
    struct Row {
        const char* name;
        int code;
        int systemError;
        ErrorKind kind;
    };
    const Row rows[] = {
        {"busy", SQLITE_BUSY, 0, ErrorKind::Busy},
        {"busy recovering", SQLITE_BUSY_RECOVERY, 0, ErrorKind::Busy},
        {"locked", SQLITE_LOCKED_SHAREDCACHE, 0, ErrorKind::Busy},
        {"full", SQLITE_FULL, 0, ErrorKind::DiskFull},
        {"no space", SQLITE_IOERR_WRITE, ENOSPC, ErrorKind::DiskFull},
        {"no quota", SQLITE_IOERR_WRITE, EDQUOT, ErrorKind::DiskFull},
        {"read-only", SQLITE_READONLY_DIRECTORY, 0, ErrorKind::NotPermitted},
        {"no rights", SQLITE_CANTOPEN, EACCES, ErrorKind::NotPermitted},
        {"read-only file system", SQLITE_CANTOPEN, EROFS, ErrorKind::NotPermitted},
        {"bad disk", SQLITE_IOERR_READ, EIO, ErrorKind::Failed},
        {"too many files", SQLITE_CANTOPEN, EMFILE, ErrorKind::Failed},
        {"out of memory", SQLITE_NOMEM, ENOMEM, ErrorKind::Failed},
        {"corrupt", SQLITE_CORRUPT_INDEX, 0, ErrorKind::Malformed},
        {"no database", SQLITE_NOTADB, 0, ErrorKind::Malformed},
        {"directory", SQLITE_CANTOPEN, EISDIR, ErrorKind::Malformed},
        {"too big", SQLITE_TOOBIG, 0, ErrorKind::TooLarge},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(errorKindFromSqlite(row.code, row.systemError), row.kind) << row.name;
    }
}

TEST_F(RecoveryTest, AFullDiskCostsTheCaptureThatMetItAndNothingElse) {
    auto connections = openStore({.file = filePath(), .maxPages = 64});
    ASSERT_TRUE(connections);
    ObjectStore store(std::move(*connections), clock);
    QStringList outcomes;
    store.perform([&](ObjectContext& context) {
        for (const int size : {100, 1 << 20, 200}) {
            const auto done =
                insertOrBump(context, QByteArray::number(size), clock,
                             [size](Clip& clip) { clip.setImageData(QByteArray(size, 'i')); });
            outcomes += done                                       ? u"stored"_s
                        : done.error().kind == ErrorKind::DiskFull ? u"full"_s
                                                                   : done.error().text;
        }
    });
    store.waitUntilIdle();
    EXPECT_EQ(outcomes, (QStringList{u"stored"_s, u"full"_s, u"stored"_s}));
    EXPECT_EQ(store.viewContext().count({}).value(), 2);
}

}  // namespace
