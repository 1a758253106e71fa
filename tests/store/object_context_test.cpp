// SPDX-License-Identifier: MIT
#include <limits>

#include "model/pinboard.h"
#include "model/tag.h"
#include "store_fixture.h"

using namespace Qt::StringLiterals;
using namespace quillo;
using namespace quillo::testing;

namespace {

class ObjectContextTest : public StoreTest {
protected:
    void SetUp() override {
        StoreTest::SetUp();
        open();
    }
    ObjectContext& view() { return controller->viewContext(); }
};

TEST_F(ObjectContextTest, KeepsEveryKindOfValueAcrossAReopening) {
    const std::vector<std::pair<ClipAttribute, Value>> values = {
        {ClipAttribute::Attributed, QByteArray("{\\rtf\0x}", 8)},
        {ClipAttribute::CreatedAt, Timestamp{std::chrono::microseconds(-1)}},
        {ClipAttribute::FileBookmark, QByteArray("")},
        {ClipAttribute::FileSize, std::numeric_limits<qint64>::min()},
        {ClipAttribute::FileName, u"a\0b"_s},
        {ClipAttribute::ContentHash, QByteArray(32, '\xff')},
        {ClipAttribute::ImageData, QByteArray(300'000, 'i')},
        {ClipAttribute::IsPinned, qint64{1}},
        {ClipAttribute::LinkTitle, u""_s},
        {ClipAttribute::Plaintext, u"Grüße 🎉 \u0301"_s},
        {ClipAttribute::Type, qint64{-1}},
    };
    const auto clip = view().insert<Clip>();
    const QUuid key = clip->id();
    for (const auto& [attribute, value] : values) {
        clip->setValue(at(attribute), value);
    }
    ASSERT_TRUE(view().save());
    close();
    open();
    const auto again = view().object<Clip>(key);
    ASSERT_NE(again, nullptr);
    for (const auto& [attribute, value] : values) {
        EXPECT_EQ(again->value(at(attribute)), value) << at(attribute);
    }
    EXPECT_FALSE(again->urlString().has_value());
    EXPECT_FALSE(again->linkImageData().has_value());
}

TEST_F(ObjectContextTest, GivesRequiredAttributesAStartAndRefusesWrongTypes) {
    const auto clip = view().insert<Clip>();
    EXPECT_EQ(clip->rawType(), 0);
    clip->setValue(at(ClipAttribute::Plaintext), qint64{7});
    clip->setValue(at(ClipAttribute::Type), Value());
    EXPECT_FALSE(clip->plaintext().has_value());
    ASSERT_TRUE(view().save());
    EXPECT_EQ(view().count({}).value(), 1);
}

TEST_F(ObjectContextTest, LoadsAHeavyValueOnceAndDropsItUnlessChanged) {
    const QUuid key = addText(u"t"_s);
    onStore([&](ObjectContext& context) {
        context.object<Clip>(key)->setImageData("first");
        ASSERT_TRUE(context.save());
    });
    const auto clip = view().object<Clip>(key);
    EXPECT_EQ(clip->imageData(), "first");
    const auto other = SqliteDatabase::open(filePath().toUtf8());
    ASSERT_TRUE((*other)->execute("UPDATE ClipHeavy SET imageData = x'32'"));
    EXPECT_EQ(clip->imageData(), "first") << "it is kept until it is dropped";
    clip->dropHeavyValues();
    EXPECT_EQ(clip->imageData(), "2");
    clip->setImageData("mine");
    clip->dropHeavyValues();
    EXPECT_EQ(clip->imageData(), "mine");
    view().rollback();
    EXPECT_EQ(clip->imageData(), "2");
}

TEST_F(ObjectContextTest, TheSameRecordIsTheSameObjectWhileItIsHeld) {
    const QUuid key = addText(u"one"_s);
    const auto first = view().object<Clip>(key);
    EXPECT_EQ(view().fetch<Clip>({}).value().first(), first);
    EXPECT_EQ(view().object<Clip>(QUuid::createUuid()), nullptr);
    EXPECT_EQ(view().object<Pinboard>(key), nullptr);
    const auto made = view().insert<Clip>();
    EXPECT_EQ(view().object<Clip>(made->id()), made);
}

TEST_F(ObjectContextTest, FetchesByConditionsOrderAndWindow) {
    for (int i = 0; i < 6; ++i) {
        const auto clip = Clip::create(view(), clock.now() + std::chrono::seconds(i % 3));
        clip->setPlaintext(QString::number(i));
        clip->setFileSize(i);
        if (i % 2 == 0) {
            clip->setUrlString(u"u"_s);
        }
        if (i == 5) {
            clip->setImageData("i");
        }
    }
    ASSERT_TRUE(view().save());
    using enum Condition::Operator;
    constexpr int kSize = at(ClipAttribute::FileSize);
    constexpr int kUrl = at(ClipAttribute::UrlString);
    const auto absent = Condition{kUrl, IsAbsent, {}};
    struct Row {
        const char* name;
        QList<Condition> conditions;
        QStringList expected;
    };
    const Row rows[] = {
        {"equal", {{kSize, Equal, qint64{2}}}, {u"2"_s}},
        {"not equal", {{kSize, NotEqual, qint64{2}}}, {u"0"_s, u"1"_s, u"3"_s, u"4"_s, u"5"_s}},
        {"not equal counts the absent", {{kUrl, NotEqual, u"u"_s}}, {u"1"_s, u"3"_s, u"5"_s}},
        {"less", {{kSize, Less, qint64{2}}}, {u"0"_s, u"1"_s}},
        {"greater", {{kSize, Greater, qint64{4}}}, {u"5"_s}},
        {"both", {absent, {kSize, Less, qint64{3}}}, {u"1"_s}},
        {"present", {{kUrl, IsPresent, {}}}, {u"0"_s, u"2"_s, u"4"_s}},
        {"heavy", {{at(ClipAttribute::ImageData), IsPresent, {}}}, {u"5"_s}},
        {"heavy absent",
         {{at(ClipAttribute::ImageData), IsAbsent, {}}, {kSize, Greater, qint64{3}}},
         {u"4"_s}},
    };
    for (const Row& row : rows) {
        FetchRequest request;
        request.conditions = row.conditions;
        request.sort = {{kSize, Qt::AscendingOrder}};
        QStringList found;
        const auto clips = view().fetch<Clip>(request).value();
        for (const auto& clip : clips) {
            found += *clip->plaintext();
        }
        EXPECT_EQ(found, row.expected) << row.name;
        EXPECT_EQ(view().count(request).value(), row.expected.size()) << row.name;
    }
    FetchRequest window;
    window.sort = {{at(ClipAttribute::CreatedAt), Qt::DescendingOrder}};
    const auto all = view().fetchIds(window).value();
    window.limit = 2;
    window.offset = 3;
    EXPECT_EQ(view().fetchIds(window).value(), all.mid(3, 2));
    EXPECT_EQ(view().count(window).value(), 2);
    window.limit = 0;
    EXPECT_EQ(view().count(window).value(), 3);
    window.offset = 99;
    EXPECT_EQ(view().count(window).value(), 0);
    FetchRequest chosen;
    chosen.ids = {all[4], all[1], {Entity::Clip, QUuid::createUuid()}};
    EXPECT_EQ(view().fetchIds(chosen).value().size(), 2);
    EXPECT_EQ(view().count(chosen).value(), 2);
}

TEST_F(ObjectContextTest, RollbackUndoesWhatIsPending) {
    const QUuid key = addText(u"old"_s);
    const auto clip = view().object<Clip>(key);
    const auto made = view().insert<Clip>();
    clip->setPlaintext(u"new"_s);
    EXPECT_TRUE(view().hasChanges());
    view().rollback();
    EXPECT_FALSE(view().hasChanges());
    EXPECT_EQ(clip->plaintext(), u"old"_s);
    EXPECT_TRUE(made->isDeleted());
    view().remove(*clip);
    EXPECT_TRUE(clip->isDeleted());
    EXPECT_EQ(view().object<Clip>(key), nullptr);
    EXPECT_TRUE(view().fetchIds({}).value().isEmpty());
    view().rollback();
    EXPECT_FALSE(clip->isDeleted());
    EXPECT_EQ(view().object<Clip>(key), clip);
}

TEST_F(ObjectContextTest, RelationsIncludeUnsavedChangesAndGoWithTheirRecords) {
    const ObjectId clip{Entity::Clip, addText(u"c"_s)};
    const auto group = view().insert<Pinboard>();
    const auto tag = view().insert<Tag>();
    const ObjectId owner = group->objectId();
    view().relate(clip, Relationship::ClipPinboards, owner);
    view().relate(clip, Relationship::ClipTags, tag->objectId());
    EXPECT_EQ(view().related(clip, Relationship::ClipPinboards).value(), QList{owner});
    ASSERT_TRUE(view().save());
    view().relate(clip, Relationship::ClipPinboards, owner);
    ASSERT_TRUE(view().save()) << "a second time changes nothing";
    EXPECT_EQ(view().related(owner, Relationship::ClipPinboards).value(), QList{clip});
    view().unrelate(clip, Relationship::ClipPinboards, owner);
    EXPECT_TRUE(view().related(owner, Relationship::ClipPinboards).value().isEmpty());
    view().rollback();
    EXPECT_EQ(view().related(owner, Relationship::ClipPinboards).value().size(), 1);
    view().remove(*group);
    ASSERT_TRUE(view().save());
    EXPECT_TRUE(view().related(clip, Relationship::ClipPinboards).value().isEmpty());
    EXPECT_EQ(view().count({}).value(), 1) << "a group takes none of its clips along";
    view().relate(clip, Relationship::ClipPinboards, owner);
    EXPECT_TRUE(view().save()) << "a relation to a record that is gone is dropped";
}

TEST_F(ObjectContextTest, ATransactionThatFailsLeavesNothingBehind) {
    const QUuid key = addText(u"old"_s);
    const auto clip = view().object<Clip>(key);
    int published = 0;
    QObject::connect(&view(), &ObjectContext::changed, [&] { ++published; });
    std::shared_ptr<Clip> made;
    const auto done = view().transaction([&]() -> Result<void> {
        clip->setPlaintext(u"new"_s);
        made = view().insert<Clip>();
        EXPECT_TRUE(view().save());
        EXPECT_EQ(view().count({}).value(), 2);
        return failure(ErrorKind::Failed, u"changed my mind"_s);
    });
    EXPECT_FALSE(done);
    EXPECT_EQ(published, 0);
    EXPECT_EQ(clip->plaintext(), u"old"_s);
    EXPECT_TRUE(made->isDeleted());
    EXPECT_EQ(view().count({}).value(), 1);
    EXPECT_TRUE(view().transaction([&]() -> Result<void> {
        clip->setPlaintext(u"new"_s);
        return view().save();
    }));
    EXPECT_EQ(published, 1);
}

TEST_F(ObjectContextTest, ARecordThatCannotBeStoredDoesNotBlockLaterSaves) {
    const QUuid key = addText(u"first"_s);
    const auto bad = view().insert<Clip>(key);
    const auto good = view().insert<Clip>();
    EXPECT_FALSE(view().save());
    EXPECT_EQ(view().count({}).value(), 1) << "a failed save writes nothing";
    EXPECT_TRUE(view().hasChanges()) << "the sound record still waits";
    EXPECT_TRUE(bad->isDeleted());
    EXPECT_TRUE(view().save());
    EXPECT_EQ(view().count({}).value(), 2);
    EXPECT_FALSE(good->isDeleted());
}

TEST_F(ObjectContextTest, TheChangeLogNamesWhatChangedAndHoldsNoContents) {
    const QUuid key = addText(u"XSECRETX"_s);
    onStore([&](ObjectContext& context) {
        const auto clip = context.object<Clip>(key);
        clip->setLinkTitle(u"XTITLEX"_s);
        clip->setPinned(true);
        ASSERT_TRUE(context.save());
        context.remove(*clip);
        ASSERT_TRUE(context.save());
    });
    const auto database = SqliteDatabase::open(filePath().toUtf8());
    auto rows = (*database)->prepare(
        "SELECT change, attributes FROM ChangeLog WHERE entity = 0 ORDER BY number");
    QStringList lines;
    while (rows->step().value()) {
        lines += QString::number(rows->integer(0)) + u' ' +
                 std::get<QString>(rows->value(1, AttributeType::Text));
    }
    EXPECT_EQ(lines, (QStringList{u"0 createdAt,fileSize,isPinned,modifiedAt,plaintext,type"_s,
                                  u"1 isPinned,linkTitle"_s, u"2 "_s}));
    EXPECT_EQ((*database)->queryInteger("SELECT count(*) FROM Tombstone WHERE id = ?",
                                        {Value(key.toRfc4122())}),
              1);
}

TEST_F(ObjectContextTest, TheChangeLogAndTheTombstonesArePruned) {
    addText(u"old"_s);
    onStore([](ObjectContext& context) { ASSERT_TRUE(context.batchDelete({})); });
    clock.advance(std::chrono::days(91));
    {
        const auto database = SqliteDatabase::open(filePath().toUtf8());
        ASSERT_TRUE((*database)->execute("INSERT INTO ChangeLog VALUES(20222, 0, x'', 0, '')"));
        ASSERT_TRUE((*database)->execute(
            "INSERT INTO Tombstone WITH RECURSIVE n(i) AS (VALUES(1) UNION ALL SELECT i + 1 FROM n "
            "WHERE i < 10500) SELECT randomblob(16), 0, 9000000000000000 + i FROM n"));
    }
    onStore([&](ObjectContext& context) {
        for (int i = 0; i < 300; ++i) {
            (void)context.insert<Clip>();
        }
        ASSERT_TRUE(context.save());
    });
    const auto database = SqliteDatabase::open(filePath().toUtf8());
    EXPECT_EQ((*database)->queryInteger("SELECT count(*) FROM Tombstone"), 10000);
    EXPECT_EQ((*database)->queryInteger("SELECT min(deletedAt) FROM Tombstone"), 9000000000000501);
    EXPECT_EQ((*database)->queryInteger("SELECT count(*) FROM ChangeLog WHERE number < 10000"), 0);
    EXPECT_EQ((*database)->queryInteger("SELECT max(number) FROM ChangeLog"), 20522);
}

TEST_F(ObjectContextTest, BackgroundWorkAndMainThreadReadsRunSideBySide) {
    for (int i = 0; i < 60; ++i) {
        controller->perform([this, i](ObjectContext& context) {
            const auto clip = Clip::create(context, clock.now() + std::chrono::seconds(i));
            clip->setPlaintext(QString::number(i));
            EXPECT_TRUE(context.save());
        });
        EXPECT_TRUE(view().fetch<Clip>({}));
        view().insert<Pinboard>()->setSortIndex(i);
        EXPECT_TRUE(view().save());
    }
    controller->waitUntilIdle();
    QStringList expected;
    for (int i = 0; i < 60; ++i) {
        expected += QString::number(i);
    }
    EXPECT_EQ(texts(view(), Qt::AscendingOrder), expected);
    FetchRequest groups;
    groups.entity = Entity::Pinboard;
    EXPECT_EQ(view().count(groups).value(), 60);
}

TEST(ObjectIdTest, TravelsAsAnAddress) {
    const ObjectId id{Entity::Tag, QUuid::createUuid()};
    EXPECT_EQ(objectIdFromUri(uriFromObjectId(id)), id);
    for (const QString& wrong : {u""_s, u"x-quillo://Clip/7"_s, u"x-quillo://Other/1"_s,
                                 u"http://Clip/"_s + id.key.toString(QUuid::WithoutBraces)}) {
        EXPECT_TRUE(objectIdFromUri(wrong).key.isNull()) << wrong.toStdString();
    }
}

}  // namespace
