// SPDX-License-Identifier: MIT
// The views of groups on a store: the live list, the form, the picker.
#include <QLineEdit>

#include "groups/panel_fixture.h"
#include "library/groups/color_picker.h"
#include "library/groups/create_group_popover.h"
#include "library/groups/form_controls.h"
#include "library/groups/group_picker.h"
#include "library/groups/group_picker_row.h"
#include "library/groups/swatch.h"
#include "model/clip.h"
#include "model/groups.h"
#include "support/in_memory_store.h"
#include "support/manual_clock.h"

using namespace Qt::StringLiterals;

namespace quillo::testing {
namespace {

class GroupViewsTest : public PanelTest {
protected:
    ObjectContext& view() { return store.viewContext(); }
    QUuid addClip() {
        const auto clip = Clip::create(view(), clock.now());
        clip->setPlaintext(u"text"_s);
        EXPECT_TRUE(view().save());
        return clip->id();
    }
    QUuid addGroup(const QString& title, const QList<QUuid>& clips = {}) {
        return createGroup(view(), {title, Qt::red, GroupPlace::AfterListed, clips}).value()->id();
    }
    /// Done by another part of the program, and merged here.
    void elsewhere(std::function<void(ObjectContext&)> work) {
        store.perform([&work](ObjectContext& context) { work(context); });
        store.waitUntilIdle();
        QCoreApplication::processEvents();
    }
    [[nodiscard]] static QString lineOf(const GroupList& list) {
        QStringList line;
        for (const GroupItem& item : list.items()) {
            line += u"%1 %2"_s.arg(item.title).arg(item.memberCount);
        }
        return line.join(u", ");
    }

    ManualClock clock;
    PersistenceController store{inMemory(clock)};
};

TEST_F(GroupViewsTest, TheListFollowsEveryContextAndIsQuietOtherwise) {
    const QUuid first = addClip();
    const QUuid second = addClip();
    const QUuid work = addGroup(u"Work"_s, {first});
    GroupList list(view());
    int changes = 0;
    QObject::connect(&list, &GroupList::changed, [&changes] { ++changes; });
    EXPECT_EQ(lineOf(list), u"Work 1"_s);
    const QUuid play = addGroup(u"Play"_s);
    EXPECT_EQ(lineOf(list), u"Work 1, Play 0"_s);
    changes = 0;
    const auto after = [&](const QString& line, int told,
                           const std::function<void(ObjectContext&)>& change) {
        elsewhere(change);
        EXPECT_EQ(lineOf(list), line);
        EXPECT_EQ(std::exchange(changes, 0), told) << line.toStdString();
    };
    after(u"Work 1, Play 2"_s, 1, [&](ObjectContext& context) {
        (void)addClips(*context.object<Pinboard>(play), {first, second});
    });
    // Neither a text nor the order within a group is what the list shows.
    after(u"Work 1, Play 2"_s, 0, [&](ObjectContext& context) {
        context.object<Clip>(first)->setPlaintext(u"other"_s);
        context.object<Pinboard>(play)->togglePin(first);
        (void)context.save();
    });
    after(u"Work 1, Play 1"_s, 1, [&](ObjectContext& context) {
        context.remove(*context.object<Clip>(second));
        (void)context.save();
    });
    after(u"Job 1, Play 1"_s, 1, [&](ObjectContext& context) {
        (void)renameGroup(*context.object<Pinboard>(work), u"Job"_s);
    });
    after(u"Job 1, Play 1"_s, 1, [&](ObjectContext& context) {
        (void)recolorGroup(*context.object<Pinboard>(work), Qt::green);
    });
    after(u"Play 1, Job 1"_s, 1, [&](ObjectContext& context) {
        (void)reorderGroups(context,
                            {context.object<Pinboard>(play), context.object<Pinboard>(work)});
    });
    after(u"Play 0, Job 0"_s, 1, [](ObjectContext& context) { (void)context.batchDelete({}); });
    after(u"Job 0"_s, 1,
          [&](ObjectContext& context) { (void)deleteGroup(*context.object<Pinboard>(play)); });
    EXPECT_EQ(list.group(play), nullptr);
    EXPECT_EQ(list.item(work)->color, QColor(0, 255, 0));
}

TEST_F(GroupViewsTest, TheFormTakesColorsFromSwatchesAndThePickerAndFitsThePanel) {
    CreateGroupPopover popover(&panel, view());
    popover.openAt({500, 7, 26, 26});
    GroupForm& form = popover.form();
    const auto swatches = form.findChildren<Swatch*>();
    ASSERT_EQ(swatches.size(), 9);
    EXPECT_TRUE(swatches[4]->isChecked());
    swatches[4]->setFocus();
    press(Qt::Key_Right);
    EXPECT_EQ(form.color(), swatches[5]->color());
    EXPECT_FALSE(swatches[4]->isChecked());
    form.showPicker(true);
    settle();
    EXPECT_TRUE(panel.rect().contains(popover.ground()));
    auto* picker = form.findChild<ColorPicker*>();
    EXPECT_EQ(picker->color(), swatches[5]->color());
    picker->hexField().setFocus();
    picker->hexField().selectAll();
    type(u"#336699"_s);
    EXPECT_EQ(form.color(), QColor(0x33, 0x66, 0x99));
    EXPECT_FALSE(swatches[5]->isChecked());
    swatches[0]->click();
    EXPECT_EQ(picker->color(), swatches[0]->color());
    press(Qt::Key_Escape);
    EXPECT_FALSE(popover.isOpen());
}

TEST(ColorPicker, KeysMoveWithinTheRangesAndAGreyKeepsTheHue) {
    ColorPicker picker;
    picker.setColor(QColor::fromHsv(240, 255, 255));
    const auto parts = picker.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    const auto part = [&parts](const QString& name) {
        return *std::ranges::find(parts, name, &QWidget::accessibleName);
    };
    const auto press = [](QWidget* to, int key, Qt::KeyboardModifiers modifiers, int times) {
        for (int i = 0; i < times; ++i) {
            QKeyEvent event(QEvent::KeyPress, key, modifiers);
            QCoreApplication::sendEvent(to, &event);
        }
    };
    QWidget* square = part(u"Saturation and brightness"_s);
    press(square, Qt::Key_Left, Qt::ShiftModifier, 12);
    EXPECT_EQ(picker.color(), QColor(Qt::white));
    press(square, Qt::Key_Right, Qt::ShiftModifier, 12);
    EXPECT_EQ(picker.color(), QColor(Qt::blue)) << "the hue was kept";
    picker.setColor(Qt::gray);
    press(square, Qt::Key_Right, Qt::ShiftModifier, 12);
    press(square, Qt::Key_Up, {}, 101);
    EXPECT_EQ(picker.color(), QColor(Qt::blue));
    press(part(u"Hue"_s), Qt::Key_Up, Qt::ShiftModifier, 12);
    EXPECT_EQ(picker.color(), QColor(Qt::red));
}

TEST_F(GroupViewsTest, ThePickerFollowsWhatOthersDoWithItsClip) {
    const QUuid clip = addClip();
    const QUuid work = addGroup(u"Work"_s);
    const GroupList list(view());
    GroupPicker picker(&panel, list);
    picker.openFor(clip, {300, 100, 20, 20});
    EXPECT_TRUE(picker.memberOf().isEmpty());
    elsewhere(
        [&](ObjectContext& context) { (void)addClips(*context.object<Pinboard>(work), {clip}); });
    EXPECT_EQ(picker.memberOf(), QSet{work});
    EXPECT_TRUE(std::ranges::count(picker.findChildren<GroupPickerRow*>(),
                                   u"checkmark.circle.fill"_s, &GroupPickerRow::symbol));
    picker.toggle(QUuid::createUuid());
    EXPECT_EQ(groupIdsOf(view(), clip).value(), QSet{work});
    settle();
}

}  // namespace
}  // namespace quillo::testing
