// SPDX-License-Identifier: MIT
#include "model/pinboard.h"
#include "store_fixture.h"

using namespace Qt::StringLiterals;
using namespace quillo;
using namespace quillo::testing;

namespace {

class MergingTest : public StoreTest {
protected:
    void SetUp() override {
        StoreTest::SetUp();
        open();
        key = addText(u"text"_s);
        clip = view().object<Clip>(key);
        QObject::connect(&view(), &ObjectContext::changed,
                         [this](const ChangeSet& changes) { seen.append(changes); });
    }
    void TearDown() override { clip.reset(); }
    ObjectContext& view() { return controller->viewContext(); }
    void change(const std::function<void(Clip&)>& work) {
        onStore([&](ObjectContext& context) {
            work(*context.object<Clip>(key));
            EXPECT_TRUE(context.save());
        });
    }
    void removeElsewhere() {
        onStore([this](ObjectContext& context) {
            context.remove(*context.object<Clip>(key));
            EXPECT_TRUE(context.save());
        });
    }

    QUuid key;
    std::shared_ptr<Clip> clip;
    QList<ChangeSet> seen;
};

TEST_F(MergingTest, ABackgroundSaveReachesTheHeldRecordOnTheMainThread) {
    EXPECT_FALSE(clip->linkImageData().has_value());
    change([](Clip& other) {
        other.setLinkTitle(u"Title"_s);
        other.setLinkImageData("picture");
    });
    EXPECT_EQ(clip->linkTitle(), u"Title"_s);
    EXPECT_EQ(clip->linkImageData(), "picture") << "the loaded absence is dropped";
    ASSERT_EQ(seen.size(), 1);
    ASSERT_EQ(seen[0].updated.size(), 1);
    EXPECT_EQ(seen[0].updated[0].id, clip->objectId());
    EXPECT_EQ(seen[0].updated[0].attributes,
              (QList<int>{at(ClipAttribute::LinkImageData), at(ClipAttribute::LinkTitle)}));
}

TEST_F(MergingTest, ChangesOfBothSidesMergeAttributeByAttribute) {
    clip->setPlaintext(u"mine"_s);
    change([](Clip& other) {
        other.setPlaintext(u"theirs"_s);
        other.setUrlHost(u"host"_s);
    });
    EXPECT_EQ(clip->plaintext(), u"mine"_s);
    EXPECT_EQ(clip->urlHost(), u"host"_s);
    ASSERT_TRUE(view().save());
    change([](Clip& other) {
        EXPECT_EQ(other.plaintext(), u"mine"_s) << "the later writer's value stands";
        EXPECT_EQ(other.urlHost(), u"host"_s);
        other.setPlaintext(u"last"_s);
    });
    clip->setPlaintext(u"not saved"_s);
    change([](Clip& other) { other.setPlaintext(u"theirs again"_s); });
    view().rollback();
    EXPECT_EQ(clip->plaintext(), u"theirs again"_s) << "undone to what the store holds now";
}

TEST_F(MergingTest, ADeletionElsewhereWinsOverPendingChanges) {
    clip->setPlaintext(u"mine"_s);
    const auto other = view().insert<Pinboard>();
    removeElsewhere();
    EXPECT_TRUE(clip->isDeleted());
    EXPECT_TRUE(view().save()) << "the other change is saved";
    EXPECT_EQ(view().count({}).value(), 0);
    clip->setPlaintext(u"again"_s);
    EXPECT_FALSE(view().hasChanges());
    EXPECT_EQ(view().object<Clip>(key), nullptr);
}

TEST_F(MergingTest, ASaveThatMeetsADeletionNotYetMergedDropsTheRecord) {
    controller->perform([this](ObjectContext& context) {
        context.remove(*context.object<Clip>(key));
        EXPECT_TRUE(context.save());
    });
    controller->waitUntilIdle();
    clip->setPlaintext(u"mine"_s);
    clip->setImageData("mine too");
    view().relate(clip->objectId(), Relationship::ClipPinboards,
                  view().insert<Pinboard>()->objectId());
    EXPECT_TRUE(view().save());
    EXPECT_TRUE(clip->isDeleted());
    EXPECT_EQ(view().count({}).value(), 0);
    EXPECT_FALSE(view().hasChanges());
}

TEST_F(MergingTest, BothSidesMayDeleteTheSameRecord) {
    view().remove(*clip);
    removeElsewhere();
    EXPECT_TRUE(view().save());
    EXPECT_TRUE(clip->isDeleted());
}

TEST_F(MergingTest, ABatchDeletionIsPublishedWithTheGroupsItEmptied) {
    const auto group = view().insert<Pinboard>();
    view().relate(clip->objectId(), Relationship::ClipPinboards, group->objectId());
    ASSERT_TRUE(view().save());
    seen.clear();
    onStore([this](ObjectContext& context) {
        EXPECT_EQ(context.batchDelete({}).value(), QList{clip->objectId()});
    });
    ASSERT_EQ(seen.size(), 1);
    EXPECT_EQ(seen[0].deleted, QList{clip->objectId()});
    ASSERT_EQ(seen[0].updated.size(), 1);
    EXPECT_EQ(seen[0].updated[0].id, group->objectId());
    EXPECT_TRUE(seen[0].updated[0].relationships);
    EXPECT_TRUE(clip->isDeleted());
}

TEST_F(MergingTest, AViewSaveReachesTheBackgroundContextThatIsAtWork) {
    std::atomic<int> stage = 0;
    QString before;
    QString after;
    controller->perform([&](ObjectContext& context) {
        const auto mine = context.object<Clip>(key);
        before = mine->plaintext().value_or(QString());
        stage = 1;
        while (stage != 2) {
            std::this_thread::yield();
        }
        (void)context.fetch<Pinboard>({});
        after = mine->plaintext().value_or(QString());
    });
    ASSERT_TRUE(waitUntil([&] { return stage == 1; }));
    clip->setPlaintext(u"from the view"_s);
    EXPECT_TRUE(view().save());
    stage = 2;
    controller->waitUntilIdle();
    EXPECT_EQ(before, u"text"_s);
    EXPECT_EQ(after, u"from the view"_s);
}

TEST_F(MergingTest, RefreshingReadsHeldRecordsAnewAndKeepsPendingChanges) {
    clip->setPlaintext(u"mine"_s);
    const auto made = view().insert<Clip>();
    {
        const auto other = SqliteDatabase::open(filePath().toUtf8());
        ASSERT_TRUE((*other)->execute("UPDATE Clip SET plaintext = 'x', urlHost = 'y'"));
    }
    view().refreshAllObjects();
    EXPECT_EQ(clip->plaintext(), u"mine"_s);
    EXPECT_EQ(clip->urlHost(), u"y"_s);
    EXPECT_FALSE(made->isDeleted());
}

TEST_F(MergingTest, ARecordOutlivesItsContextWithItsLastValues) {
    close();
    EXPECT_EQ(clip->context(), nullptr);
    EXPECT_EQ(clip->plaintext(), u"text"_s);
    EXPECT_FALSE(clip->imageData().has_value());
    clip->setPlaintext(u"nobody hears this"_s);
    EXPECT_EQ(clip->plaintext(), u"text"_s);
}

}  // namespace
