// SPDX-License-Identifier: MIT
#include <random>

#include "model/clip_history.h"
#include "model/pinboard.h"
#include "model/store/page_scrubber.h"
#include "store_fixture.h"

using namespace Qt::StringLiterals;
using namespace quillo;
using namespace quillo::testing;

namespace {

class ForgettingTest : public StoreTest {
protected:
    void SetUp() override {
        StoreTest::SetUp();
        open();
    }
};

TEST_F(ForgettingTest, WhatWasDeletedOrReplacedIsInNoFileOnceTheStoreIsIdle) {
    using Action = std::function<void(ObjectContext&, Clip&)>;
    struct Row {
        const char* name;
        Action action;
    };
    const Row rows[] = {
        {"deleted", [](ObjectContext& context, Clip& clip) { context.remove(clip); }},
        {"replaced",
         [](ObjectContext&, Clip& clip) {
             clip.setPlaintext(u"harmless"_s);
             clip.setImageData(std::nullopt);
         }},
        {"beyond the limit",
         [this](ObjectContext& context, Clip&) {
             (void)Clip::create(context, clock.now() + std::chrono::hours(1));
             ASSERT_TRUE(context.save());
             EXPECT_EQ(enforceHistoryLimit(context, 1), 1);
         }},
        {"everything", [](ObjectContext& context, Clip&) { EXPECT_TRUE(context.batchDelete({})); }},
    };
    for (const Row& row : rows) {
        const QUuid key = addText(u"TOPSECRET"_s);
        onStore([&](ObjectContext& context) {
            context.object<Clip>(key)->setImageData(QByteArray("PICTURE!").repeated(2'000));
            EXPECT_TRUE(context.save());
        });
        ASSERT_TRUE(fileBytes().contains("TOPSECRET")) << row.name;
        ASSERT_TRUE(fileBytes().contains("PICTURE!")) << row.name;
        onStore([&](ObjectContext& context) {
            row.action(context, *context.object<Clip>(key));
            EXPECT_TRUE(context.save());
        });
        EXPECT_FALSE(fileBytes().contains("TOPSECRET")) << row.name;
        EXPECT_FALSE(fileBytes().contains("PICTURE!")) << row.name;
        onStore([](ObjectContext& context) { EXPECT_TRUE(context.batchDelete({})); });
    }
}

// Guards against the copies of rows that balancing a tree leaves in a page's unused bytes, which
// secure_delete does not reach: without the scrubber this finds some.
TEST(PageScrubberTest, NoTraceStaysWhenPagesAreSplitAndMerged) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"t"_s);
    ASSERT_TRUE(QFile(path).open(QIODevice::WriteOnly));
    const auto database = std::move(*SqliteDatabase::open(path.toUtf8()));
    ASSERT_TRUE(database->execute(
        "PRAGMA journal_mode = WAL; PRAGMA secure_delete = ON; PRAGMA synchronous = OFF; "
        "CREATE TABLE t(k INTEGER PRIMARY KEY, x TEXT); BEGIN"));
    std::mt19937 random(4);  // One of the runs that leave a trace.
    const auto mark = [](int i) { return "MARK" + QByteArray::number(i).rightJustified(6, '0'); };
    std::vector<std::pair<qint64, QByteArray>> alive;
    QList<QByteArray> gone;
    for (int i = 0; i < 400; ++i) {
        constexpr int kRepeats[] = {1, 5, 20, 50, 150, 300, 700};
        const QByteArray fresh = mark(i);
        const Value text(QString::fromLatin1((fresh + '.').repeated(kRepeats[random() % 7])));
        const auto action = alive.empty() ? 0 : random() % 5;
        if (action <= 2) {
            ASSERT_TRUE(database->run("INSERT INTO t VALUES(?, ?)", {Value(qint64{i}), text}));
            alive.emplace_back(i, fresh);
            continue;
        }
        const auto chosen = alive.begin() + long(random() % alive.size());
        gone.append(chosen->second);
        if (action == 3) {
            ASSERT_TRUE(
                database->run("UPDATE t SET x = ? WHERE k = ?", {text, Value(chosen->first)}));
            chosen->second = fresh;
        } else {
            ASSERT_TRUE(database->run("DELETE FROM t WHERE k = ?", {Value(chosen->first)}));
            alive.erase(chosen);
        }
    }
    ASSERT_TRUE(database->execute("COMMIT"));
    ASSERT_TRUE(database->truncateLog());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    QSet<QByteArray> present;
    for (qsizetype at = 0; (at = bytes.indexOf("MARK", at)) >= 0; ++at) {
        present.insert(bytes.mid(at, mark(0).size()));
    }
    EXPECT_TRUE(present.contains(alive.front().second));
    const auto found =
        std::ranges::count_if(gone, [&](const QByteArray& text) { return present.contains(text); });
    EXPECT_EQ(found, 0) << "of " << gone.size();
}

TEST(PageScrubberTest, ClearsOnlyTheGapOfWellFormedTreePages) {
    const auto page = [](unsigned char flag, int cells, int contentStart) {
        std::vector<unsigned char> bytes(512, 0x55);
        bytes[0] = flag;
        bytes[3] = 0;
        bytes[4] = static_cast<unsigned char>(cells);
        bytes[5] = static_cast<unsigned char>(contentStart >> 8);
        bytes[6] = static_cast<unsigned char>(contentStart & 0xff);
        return bytes;
    };
    struct Row {
        const char* name;
        unsigned char flag;
        int cells;
        int contentStart;
        int cleared;
    };
    const Row rows[] = {
        {"leaf table", 13, 2, 400, 400 - 12},
        {"leaf index", 10, 0, 512, 512 - 8},
        {"interior table", 5, 1, 500, 500 - 14},
        {"interior index", 2, 1, 14, 0},
        {"overflow page", 0, 2, 400, 0},
        {"content beyond the page", 13, 2, 600, 0},
        {"pointers beyond the content", 13, 250, 400, 0},
    };
    for (const Row& row : rows) {
        auto bytes = page(row.flag, row.cells, row.contentStart);
        EXPECT_EQ(clearUnallocatedBytes(bytes, false), row.cleared > 0) << row.name;
        const auto zeros = std::count(bytes.begin() + 8, bytes.end(), 0);
        EXPECT_EQ(zeros, row.cleared) << row.name;
        EXPECT_FALSE(clearUnallocatedBytes(bytes, false)) << row.name;
    }
}

TEST_F(ForgettingTest, DeletingEverythingIsFinishedByTheNextStart) {
    onStore([this](ObjectContext& context) {
        for (int i = 0; i < 50; ++i) {
            const auto clip = Clip::create(context, clock.now());
            clip->setPlaintext(u"TOPSECRET"_s);
            clip->setImageData(QByteArray("PICTURE!").repeated(2'000));
            context.relate(clip->objectId(), Relationship::ClipPinboards,
                           context.insert<Pinboard>()->objectId());
        }
        EXPECT_TRUE(context.save());
    });
    QTemporaryDir killed;
    onStore([&](ObjectContext& context) {
        EXPECT_EQ(context.batchDelete({}).value().size(), 50);
        // The files as a process leaves them that is killed here.
        QDir(killed.path()).mkdir(u"Quillo"_s);
        for (const QString& suffix : {u""_s, u"-wal"_s}) {
            QFile::copy(filePath() + suffix, killed.filePath(u"Quillo/Quillo.sqlite"_s) + suffix);
        }
    });
    EXPECT_FALSE(fileBytes().contains("PICTURE!"));
    close();
    folder.swap(killed);
    ASSERT_TRUE(fileBytes().contains("TOPSECRET"));
    ASSERT_TRUE(fileBytes().contains("PICTURE!"));
    open();
    controller->waitUntilIdle();
    EXPECT_FALSE(fileBytes().contains("TOPSECRET"));
    EXPECT_FALSE(fileBytes().contains("PICTURE!"));
    const auto raw = SqliteDatabase::open(filePath().toUtf8());
    // The one free page is that of the marker.
    for (const auto& [query, expected] : std::initializer_list<std::pair<QByteArray, int>>{
             {"SELECT count(*) FROM Clip", 0},
             {"SELECT rows FROM RowCount WHERE entity = 0", 0},
             {"SELECT count(*) FROM Pinboard", 50},
             {"SELECT count(*) FROM ClipPinboards", 0},
             {"SELECT count(*) FROM Tombstone", 50},
             {"SELECT count(*) FROM ChangeLog WHERE entity = 0 AND change = 2", 50},
             {"SELECT count(*) FROM ChangeLog WHERE entity = 0 AND change <> 2", 0},
             {"SELECT count(*) FROM ChangeLog WHERE entity = 1 AND change = 1", 100},
             {"PRAGMA freelist_count", 1}}) {
        EXPECT_EQ((*raw)->queryInteger(query), expected) << query.constData();
    }
    addText(u"counted again"_s);
    EXPECT_EQ(controller->viewContext().count({}).value(), 1);
    onStore([](ObjectContext& context) { EXPECT_EQ(context.batchDelete({}).value().size(), 1); });
    EXPECT_EQ(controller->viewContext().count({}).value(), 0);
}

TEST_F(ForgettingTest, ErasingTracesRemovesStoresSetAside) {
    close();
    writeFile("SECRET that is no database");
    open();
    ASSERT_EQ(QDir(folderPath()).entryList({u"set-aside-*"_s}, QDir::Dirs).size(), 1);
    controller->eraseTraces();
    controller->waitUntilIdle();
    EXPECT_TRUE(QDir(folderPath()).entryList({u"set-aside-*"_s}, QDir::Dirs).isEmpty());
    EXPECT_EQ(controller->viewContext().count({}).value(), 0);
}

}  // namespace
