// SPDX-License-Identifier: MIT
#include "overlay/panel_keys.h"

namespace quillo {
namespace {

using Kind = PanelKeyAction::Kind;

// X11 key codes of the digit row, which are evdev's plus eight.
constexpr quint32 kDigitRowFirst = 10;
constexpr quint32 kDigitRowLast = 18;

bool isReturn(int key) {
    return key == Qt::Key_Return || key == Qt::Key_Enter;
}

// 0 when the press is no digit from 1 to 9.
int digitOf(const PanelKeyPress& press) {
    const QChar character = press.text.isEmpty() ? QChar() : press.text.at(0);
    if (character.isDigit()) {
        return character.digitValue();
    }
    const bool isOnDigitRow = press.scanCode >= kDigitRowFirst && press.scanCode <= kDigitRowLast;
    const bool isPlain = (press.modifiers & (Qt::ShiftModifier | Qt::AltModifier |
                                             Qt::MetaModifier | Qt::GroupSwitchModifier)) == 0;
    return isOnDigitRow && isPlain ? int(press.scanCode - kDigitRowFirst) + 1 : 0;
}

PanelKeyAction editingAction(int key) {
    switch (key) {
        case Qt::Key_A:
            return {Kind::SelectAllText};
        case Qt::Key_C:
            return {Kind::CopyText};
        case Qt::Key_V:
            return {Kind::PasteText};
        case Qt::Key_X:
            return {Kind::CutText};
        case Qt::Key_Z:
            return {Kind::UndoText};
        default:
            return {Kind::LetThrough};
    }
}

PanelKeyAction withControl(const PanelKeyPress& press) {
    if (press.key == Qt::Key_Escape) {
        return {Kind::Hide};
    }
    const bool isPlainControl = press.modifiers == Qt::ControlModifier;
    if (isPlainControl && press.key == Qt::Key_F) {
        return {Kind::FocusSearch};
    }
    return press.textHasFocus && isPlainControl ? editingAction(press.key)
                                                : PanelKeyAction{Kind::LetThrough};
}

PanelKeyAction inTextField(const PanelKeyPress& press) {
    if (press.key == Qt::Key_Escape) {
        return {Kind::Hide};
    }
    if (press.key == Qt::Key_Down) {
        return {Kind::FocusCards};
    }
    return isReturn(press.key) ? PanelKeyAction{Kind::Choose, press.selectedIndex}
                               : PanelKeyAction{Kind::LetThrough};
}

bool isTyping(const PanelKeyPress& press) {
    const bool isPlain = (press.modifiers & (Qt::AltModifier | Qt::MetaModifier)) == 0;
    return isPlain && !press.text.isEmpty() && press.text.at(0).isPrint() &&
           !press.text.at(0).isSpace();
}

PanelKeyAction selecting(const PanelKeyPress& press, int step) {
    const int wanted = press.selectedIndex + step;
    return wanted >= 0 && wanted < press.cardCount ? PanelKeyAction{Kind::Select, wanted}
                                                   : PanelKeyAction{Kind::Consume};
}

PanelKeyAction onCards(const PanelKeyPress& press) {
    if (press.key == Qt::Key_Escape) {
        return {Kind::Hide};
    }
    if (isReturn(press.key)) {
        return {Kind::Choose, press.selectedIndex};
    }
    if (press.key == Qt::Key_Left || press.key == Qt::Key_Up) {
        return selecting(press, -1);
    }
    if (press.key == Qt::Key_Right || press.key == Qt::Key_Down) {
        return selecting(press, 1);
    }
    if (const int digit = digitOf(press); digit >= 1) {
        return digit <= press.cardCount ? PanelKeyAction{Kind::Choose, digit - 1}
                                        : PanelKeyAction{Kind::LetThrough};
    }
    if (!isTyping(press)) {
        return {Kind::LetThrough};
    }
    return press.text == QStringLiteral("/") ? PanelKeyAction{Kind::FocusSearch}
                                             : PanelKeyAction{Kind::StartSearch};
}

}  // namespace

PanelKeyAction panelKeyAction(const PanelKeyPress& press) {
    if ((press.modifiers & Qt::ControlModifier) != 0) {
        return withControl(press);
    }
    return press.textHasFocus ? inTextField(press) : onCards(press);
}

}  // namespace quillo
