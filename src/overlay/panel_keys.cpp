// SPDX-License-Identifier: MIT
#include "overlay/panel_keys.h"

#include <algorithm>

namespace quillo {
namespace {

using Kind = PanelKeyAction::Kind;

// X11 key codes of the digit row, which are evdev's plus eight.
constexpr quint32 kDigitRowFirst = 10;
constexpr quint32 kDigitRowLast = 18;

bool isReturn(int key) {
    return key == Qt::Key_Return || key == Qt::Key_Enter;
}

bool isMenuKey(const PanelKeyPress& press) {
    return press.key == Qt::Key_Menu ||
           (press.key == Qt::Key_F10 && press.modifiers == Qt::ShiftModifier);
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

PanelKeyAction withControl(const PanelKeyPress& press) {
    if (press.key == Qt::Key_Escape) {
        return {Kind::Hide};
    }
    const bool isPlainControl = press.modifiers == Qt::ControlModifier;
    if (!isPlainControl || press.focus == PanelFocus::Popup) {
        return {Kind::LetThrough};
    }
    if (press.key == Qt::Key_F) {
        return {Kind::FocusSearch};
    }
    const bool pins = press.key == Qt::Key_P && press.focus == PanelFocus::Cards;
    return {pins ? Kind::TogglePin : Kind::LetThrough};
}

PanelKeyAction inSearchField(const PanelKeyPress& press) {
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

// What a character does where there is no text to edit.
PanelKeyAction typed(const PanelKeyPress& press) {
    if (const int digit = digitOf(press); digit >= 1) {
        return digit <= press.cardCount ? PanelKeyAction{Kind::Choose, digit - 1}
                                        : PanelKeyAction{Kind::LetThrough};
    }
    if (!isTyping(press)) {
        return {Kind::LetThrough};
    }
    return {press.text == QStringLiteral("/") ? Kind::FocusSearch : Kind::StartSearch};
}

PanelKeyAction selecting(const PanelKeyPress& press, int wanted) {
    const int index = std::clamp(wanted, 0, std::max(0, press.cardCount - 1));
    return index != press.selectedIndex && index < press.cardCount
               ? PanelKeyAction{Kind::Select, index}
               : PanelKeyAction{Kind::Consume};
}

PanelKeyAction onCards(const PanelKeyPress& press) {
    if (isMenuKey(press)) {
        return {Kind::OpenMenu};
    }
    switch (press.key) {
        case Qt::Key_Escape:
            return {Kind::Hide};
        case Qt::Key_Return:
        case Qt::Key_Enter:
            return {Kind::Choose, press.selectedIndex};
        case Qt::Key_Left:
        case Qt::Key_Up:
            return selecting(press, press.selectedIndex - 1);
        case Qt::Key_Right:
        case Qt::Key_Down:
            return selecting(press, press.selectedIndex + 1);
        case Qt::Key_Home:
            return selecting(press, 0);
        case Qt::Key_End:
            return selecting(press, press.cardCount - 1);
        case Qt::Key_PageUp:
            return selecting(press, press.selectedIndex - press.cardsPerPage);
        case Qt::Key_PageDown:
            return selecting(press, press.selectedIndex + press.cardsPerPage);
        case Qt::Key_Delete:
            return {Kind::Delete};
        default:
            return typed(press);
    }
}

PanelKeyAction onBarControl(const PanelKeyPress& press) {
    switch (press.key) {
        case Qt::Key_Escape:
            return {Kind::Hide};
        case Qt::Key_Return:
        case Qt::Key_Enter:
            return {Kind::PressControl};
        case Qt::Key_Left:
        case Qt::Key_Up:
            return {Kind::PreviousControl};
        case Qt::Key_Right:
        case Qt::Key_Down:
            return {Kind::NextControl};
        default:
            return typed(press);
    }
}

}  // namespace

PanelKeyAction panelKeyAction(const PanelKeyPress& press) {
    if ((press.modifiers & Qt::ControlModifier) != 0) {
        return withControl(press);
    }
    switch (press.focus) {
        case PanelFocus::SearchField:
            return inSearchField(press);
        case PanelFocus::BarControl:
            return onBarControl(press);
        case PanelFocus::Popup:
            return {Kind::LetThrough};
        case PanelFocus::Cards:
            break;
    }
    return onCards(press);
}

}  // namespace quillo
