// SPDX-License-Identifier: MIT
#include "model/groups.h"

#include "model/clip.h"
#include "model/group_palette.h"
#include "store/store_fixture.h"

using namespace Qt::StringLiterals;
using namespace quillo;
using namespace quillo::testing;

namespace {

class GroupsTest : public StoreTest {
protected:
    void SetUp() override {
        StoreTest::SetUp();
        open();
    }
    ObjectContext& view() { return controller->viewContext(); }
    std::shared_ptr<Pinboard> create(const QString& title, const QList<QUuid>& clips = {},
                                     GroupPlace place = GroupPlace::AfterListed) {
        return createGroup(view(), {title, QColor(1, 2, 3), place, clips}).value_or(nullptr);
    }
    [[nodiscard]] QList<qint64> indexes() {
        QList<qint64> result;
        const auto groups = groupsInOrder(view()).value();
        for (const auto& group : groups) {
            result += group->sortIndex();
        }
        return result;
    }
    /// The order that a group shows, as the texts of its clips.
    [[nodiscard]] QString shown(const Pinboard& group) {
        QString result;
        const auto clips = group.orderedClips().value();
        for (const auto& clip : clips) {
            result += clip->plaintext().value_or(u"?"_s);
        }
        return result;
    }
    QList<QUuid> addTexts(const QString& letters) {
        QList<QUuid> keys;
        for (const QChar letter : letters) {
            keys += addText(letter);
        }
        return keys;
    }
};

TEST_F(GroupsTest, ANewGroupTakesItsTitleColorAndPlace) {
    EXPECT_EQ(create(u" \n "_s), nullptr);
    EXPECT_FALSE(view().hasChanges());
    const auto first = create(u" Work\n"_s);
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->title(), u"Work"_s);
    EXPECT_EQ(first->colorHex(), u"#010203"_s);
    EXPECT_FALSE(first->clipOrder().has_value());
    (void)create(u"b"_s);
    EXPECT_EQ(indexes(), (QList<qint64>{0, 1}));
    first->setSortIndex(std::numeric_limits<qint32>::max());
    ASSERT_TRUE(view().save());
    EXPECT_EQ(create(u"c"_s, {}, GroupPlace::AfterHighest)->sortIndex(),
              std::numeric_limits<qint32>::max());
    EXPECT_EQ(create(u"d"_s)->sortIndex(), 3);
}

TEST_F(GroupsTest, TheFirstGroupPlacedAboveTheHighestHasOne) {
    EXPECT_EQ(create(u"a"_s, {}, GroupPlace::AfterHighest)->sortIndex(), 1);
    const auto second = create(u"b"_s, {}, GroupPlace::AfterHighest);
    EXPECT_EQ(second->sortIndex(), 2);
    auto groups = groupsInOrder(view()).value();
    groups.swapItemsAt(0, 1);
    ASSERT_TRUE(reorderGroups(view(), groups));
    EXPECT_EQ(indexes(), (QList<qint64>{0, 1}));
    EXPECT_EQ(groupsInOrder(view()).value().first(), second);
}

TEST_F(GroupsTest, ARecordStartsWithAColorOfThePalette) {
    QSet<QString> seen;
    QRandomGenerator random(1);
    for (int i = 0; i < 500; ++i) {
        seen += *Pinboard::create(view(), u"t"_s, random)->colorHex();
    }
    QSet<QString> palette;
    for (const GroupColor& color : groupPalette()) {
        palette += QLatin1StringView(color.hex);
    }
    EXPECT_EQ(seen, palette);
}

TEST_F(GroupsTest, IsRenamedAndRecolored) {
    const auto group = create(u"a"_s);
    EXPECT_TRUE(renameGroup(*group, u" "_s));
    EXPECT_EQ(group->title(), u" "_s);
    EXPECT_TRUE(recolorGroup(*group, QColor(255, 0, 0, 7)));
    EXPECT_EQ(groupColor(*group), QColor(255, 0, 0));
    EXPECT_FALSE(editGroup(*group, u" "_s, Qt::blue).value());
    EXPECT_TRUE(editGroup(*group, u" b "_s, Qt::blue).value());
    EXPECT_EQ(group->title(), u"b"_s);
    EXPECT_FALSE(view().hasChanges());
    for (const QString& hex : {u"#12"_s, u""_s, u"red"_s}) {
        group->setColorHex(hex);
        EXPECT_EQ(groupColor(*group), std::nullopt);
    }
    ASSERT_TRUE(deleteGroup(*group));
    EXPECT_FALSE(renameGroup(*group, u"c"_s)) << "it is gone";
}

TEST_F(GroupsTest, MembershipIsSavedOnlyWhereItChanges) {
    const auto clips = addTexts(u"abc"_s);
    const auto group = create(u"g"_s, {clips[0]});
    const auto other = create(u"h"_s, clips);
    int saves = 0;
    QObject::connect(&view(), &ObjectContext::changed, [&saves](const ChangeSet&) { ++saves; });
    EXPECT_TRUE(addClips(*group, {clips[0]}));
    EXPECT_TRUE(addClips(*group, {QUuid::createUuid()})) << "no such clip";
    EXPECT_TRUE(removeClips(*group, {clips[1]}));
    EXPECT_EQ(saves, 0);
    EXPECT_TRUE(addClips(*group, clips));
    EXPECT_EQ(memberCount(*group).value(), 3);
    EXPECT_FALSE(toggleClip(*group, clips[0]).value());
    EXPECT_TRUE(toggleClip(*group, clips[0]).value());
    EXPECT_EQ(groupIdsOf(view(), clips[0]).value(), (QSet{group->id(), other->id()}));
    EXPECT_TRUE(removeFromAllGroups(view(), {clips[0], clips[1]}));
    EXPECT_TRUE(groupIdsOf(view(), clips[1]).value().isEmpty());
    EXPECT_EQ(shown(*group), u"c"_s);
}

TEST_F(GroupsTest, DeletingAGroupKeepsItsClips) {
    const auto clips = addTexts(u"ab"_s);
    const auto kept = create(u"kept"_s, clips);
    const auto byView = create(u"1"_s, clips);
    const auto byRecord = create(u"2"_s, clips);
    ASSERT_TRUE(deleteGroup(*byView));
    view().remove(*byRecord);
    ASSERT_TRUE(view().save());
    EXPECT_EQ(view().count({}).value(), 2);
    EXPECT_EQ(groupIdsOf(view(), clips[0]).value(), QSet{kept->id()});
}

TEST_F(GroupsTest, ShowsPinsAndMovesItsClips) {
    const auto clips = addTexts(u"abcd"_s);
    const auto group = create(u"g"_s, clips);
    EXPECT_EQ(shown(*group), u"dcba"_s);
    group->togglePin(clips[0]);
    EXPECT_TRUE(group->isPinned(clips[0]));
    EXPECT_EQ(shown(*group), u"adcb"_s);
    ASSERT_TRUE(group->move(0, 3));
    EXPECT_EQ(shown(*group), u"dcba"_s);
    ASSERT_TRUE(view().save());
    onStore([&](ObjectContext& context) {
        const auto same = context.object<Pinboard>(group->id());
        EXPECT_TRUE(same->isPinned(clips[0]));
        ASSERT_TRUE(same->move(3, 0));
        EXPECT_TRUE(context.save());
    });
    EXPECT_EQ(shown(*group), u"adcb"_s) << "decoded anew";
    group->setClipOrder("broken");
    EXPECT_TRUE(group->clipOrderEntries().isEmpty());
    group->setClipOrderEntries({});
    EXPECT_EQ(group->clipOrder(), "[]");
    view().remove(*view().object<Clip>(clips[1]));
    ASSERT_TRUE(view().save());
    ASSERT_TRUE(group->normalizeOrder());
    EXPECT_EQ(group->clipOrderEntries().size(), 3);
}

TEST_F(GroupsTest, AMoveInTheShownListMovesNothingElse) {
    const auto clips = addTexts(u"abc"_s);
    const auto group = create(u"g"_s, clips);
    group->togglePin(clips[0]);
    ASSERT_TRUE(group->normalizeOrder());
    const QUuid added = addText(u"n"_s);
    ASSERT_TRUE(addClips(*group, {added}));
    ASSERT_EQ(shown(*group), u"ancb"_s);
    ASSERT_TRUE(group->moveVisible({clips[0], added, clips[1]}, {2, 1}));
    EXPECT_EQ(shown(*group), u"abnc"_s);
    EXPECT_TRUE(group->isPinned(clips[0]));
}

TEST_F(GroupsTest, MembersAndDatesThatAreNotSavedCount) {
    const auto clips = addTexts(u"ab"_s);
    const auto group = create(u"g"_s, {clips[0]});
    const auto fresh = Clip::create(view(), clock.now());
    const auto undated = Clip::create(view(), clock.now());
    undated->setCreatedAt({});
    for (const QUuid& key : {fresh->id(), undated->id(), clips[1]}) {
        view().relate({Entity::Clip, key}, Relationship::ClipPinboards, group->objectId());
    }
    EXPECT_EQ(group->clipIds().value(), (QList{fresh->id(), clips[1], clips[0], undated->id()}));
    const auto unsaved = group->orderedClipIds().value();
    ASSERT_TRUE(view().save());
    EXPECT_EQ(group->orderedClipIds().value(), unsaved);
    view().object<Clip>(clips[1])->setCreatedAt(clock.now() + std::chrono::seconds(1));
    EXPECT_EQ(group->clipIds().value().first(), clips[1]);
}

}  // namespace
