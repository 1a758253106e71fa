// SPDX-License-Identifier: MIT
// The groups on the page: listed, made, edited and deleted.
#include "app/settings/group_management_list.h"
#include "app/settings/group_management_row.h"
#include "app/settings/symbol_button.h"
#include "library/groups/form_controls.h"
#include "library/groups/form_label.h"
#include "model/clip.h"
#include "model/groups.h"
#include "settings/appearance_fixture.h"
#include "store/failing_vfs.h"
#include "store/store_fixture.h"

using namespace Qt::StringLiterals;

namespace quillo::testing {
namespace {

constexpr QColor kGreen(0x6b, 0xcb, 0x77);

class AppearanceGroups : public AppearancePageTest {
protected:
    ObjectContext& view() { return store.viewContext(); }
    GroupManagementList& list() { return named<GroupManagementList>(u"Clip Groups"_s); }
    GroupManagementRow& row(qsizetype index) { return *list().rows().at(index); }
    QUuid addGroup(const QString& title, const QList<QUuid>& clips = {}) {
        return createGroup(view(), {title, Qt::red, GroupPlace::AfterListed, clips}).value()->id();
    }
    QUuid addClip() {
        const auto clip = Clip::create(view(), clock.now());
        EXPECT_TRUE(view().save());
        return clip->id();
    }
    [[nodiscard]] QString shown() {
        QStringList lines;
        for (const GroupManagementRow* each : list().rows()) {
            lines +=
                each->item().title + u' ' + each->item().color->name() + u' ' + each->countText();
        }
        return lines.join(u", ");
    }
    [[nodiscard]] bool isSheetOpen() {
        settle();
        return Sheet::openIn(&window) != nullptr;
    }
    PushButton& button(const QString& name) {
        for (PushButton* each : Sheet::openIn(&window)->findChildren<PushButton*>()) {
            if (each->accessibleName() == name) {
                return *each;
            }
        }
        throw std::runtime_error("no such button");
    }
};

TEST_F(AppearanceGroups, OneIsMadeWithANameAndAColor) {
    open();
    named<SymbolButton>(u"Create new group"_s).setFocus();
    press(Qt::Key_Space);
    type(u"  "_s);
    press(Qt::Key_Return);
    EXPECT_TRUE(isSheetOpen()) << "a blank name does nothing";
    type(u"Work "_s);
    chooseSwatch(kGreen);
    press(Qt::Key_Return);
    EXPECT_FALSE(isSheetOpen());
    EXPECT_EQ(shown(), u"Work #6bcb77 0 clips"_s);
    EXPECT_TRUE(named<SymbolButton>(u"Create new group"_s).hasFocus());
    named<SymbolButton>(u"Create new group"_s).click();
    type(u"Play"_s);
    button(u"Create"_s).click();
    settle();
    EXPECT_EQ(shown(), u"Work #6bcb77 0 clips, Play #4d96ff 0 clips"_s);
    EXPECT_EQ(groupsInOrder(view()).value().at(1)->sortIndex(), 1);
    named<SymbolButton>(u"Create new group"_s).click();
    type(u"Not this"_s);
    button(u"Cancel"_s).click();
    EXPECT_FALSE(isSheetOpen());
    EXPECT_EQ(list().rows().size(), 2);
}

TEST_F(AppearanceGroups, OneIsEditedUnlessItIsGoneMeanwhile) {
    const QUuid work = addGroup(u"Work"_s, {addClip()});
    const QUuid play = addGroup(u"Play"_s, {addClip(), addClip()});
    open();
    EXPECT_EQ(shown(), u"Work #ff0000 1 clip, Play #ff0000 2 clips"_s);
    row(0).edit().setFocus();
    press(Qt::Key_Return);
    EXPECT_EQ(inSheet<FormField>().text(), u"Work"_s);
    inSheet<FormField>().clear();
    button(u"Save"_s).click();
    EXPECT_TRUE(isSheetOpen()) << "a blank name does nothing";
    type(u" Job"_s);
    chooseSwatch(kGreen);
    button(u"Save"_s).click();
    EXPECT_FALSE(isSheetOpen());
    EXPECT_EQ(shown(), u"Job #6bcb77 1 clip, Play #ff0000 2 clips"_s);
    EXPECT_TRUE(row(0).edit().hasFocus()) << "its row is the same one";
    row(1).edit().click();
    EXPECT_TRUE(deleteGroup(*view().object<Pinboard>(play)));
    settle();
    button(u"Save"_s).click();
    EXPECT_FALSE(isSheetOpen());
    EXPECT_EQ(shown(), u"Job #6bcb77 1 clip"_s);
    EXPECT_NE(view().object<Pinboard>(work), nullptr);
}

TEST_F(AppearanceGroups, OneIsDeletedOnlyWhenThatIsConfirmed) {
    const QUuid clip = addClip();
    addGroup(u"Work"_s, {clip});
    const QUuid unnamed = addGroup(u"x"_s, {clip});
    EXPECT_TRUE(renameGroup(*view().object<Pinboard>(unnamed), QString()));
    open();
    const struct {
        qsizetype row;
        QString message;
        QString answer;
        qsizetype left;
    } rows[] = {
        {0,
         u"Are you sure you want to delete \"Work\"? Clips in this group will be moved to the "
         "general tab."_s,
         u"Cancel"_s, 2},
        {1,
         u"Are you sure you want to delete \"this group\"? Clips in this group will be moved to "
         "the general tab."_s,
         u"Delete"_s, 1},
        {0,
         u"Are you sure you want to delete \"Work\"? Clips in this group will be moved to the "
         "general tab."_s,
         u"Delete"_s, 0},
    };
    for (const auto& step : rows) {
        row(step.row).remove().click();
        EXPECT_EQ(Sheet::openIn(&window)->accessibleName(), u"Delete Group"_s);
        EXPECT_EQ(Sheet::openIn(&window)->accessibleDescription(), step.message);
        EXPECT_TRUE(button(u"Cancel"_s).hasFocus()) << "Return destroys nothing";
        button(step.answer).click();
        settle();
        EXPECT_EQ(list().rows().size(), step.left);
        EXPECT_EQ(groupIdsOf(view(), clip).value().size(), step.left);
    }
    EXPECT_NE(view().object<Clip>(clip), nullptr) << "its clips stay";
    EXPECT_TRUE(named<QWidget>(u"No groups yet"_s).isVisible());
}

TEST_F(AppearanceGroups, WhatCannotBeSavedIsLoggedAndWaits) {
    const QTemporaryDir folder;
    FailingVfs disk;
    PersistenceController failing(
        {.kind = StoreKind::OnDisk, .baseFolder = folder.path(), .clock = &clock});
    ASSERT_TRUE(
        createGroup(failing.viewContext(), {u"Work"_s, kGreen, GroupPlace::AfterListed, {}}));
    GroupManagementList groups(failing.viewContext());
    groups.setParent(&window);
    window.show();
    settle();
    const struct {
        const char* logged;
        std::function<void()> ask;
        QString answer;
    } rows[] = {
        {"GroupManagementView: Error creating group: ", [&] { groups.openAddSheet(); },
         u"Create"_s},
        {"GroupManagementView: Error saving group: ",
         [&] { groups.rows().first()->edit().click(); }, u"Save"_s},
        {"GroupManagementView: Error deleting group: ",
         [&] { groups.rows().first()->remove().click(); }, u"Delete"_s},
    };
    for (const auto& step : rows) {
        step.ask();
        if (auto* name = Sheet::openIn(&window)->findChild<FormField*>()) {
            name->setText(u"Play"_s);
        }
        const LogCapture log;
        LogCapture::clear();
        disk.failAt(DiskOperation::Write, 1, SQLITE_FULL);
        button(step.answer).click();
        disk.repair();
        EXPECT_TRUE(LogCapture::lines().join(u'\n').contains(QLatin1StringView(step.logged)))
            << step.logged;
        EXPECT_FALSE(isSheetOpen()) << step.logged;
    }
    EXPECT_TRUE(failing.viewContext().save());
    EXPECT_EQ(groupsInOrder(failing.viewContext()).value().size(), 1) << "one made, one deleted";
}

}  // namespace
}  // namespace quillo::testing
