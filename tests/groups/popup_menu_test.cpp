// SPDX-License-Identifier: MIT
#include "library/groups/popup_menu.h"

#include <QAccessible>
#include <QLineEdit>
#include <QPointer>
#include <QScrollBar>

#include "groups/panel_fixture.h"
#include "library/groups/menu_row.h"
#include "library/groups/text_field_menu.h"

using namespace Qt::StringLiterals;

namespace quillo::testing {
namespace {

class PopupMenuTest : public PanelTest {
protected:
    MenuEntry entry(const QString& title, bool isEnabled = true) {
        return {.title = title, .isEnabled = isEnabled, .action = [this, title] {
                    done += title;
                    EXPECT_TRUE(control.hasFocus()) << "the focus is back before anything happens";
                }};
    }
    /// 0 Move > (0 Work, 1 ---, 2 Out), 1 ---, 2 Unpin, 3 (disabled), 4 Untie, 5 &Delete
    PopupMenu* openMenu(const QRect& anchor = {100, 40, 50, 20}) {
        MenuEntry move{.title = u"Move"_s};
        move.submenu = {entry(u"Work"_s), MenuEntry::separator(), entry(u"Out"_s)};
        return PopupMenu::open(&panel,
                               {move, MenuEntry::separator(), entry(u"Unpin"_s),
                                entry(u"Off"_s, false), entry(u"Untie"_s), entry(u"&Delete"_s)},
                               anchor, paletteFor(ColorScheme::Dark));
    }
    QStringList done;
};

TEST_F(PopupMenuTest, KeysWalkOverSeparatorsAndDisabledEntries) {
    const struct {
        QList<int> keys;
        int index;
    } rows[] = {
        {{}, 0},
        {{Qt::Key_Down}, 2},
        {{Qt::Key_Down, Qt::Key_Down}, 4},
        {{Qt::Key_Up}, 5},
        {{Qt::Key_Up, Qt::Key_Down}, 0},
        {{Qt::Key_End}, 5},
        {{Qt::Key_End, Qt::Key_Up, Qt::Key_Up, Qt::Key_Up}, 0},
        {{Qt::Key_End, Qt::Key_Home}, 0},
        {{Qt::Key_Tab}, 2},
        {{Qt::Key_Left}, 0},
        {{Qt::Key_Down, Qt::Key_Right}, 2},
    };
    for (const auto& row : rows) {
        PopupMenu* menu = openMenu();
        for (const int key : row.keys) {
            press(key);
        }
        EXPECT_EQ(menu->currentIndex(), row.index) << ::testing::PrintToString(row.keys);
        menu->close();
    }
    EXPECT_TRUE(done.isEmpty());
    settle();
}

TEST_F(PopupMenuTest, LettersWalkThroughTitlesAndMnemonicsTrigger) {
    PopupMenu* menu = openMenu();
    type(u"u"_s);
    EXPECT_EQ(menu->currentIndex(), 2);
    type(u"u"_s);
    EXPECT_EQ(menu->currentIndex(), 4);
    type(u"u"_s);
    EXPECT_EQ(menu->currentIndex(), 2);
    type(u"o"_s);
    EXPECT_EQ(menu->currentIndex(), 2) << "a disabled entry is no goal";
    type(u"d"_s);
    EXPECT_EQ(done, QStringList{u"&Delete"_s});
    settle();
}

TEST_F(PopupMenuTest, ClicksTriggerButNotOnSeparatorsAndDisabledEntries) {
    PopupMenu* menu = openMenu();
    settle();
    const auto middleOf = [&](int line) {
        const auto rows = menu->findChildren<MenuRow*>();
        return rows.at(line)->mapTo(&panel, rows.at(line)->rect().center());
    };
    click(middleOf(2));
    click(middleOf(1) - QPoint(0, PopupMenu::kRowHeight / 2 + 6));
    EXPECT_TRUE(menu->isOpen());
    click(middleOf(0));
    ASSERT_NE(menu->submenu(), nullptr);
    click(middleOf(3));
    EXPECT_EQ(done, QStringList{u"Untie"_s});
    settle();
}

TEST_F(PopupMenuTest, ALongMenuScrollsToWhatTheKeysReach) {
    std::vector<MenuEntry> entries;
    entries.reserve(40);
    for (int i = 0; i < 40; ++i) {
        entries.push_back(entry(QString::number(i)));
    }
    PopupMenu* menu =
        PopupMenu::open(&panel, entries, {100, 40, 50, 20}, paletteFor(ColorScheme::Dark));
    settle();
    EXPECT_TRUE(panel.rect().contains(menu->ground()));
    for (const int key : {Qt::Key_End, Qt::Key_Home}) {
        press(key);
        const MenuRow* row = menu->findChildren<MenuRow*>().at(menu->currentIndex());
        EXPECT_TRUE(menu->ground().contains(QRect(row->mapTo(&panel, QPoint()), row->size())))
            << key;
    }
    menu->close();
    settle();
}

TEST_F(PopupMenuTest, AFieldsMenuOffersWhatIsPossibleAndDoesIt) {
    QLineEdit field(&panel);
    const auto enabled = [&field] {
        QString titles;
        for (const MenuEntry& at : textFieldMenuEntries(field)) {
            titles += at.isEnabled && !at.title.isEmpty() ? at.title + u' ' : QString();
        }
        return titles.remove(u'&');
    };
    EXPECT_EQ(enabled(), u"Paste "_s);
    field.insert(u"hello"_s);
    EXPECT_EQ(enabled(), u"Undo Paste Select All "_s);
    field.setSelection(0, 2);
    EXPECT_EQ(enabled(), u"Undo Cut Copy Paste Delete Select All "_s);
    field.setReadOnly(true);
    EXPECT_EQ(enabled(), u"Copy Select All "_s);
    field.setReadOnly(false);
    field.setSelection(0, 2);
    new TextFieldMenu(field, &panel, [] { return paletteFor(ColorScheme::Dark); });
    field.show();
    field.setFocus(Qt::PopupFocusReason);
    press(Qt::Key_Menu);
    ASSERT_NE(Popup::openIn(&panel), nullptr);
    press(Qt::Key_D, {}, u"d"_s);
    press(Qt::Key_Return);
    EXPECT_EQ(field.text(), u"llo"_s) << "the selection outlives the menu";
    EXPECT_TRUE(field.hasFocus());
    settle();
}

}  // namespace
}  // namespace quillo::testing
