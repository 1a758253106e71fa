// SPDX-License-Identifier: MIT
// What each key does in the panel.
#include <gtest/gtest.h>

#include "overlay/panel_keys.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

using Kind = PanelKeyAction::Kind;

struct Row {
    const char* name;
    int key;
    Qt::KeyboardModifiers modifiers;
    QString text;
    quint32 scanCode;
    PanelKeyAction action;
};

void check(const Row& row, PanelFocus focus, int selectedIndex, int cardCount) {
    const PanelKeyAction action = panelKeyAction(
        {row.key, row.modifiers, row.text, row.scanCode, focus, selectedIndex, cardCount, 3});
    EXPECT_EQ(action.kind, row.action.kind) << row.name;
    EXPECT_EQ(action.index, row.action.index) << row.name;
}

TEST(PanelKeys, OnTheCards) {
    const Row rows[] = {
        {"right", Qt::Key_Right, {}, {}, 114, {Kind::Select, 3}},
        {"down", Qt::Key_Down, {}, {}, 116, {Kind::Select, 3}},
        {"left", Qt::Key_Left, {}, {}, 113, {Kind::Select, 1}},
        {"return", Qt::Key_Return, {}, u"\r"_s, 36, {Kind::Choose, 2}},
        {"keypad enter", Qt::Key_Enter, {}, u"\r"_s, 104, {Kind::Choose, 2}},
        {"escape", Qt::Key_Escape, {}, {}, 9, {Kind::Hide}},
        {"3", Qt::Key_3, {}, u"3"_s, 12, {Kind::Choose, 2}},
        {"5", Qt::Key_5, {}, u"5"_s, 14, {Kind::Choose, 4}},
        {"a digit beyond the cards", Qt::Key_7, {}, u"7"_s, 16, {Kind::LetThrough}},
        {"azerty: the third key of the digit row",
         Qt::Key_QuoteDbl,
         {},
         u"\""_s,
         12,
         {Kind::Choose, 2}},
        {"azerty: with shift it is the digit",
         Qt::Key_3,
         Qt::ShiftModifier,
         u"3"_s,
         12,
         {Kind::Choose, 2}},
        {"us: shift and 3 is no digit",
         Qt::Key_NumberSign,
         Qt::ShiftModifier,
         u"#"_s,
         12,
         {Kind::StartSearch}},
        {"an arabic digit", Qt::Key_3, {}, u"٣"_s, 12, {Kind::Choose, 2}},
        {"a letter", Qt::Key_A, {}, u"a"_s, 38, {Kind::StartSearch}},
        {"a capital letter", Qt::Key_A, Qt::ShiftModifier, u"A"_s, 38, {Kind::StartSearch}},
        {"zero", Qt::Key_0, {}, u"0"_s, 19, {Kind::StartSearch}},
        {"a letter with alt", Qt::Key_A, Qt::AltModifier, u"a"_s, 38, {Kind::LetThrough}},
        {"space", Qt::Key_Space, {}, u" "_s, 65, {Kind::LetThrough}},
        {"slash", Qt::Key_Slash, {}, u"/"_s, 61, {Kind::FocusSearch}},
        {"control and f", Qt::Key_F, Qt::ControlModifier, u"\x06"_s, 41, {Kind::FocusSearch}},
        {"control and q", Qt::Key_Q, Qt::ControlModifier, u"\x11"_s, 24, {Kind::LetThrough}},
        {"control and a without a field",
         Qt::Key_A,
         Qt::ControlModifier,
         {},
         38,
         {Kind::LetThrough}},
        {"control and escape", Qt::Key_Escape, Qt::ControlModifier, {}, 9, {Kind::Hide}},
        {"control and 3", Qt::Key_3, Qt::ControlModifier, {}, 12, {Kind::LetThrough}},
        {"control and p", Qt::Key_P, Qt::ControlModifier, u"\x10"_s, 33, {Kind::TogglePin}},
        {"delete", Qt::Key_Delete, {}, u"\x7f"_s, 119, {Kind::Delete}},
        {"the menu key", Qt::Key_Menu, {}, {}, 135, {Kind::OpenMenu}},
        {"shift and f10", Qt::Key_F10, Qt::ShiftModifier, {}, 76, {Kind::OpenMenu}},
        {"home", Qt::Key_Home, {}, {}, 110, {Kind::Select, 0}},
        {"end", Qt::Key_End, {}, {}, 115, {Kind::Select, 4}},
        {"page down goes no farther than the last",
         Qt::Key_PageDown,
         {},
         {},
         117,
         {Kind::Select, 4}},
        {"page up goes no farther than the first", Qt::Key_PageUp, {}, {}, 112, {Kind::Select, 0}},
        {"tab", Qt::Key_Tab, {}, u"\t"_s, 23, {Kind::LetThrough}},
    };
    for (const Row& row : rows) {
        check(row, PanelFocus::Cards, 2, 5);
    }
}

TEST(PanelKeys, ArrowsAtTheEndsAreTakenAndDoNothing) {
    check({"left at the first", Qt::Key_Left, {}, {}, 113, {Kind::Consume}}, PanelFocus::Cards, 0,
          5);
    check({"up at the first", Qt::Key_Up, {}, {}, 111, {Kind::Consume}}, PanelFocus::Cards, 0, 5);
    check({"right at the last", Qt::Key_Right, {}, {}, 114, {Kind::Consume}}, PanelFocus::Cards, 4,
          5);
    check({"right without cards", Qt::Key_Right, {}, {}, 114, {Kind::Consume}}, PanelFocus::Cards,
          0, 0);
}

TEST(PanelKeys, InATextField) {
    const Row rows[] = {
        {"right edits", Qt::Key_Right, {}, {}, 114, {Kind::LetThrough}},
        {"down goes to the cards", Qt::Key_Down, {}, {}, 116, {Kind::FocusCards}},
        {"slash is typed", Qt::Key_Slash, {}, u"/"_s, 61, {Kind::LetThrough}},
        {"control and f", Qt::Key_F, Qt::ControlModifier, u"\x06"_s, 41, {Kind::FocusSearch}},
        {"a digit is typed", Qt::Key_3, {}, u"3"_s, 12, {Kind::LetThrough}},
        {"return", Qt::Key_Return, {}, u"\r"_s, 36, {Kind::Choose, 1}},
        {"escape", Qt::Key_Escape, {}, {}, 9, {Kind::Hide}},
        {"control and a", Qt::Key_A, Qt::ControlModifier, {}, 38, {Kind::LetThrough}},
        {"control and c", Qt::Key_C, Qt::ControlModifier, {}, 54, {Kind::LetThrough}},
        {"control and v", Qt::Key_V, Qt::ControlModifier, {}, 55, {Kind::LetThrough}},
        {"control and x", Qt::Key_X, Qt::ControlModifier, {}, 53, {Kind::LetThrough}},
        {"control and z", Qt::Key_Z, Qt::ControlModifier, {}, 52, {Kind::LetThrough}},
        {"control and shift and z is the field's own",
         Qt::Key_Z,
         Qt::ControlModifier | Qt::ShiftModifier,
         {},
         52,
         {Kind::LetThrough}},
        {"control and left is a word move",
         Qt::Key_Left,
         Qt::ControlModifier,
         {},
         113,
         {Kind::LetThrough}},
        {"control and escape", Qt::Key_Escape, Qt::ControlModifier, {}, 9, {Kind::Hide}},
    };
    for (const Row& row : rows) {
        check(row, PanelFocus::SearchField, 1, 5);
    }
}

TEST(PanelKeys, OnAnotherControlOfTheBar) {
    const Row rows[] = {
        {"return presses it", Qt::Key_Return, {}, u"\r"_s, 36, {Kind::PressControl}},
        {"left", Qt::Key_Left, {}, {}, 113, {Kind::PreviousControl}},
        {"up", Qt::Key_Up, {}, {}, 111, {Kind::PreviousControl}},
        {"right", Qt::Key_Right, {}, {}, 114, {Kind::NextControl}},
        {"down", Qt::Key_Down, {}, {}, 116, {Kind::NextControl}},
        {"a digit chooses", Qt::Key_3, {}, u"3"_s, 12, {Kind::Choose, 2}},
        {"a letter", Qt::Key_A, {}, u"a"_s, 38, {Kind::StartSearch}},
        {"slash", Qt::Key_Slash, {}, u"/"_s, 61, {Kind::FocusSearch}},
        {"space is the button's", Qt::Key_Space, {}, u" "_s, 65, {Kind::LetThrough}},
        {"delete deletes no card", Qt::Key_Delete, {}, u"\x7f"_s, 119, {Kind::LetThrough}},
        {"control and p pins nothing", Qt::Key_P, Qt::ControlModifier, {}, 33, {Kind::LetThrough}},
        {"home", Qt::Key_Home, {}, {}, 110, {Kind::LetThrough}},
        {"escape", Qt::Key_Escape, {}, {}, 9, {Kind::Hide}},
    };
    for (const Row& row : rows) {
        check(row, PanelFocus::BarControl, 1, 5);
    }
}

TEST(PanelKeys, InAPopupOnlyControlAndEscapeIsThePanels) {
    for (const int key : {Qt::Key_Return, Qt::Key_Escape, Qt::Key_3, Qt::Key_A, Qt::Key_Delete,
                          Qt::Key_Left, Qt::Key_Home, Qt::Key_Menu}) {
        check({"", key, {}, u"a"_s, 12, {Kind::LetThrough}}, PanelFocus::Popup, 1, 5);
        check({"",
               key,
               Qt::ControlModifier,
               {},
               12,
               {key == Qt::Key_Escape ? Kind::Hide : Kind::LetThrough}},
              PanelFocus::Popup, 1, 5);
    }
    check({"", Qt::Key_F, Qt::ControlModifier, {}, 41, {Kind::LetThrough}}, PanelFocus::Popup, 1,
          5);
}

}  // namespace
}  // namespace quillo
