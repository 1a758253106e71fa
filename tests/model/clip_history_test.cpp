// SPDX-License-Identifier: MIT
#include "model/clip_history.h"

#include "model/pinboard.h"
#include "store/store_fixture.h"

using namespace Qt::StringLiterals;
using namespace quillo;
using namespace quillo::testing;

namespace {

/// Moves on by a microsecond at each reading, to tell two readings apart.
class SteppingClock final : public Clock {
public:
    [[nodiscard]] Timestamp now() const override { return ++m_now; }

private:
    mutable Timestamp m_now{std::chrono::seconds(1'800'000'000)};
};

class ClipHistoryTest : public StoreTest {
protected:
    void SetUp() override {
        StoreTest::SetUp();
        open();
        log.clear();
    }
    StoreOutcome capture(const QByteArray& digest, const QString& text) {
        StoreOutcome outcome{};
        onStore([&](ObjectContext& context) {
            outcome = insertOrBump(context, digest, clock, [&](Clip& clip) {
                          clip.setPlaintext(text);
                      }).value();
        });
        clock.advance(std::chrono::seconds(1));
        return outcome;
    }
    ObjectContext& view() { return controller->viewContext(); }
};

TEST_F(ClipHistoryTest, ARepeatedCopyRenewsTheTwoDatesAndNothingElse) {
    EXPECT_EQ(capture("a", u"first"_s), StoreOutcome::Inserted);
    EXPECT_EQ(capture("b", u"second"_s), StoreOutcome::Inserted);
    EXPECT_TRUE(log.lines().isEmpty());
    ChangeSet seen;
    QObject::connect(&view(), &ObjectContext::changed,
                     [&](const ChangeSet& changes) { seen = changes; });
    const SteppingClock stepping;
    onStore([&](ObjectContext& context) {
        EXPECT_EQ(insertOrBump(context, "a", stepping,
                               [](Clip& clip) { clip.setPlaintext(u"never used"_s); })
                      .value(),
                  StoreOutcome::Bumped);
    });
    EXPECT_EQ(texts(view()), (QStringList{u"first"_s, u"second"_s}));
    ASSERT_EQ(seen.updated.size(), 1);
    EXPECT_EQ(seen.updated[0].attributes,
              (QList<int>{at(ClipAttribute::CreatedAt), at(ClipAttribute::ModifiedAt)}));
    const auto clip = view().object<Clip>(seen.updated[0].id.key);
    EXPECT_LT(clip->modifiedAt(), clip->createdAt()) << "modifiedAt is read first";
    EXPECT_EQ(clip->contentHash(), "a");
    EXPECT_EQ(log.lines(), QStringList{u"PasteboardWatcher: Duplicate found, bumped to front"_s});
}

TEST_F(ClipHistoryTest, ALookUpThatFailsIsLoggedAndCountsAsNotFound) {
    capture("a", u"first"_s);
    onStore([&](ObjectContext& context) {
        const auto other = SqliteDatabase::open(filePath().toUtf8());
        // A date that cannot be written makes the bump fail, not the insertion.
        ASSERT_TRUE((*other)->execute(
            "CREATE TRIGGER t BEFORE UPDATE ON Clip BEGIN SELECT RAISE(ABORT, 'no'); END"));
        EXPECT_EQ(
            insertOrBump(context, "a", clock, [](Clip& clip) { clip.setPlaintext(u"second"_s); })
                .value(),
            StoreOutcome::Inserted);
    });
    EXPECT_EQ(texts(view()).size(), 2);
    ASSERT_FALSE(log.lines().isEmpty());
    EXPECT_TRUE(
        log.lines().filter(u"PasteboardWatcher: Error checking for duplicates: no"_s).size() == 1)
        << log.lines().join(u'\n').toStdString();
}

TEST_F(ClipHistoryTest, TheOldestBeyondTheLimitGoEvenFromGroups) {
    for (int i = 0; i < 5; ++i) {
        capture(QByteArray::number(i), QString::number(i));
    }
    FetchRequest oldest;
    oldest.sort = {{at(ClipAttribute::CreatedAt), Qt::AscendingOrder}};
    oldest.limit = 1;
    view().relate(view().fetchIds(oldest).value().first(), Relationship::ClipPinboards,
                  view().insert<Pinboard>()->objectId());
    ASSERT_TRUE(view().save());
    struct Row {
        qint64 limit;
        qsizetype deleted;
    };
    for (const Row& row : {Row{0, 0}, Row{-3, 0}, Row{5, 0}, Row{3, 2}}) {
        onStore([&](ObjectContext& context) {
            EXPECT_EQ(enforceHistoryLimit(context, row.limit), row.deleted) << row.limit;
        });
    }
    EXPECT_EQ(texts(view()), (QStringList{u"4"_s, u"3"_s, u"2"_s}));
    EXPECT_EQ(log.lines(),
              QStringList{u"PasteboardWatcher: Enforcing history limit: deleting 2 old clips "
                          "(limit: 3, total: 5)"_s});
}

TEST_F(ClipHistoryTest, AClipWithoutADateIsTheOldest) {
    capture("a", u"dated"_s);
    onStore([](ObjectContext& context) {
        context.insert<Clip>()->setPlaintext(u"undated"_s);
        ASSERT_TRUE(context.save());
        EXPECT_EQ(enforceHistoryLimit(context, 1), 1);
    });
    EXPECT_EQ(texts(view()), QStringList{u"dated"_s});
}

}  // namespace
