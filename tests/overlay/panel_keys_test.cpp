// SPDX-License-Identifier: MIT
// What each key does in the panel.
#include <gtest/gtest.h>

#include "overlay/panel_keys.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

using Kind = PanelKeyAction::Kind;
constexpr PanelKeyAction kPass{Kind::LetThrough};

struct Row {
    const char* name;
    QKeyCombination key;
    quint32 scanCode;
    QString text;
    PanelKeyAction action;
};

void check(const Row& row, PanelFocus focus, int selectedIndex, int cardCount = 5) {
    const PanelKeyAction action =
        panelKeyAction({row.key.key(), row.key.keyboardModifiers(), row.text, row.scanCode, focus,
                        selectedIndex, cardCount, 3});
    EXPECT_EQ(action.kind, row.action.kind) << row.name;
    EXPECT_EQ(action.index, row.action.index) << row.name;
}

template <typename Rows>
void checkAll(const Rows& rows, PanelFocus focus, int selectedIndex) {
    for (const Row& row : rows) {
        check(row, focus, selectedIndex);
    }
}

TEST(PanelKeys, OnTheCards) {
    const Row rows[] = {
        {"right", Qt::Key_Right, 114, {}, {Kind::Select, 3}},
        {"down", Qt::Key_Down, 116, {}, {Kind::Select, 3}},
        {"left", Qt::Key_Left, 113, {}, {Kind::Select, 1}},
        {"home", Qt::Key_Home, 110, {}, {Kind::Select, 0}},
        {"end", Qt::Key_End, 115, {}, {Kind::Select, 4}},
        {"page down goes no farther than the last", Qt::Key_PageDown, 117, {}, {Kind::Select, 4}},
        {"page up goes no farther than the first", Qt::Key_PageUp, 112, {}, {Kind::Select, 0}},
        {"return", Qt::Key_Return, 36, u"\r"_s, {Kind::Choose, 2}},
        {"keypad enter", Qt::Key_Enter, 104, u"\r"_s, {Kind::Choose, 2}},
        {"3", Qt::Key_3, 12, u"3"_s, {Kind::Choose, 2}},
        {"5", Qt::Key_5, 14, u"5"_s, {Kind::Choose, 4}},
        {"a digit beyond the cards", Qt::Key_7, 16, u"7"_s, kPass},
        {"azerty: the third key of its row", Qt::Key_QuoteDbl, 12, u"\""_s, {Kind::Choose, 2}},
        {"azerty: with shift", Qt::SHIFT | Qt::Key_3, 12, u"3"_s, {Kind::Choose, 2}},
        {"us: with shift", Qt::SHIFT | Qt::Key_NumberSign, 12, u"#"_s, {Kind::StartSearch}},
        {"an arabic digit", Qt::Key_3, 12, u"٣"_s, {Kind::Choose, 2}},
        {"zero", Qt::Key_0, 19, u"0"_s, {Kind::StartSearch}},
        {"a letter", Qt::Key_A, 38, u"a"_s, {Kind::StartSearch}},
        {"a capital letter", Qt::SHIFT | Qt::Key_A, 38, u"A"_s, {Kind::StartSearch}},
        {"a letter with alt", Qt::ALT | Qt::Key_A, 38, u"a"_s, kPass},
        {"space", Qt::Key_Space, 65, u" "_s, kPass},
        {"tab", Qt::Key_Tab, 23, u"\t"_s, kPass},
        {"slash", Qt::Key_Slash, 61, u"/"_s, {Kind::FocusSearch}},
        {"control and f", Qt::CTRL | Qt::Key_F, 41, u"\x06"_s, {Kind::FocusSearch}},
        {"control and q", Qt::CTRL | Qt::Key_Q, 24, u"\x11"_s, kPass},
        {"control and 3", Qt::CTRL | Qt::Key_3, 12, {}, kPass},
        {"control and p", Qt::CTRL | Qt::Key_P, 33, u"\x10"_s, {Kind::TogglePin}},
        {"delete", Qt::Key_Delete, 119, u"\x7f"_s, {Kind::Delete}},
        {"the menu key", Qt::Key_Menu, 135, {}, {Kind::OpenMenu}},
        {"shift and f10", Qt::SHIFT | Qt::Key_F10, 76, {}, {Kind::OpenMenu}},
        {"escape", Qt::Key_Escape, 9, {}, {Kind::Hide}},
        {"control and escape", Qt::CTRL | Qt::Key_Escape, 9, {}, {Kind::Hide}},
    };
    checkAll(rows, PanelFocus::Cards, 2);
}

TEST(PanelKeys, ArrowsAtTheEndsAreTakenAndDoNothing) {
    const Row left{"left", Qt::Key_Left, 113, {}, {Kind::Consume}};
    const Row up{"up", Qt::Key_Up, 111, {}, {Kind::Consume}};
    const Row right{"right", Qt::Key_Right, 114, {}, {Kind::Consume}};
    check(left, PanelFocus::Cards, 0);
    check(up, PanelFocus::Cards, 0);
    check(right, PanelFocus::Cards, 4);
    check(right, PanelFocus::Cards, 0, 0);
}

TEST(PanelKeys, InATextField) {
    const Row rows[] = {
        {"right edits", Qt::Key_Right, 114, {}, kPass},
        {"down goes to the cards", Qt::Key_Down, 116, {}, {Kind::FocusCards}},
        {"slash is typed", Qt::Key_Slash, 61, u"/"_s, kPass},
        {"a digit is typed", Qt::Key_3, 12, u"3"_s, kPass},
        {"return", Qt::Key_Return, 36, u"\r"_s, {Kind::Choose, 1}},
        {"control and f", Qt::CTRL | Qt::Key_F, 41, u"\x06"_s, {Kind::FocusSearch}},
        {"control and z", Qt::CTRL | Qt::Key_Z, 52, {}, kPass},
        {"control, shift and z", Qt::CTRL | Qt::SHIFT | Qt::Key_Z, 52, {}, kPass},
        {"control and left is a word move", Qt::CTRL | Qt::Key_Left, 113, {}, kPass},
        {"escape", Qt::Key_Escape, 9, {}, {Kind::Hide}},
        {"control and escape", Qt::CTRL | Qt::Key_Escape, 9, {}, {Kind::Hide}},
    };
    checkAll(rows, PanelFocus::SearchField, 1);
}

TEST(PanelKeys, OnAnotherControlOfTheBar) {
    const Row rows[] = {
        {"return presses it", Qt::Key_Return, 36, u"\r"_s, {Kind::PressControl}},
        {"left", Qt::Key_Left, 113, {}, {Kind::PreviousControl}},
        {"up", Qt::Key_Up, 111, {}, {Kind::PreviousControl}},
        {"right", Qt::Key_Right, 114, {}, {Kind::NextControl}},
        {"down", Qt::Key_Down, 116, {}, {Kind::NextControl}},
        {"a digit chooses", Qt::Key_3, 12, u"3"_s, {Kind::Choose, 2}},
        {"a letter", Qt::Key_A, 38, u"a"_s, {Kind::StartSearch}},
        {"slash", Qt::Key_Slash, 61, u"/"_s, {Kind::FocusSearch}},
        {"space is the button's", Qt::Key_Space, 65, u" "_s, kPass},
        {"delete deletes no card", Qt::Key_Delete, 119, u"\x7f"_s, kPass},
        {"control and p pins nothing", Qt::CTRL | Qt::Key_P, 33, {}, kPass},
        {"home", Qt::Key_Home, 110, {}, kPass},
        {"escape", Qt::Key_Escape, 9, {}, {Kind::Hide}},
    };
    checkAll(rows, PanelFocus::BarControl, 1);
}

TEST(PanelKeys, InAPopupOnlyControlAndEscapeIsThePanels) {
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape, Qt::Key_3, Qt::Key_A, Qt::Key_Delete,
                              Qt::Key_Left, Qt::Key_Home, Qt::Key_Menu, Qt::Key_F}) {
        const PanelKeyAction held = key == Qt::Key_Escape ? PanelKeyAction{Kind::Hide} : kPass;
        check({"alone", key, 12, u"a"_s, kPass}, PanelFocus::Popup, 1);
        check({"held", Qt::CTRL | key, 12, {}, held}, PanelFocus::Popup, 1);
    }
}

}  // namespace
}  // namespace quillo
