// SPDX-License-Identifier: MIT
// The views of groups on a store: the live list, the menu, the popover, the picker.
#include <QLineEdit>

#include "groups/panel_fixture.h"
#include "library/groups/color_picker.h"
#include "library/groups/create_group_popover.h"
#include "library/groups/form_controls.h"
#include "library/groups/group_menu.h"
#include "library/groups/group_picker.h"
#include "library/groups/group_picker_row.h"
#include "library/groups/swatch.h"
#include "model/clip.h"
#include "model/group_palette.h"
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
    [[nodiscard]] QSet<QUuid> groupsOf(const QUuid& clip) {
        return groupIdsOf(view(), clip).value();
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
    const struct {
        const char* name;
        std::function<void(ObjectContext&)> work;
        QString line;
        bool isTold = true;
    } steps[] = {
        {"a member comes",
         [&](ObjectContext& context) {
             (void)addClips(*context.object<Pinboard>(play), {first, second});
         },
         u"Work 1, Play 2"_s},
        {"a text changes",
         [&](ObjectContext& context) {
             context.object<Clip>(first)->setPlaintext(u"other"_s);
             (void)context.save();
         },
         u"Work 1, Play 2"_s, false},
        {"the order of a group changes",
         [&](ObjectContext& context) {
             context.object<Pinboard>(play)->togglePin(first);
             (void)context.save();
         },
         u"Work 1, Play 2"_s, false},
        {"a member is deleted",
         [&](ObjectContext& context) {
             context.remove(*context.object<Clip>(second));
             (void)context.save();
         },
         u"Work 1, Play 1"_s},
        {"another name",
         [&](ObjectContext& context) {
             (void)renameGroup(*context.object<Pinboard>(work), u"Job"_s);
         },
         u"Job 1, Play 1"_s},
        {"another colour",
         [&](ObjectContext& context) {
             (void)recolorGroup(*context.object<Pinboard>(work), Qt::green);
         },
         u"Job 1, Play 1"_s},
        {"another order",
         [&](ObjectContext& context) {
             (void)reorderGroups(context,
                                 {context.object<Pinboard>(play), context.object<Pinboard>(work)});
         },
         u"Play 1, Job 1"_s},
        {"every clip is deleted", [&](ObjectContext& context) { (void)context.batchDelete({}); },
         u"Play 0, Job 0"_s},
        {"a group is deleted",
         [&](ObjectContext& context) { (void)deleteGroup(*context.object<Pinboard>(play)); },
         u"Job 0"_s},
    };
    changes = 0;
    for (const auto& step : steps) {
        elsewhere(step.work);
        EXPECT_EQ(lineOf(list), step.line) << step.name;
        EXPECT_EQ(std::exchange(changes, 0), step.isTold ? 1 : 0) << step.name;
    }
    EXPECT_EQ(list.group(play), nullptr);
    EXPECT_EQ(list.item(work)->color, QColor(0, 255, 0));
}

TEST_F(GroupViewsTest, TheMenuJoinsLeavesAndClearsAndADropOnlyJoins) {
    const QUuid clip = addClip();
    const QUuid work = addGroup(u"Work & play"_s, {clip});
    const QUuid home = addGroup(u"Home"_s);
    const GroupList list(view());
    const auto entries = [&] { return groupMenuEntries(list, clip); };
    ASSERT_EQ(entries().size(), 4U);
    EXPECT_EQ(entries()[0].title, u"Work && play"_s) << "no mnemonic";
    EXPECT_TRUE(*entries()[0].check);
    EXPECT_FALSE(*entries()[1].check);
    entries()[1].action();
    EXPECT_EQ(groupsOf(clip), (QSet{work, home}));
    entries()[0].action();
    EXPECT_EQ(groupsOf(clip), QSet{home});
    addDroppedClip(list, work, clip);
    int saves = 0;
    QObject::connect(&view(), &ObjectContext::changed, [&saves] { ++saves; });
    addDroppedClip(list, work, clip);
    addDroppedClip(list, work, QUuid::createUuid());
    addDroppedClip(list, QUuid::createUuid(), clip);
    EXPECT_EQ(saves, 0) << "a member, no clip, no group";
    EXPECT_EQ(groupsOf(clip), (QSet{work, home}));
    entries()[3].action();
    EXPECT_TRUE(groupsOf(clip).isEmpty());
}

TEST_F(GroupViewsTest, ThePopoverCreatesATrimmedGroupAndStartsAnew) {
    CreateGroupPopover popover(&panel, view());
    const GroupList list(view());
    for (const QString& blank : {u""_s, u" \t "_s}) {
        popover.openAt({500, 7, 26, 26});
        EXPECT_TRUE(popover.form().nameField().hasFocus());
        popover.form().setName(blank);
        press(Qt::Key_Return);
        EXPECT_TRUE(popover.isOpen());
        EXPECT_TRUE(list.items().isEmpty());
    }
    EXPECT_EQ(popover.form().color(), QColor(kStandardBlue));
    popover.form().setColor(QColor(1, 2, 3));
    popover.form().setName(u"  Work "_s);
    press(Qt::Key_Return);
    EXPECT_FALSE(popover.isOpen());
    EXPECT_TRUE(control.hasFocus());
    ASSERT_EQ(lineOf(list), u"Work 0"_s);
    EXPECT_EQ(list.items()[0].color, QColor(1, 2, 3));
    EXPECT_EQ(list.group(list.items()[0].id)->sortIndex(), 0);
    EXPECT_TRUE(popover.form().name().isEmpty());
    QSet<QString> palette;
    for (const GroupColor& color : groupPalette()) {
        palette += QLatin1StringView(color.hex);
    }
    EXPECT_TRUE(palette.contains(popover.form().color().name().toUpper()));
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

TEST_F(GroupViewsTest, ThePickerShowsAndTogglesWhatTheClipIsIn) {
    const QUuid clip = addClip();
    const QUuid work = addGroup(u"Work"_s, {clip});
    const QUuid home = addGroup(u"Home"_s);
    const GroupList list(view());
    GroupPicker picker(&panel, list);
    const auto symbols = [&picker] {
        QString line;
        for (const auto* row : picker.findChildren<GroupPickerRow*>()) {
            line += row->isVisible() && row->isCheckable() ? row->symbol() + u' ' : QString();
        }
        return line;
    };
    picker.openFor(clip, {300, 100, 20, 20});
    EXPECT_EQ(symbols(), u"checkmark.circle.fill circle "_s);
    press(Qt::Key_Space);
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_TRUE(picker.isOpen());
    EXPECT_EQ(picker.memberOf(), QSet{home});
    EXPECT_EQ(groupsOf(clip), QSet{home});
    EXPECT_EQ(symbols(), u"circle checkmark.circle.fill "_s);
    elsewhere(
        [&](ObjectContext& context) { (void)addClips(*context.object<Pinboard>(work), {clip}); });
    EXPECT_EQ(symbols(), u"checkmark.circle.fill checkmark.circle.fill "_s);
    picker.toggle(QUuid::createUuid());
    EXPECT_EQ(groupsOf(clip), (QSet{work, home}));
    settle();
}

TEST_F(GroupViewsTest, ThePickersFormMakesAGroupWithTheClip) {
    const QUuid clip = addClip();
    const GroupList list(view());
    GroupPicker picker(&panel, list);
    picker.openFor(clip, {300, 250, 20, 20});
    press(Qt::Key_Return);
    ASSERT_TRUE(picker.isFormShown()) << "without groups the first row is the new one";
    EXPECT_TRUE(picker.form().nameField().hasFocus());
    press(Qt::Key_Return);
    EXPECT_TRUE(list.items().isEmpty()) << "no name";
    type(u"New"_s);
    settle();
    EXPECT_TRUE(panel.rect().contains(picker.ground()));
    press(Qt::Key_Return);
    EXPECT_EQ(lineOf(list), u"New 1"_s);
    EXPECT_EQ(picker.memberOf(), QSet{list.items()[0].id});
    EXPECT_FALSE(picker.isFormShown());
    EXPECT_TRUE(picker.isOpen());
    EXPECT_TRUE(picker.isAncestorOf(panel.focusWidget()));
    settle();
}

}  // namespace
}  // namespace quillo::testing
