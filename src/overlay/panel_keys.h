// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <Qt>

namespace quillo {

/// Which part of the panel has the keyboard.
enum class PanelFocus {
    Cards,
    SearchField,
    BarControl,  ///< A chip or a button.
    Popup,       ///< A menu, picker or editor within the panel.
};

/// A key press in the panel and the state it meets.
struct PanelKeyPress {
    int key = 0;  ///< Qt::Key.
    Qt::KeyboardModifiers modifiers;
    QString text;          ///< What the layout makes of it.
    quint32 scanCode = 0;  ///< The X11 key code, by position; 0 when unknown.
    PanelFocus focus = PanelFocus::Cards;
    int selectedIndex = 0;
    int cardCount = 0;
    int cardsPerPage = 1;  ///< How many cards are seen whole at once.
};

/// What the panel does with a key press.
struct PanelKeyAction {
    enum class Kind {
        LetThrough,  ///< Whoever has the focus gets it.
        Consume,     ///< Nothing happens.
        Hide,
        Select,     ///< The card at index.
        Choose,     ///< The card at index.
        Delete,     ///< The selected card.
        TogglePin,  ///< Of the selected card.
        OpenMenu,   ///< Of the selected card.
        FocusCards,
        FocusSearch,  ///< With its text selected.
        StartSearch,  ///< With what was typed.
        PressControl,
        NextControl,
        PreviousControl,
    };

    Kind kind = Kind::LetThrough;
    int index = 0;

    friend bool operator==(const PanelKeyAction&, const PanelKeyAction&) = default;
};

/// Decides a key press by the part that has the focus. The digits 1 to 9 choose cards, also on
/// layouts whose digit row gives digits only with Shift; any other character starts a search.
/// Editing keys are left to the text field, which knows its desktop's own.
[[nodiscard]] PanelKeyAction panelKeyAction(const PanelKeyPress& press);

}  // namespace quillo
