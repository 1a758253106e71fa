// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <Qt>

namespace quillo {

/// A key press in the panel and the state it meets.
struct PanelKeyPress {
    int key = 0;  ///< Qt::Key.
    Qt::KeyboardModifiers modifiers;
    QString text;               ///< What the layout makes of it.
    quint32 scanCode = 0;       ///< The X11 key code, by position; 0 when unknown.
    bool textHasFocus = false;  ///< A text input has the focus.
    int selectedIndex = 0;
    int cardCount = 0;
};

/// What the panel does with a key press.
struct PanelKeyAction {
    enum class Kind {
        LetThrough,  ///< Whoever has the focus gets it.
        Consume,     ///< Nothing happens.
        Hide,
        Select,  ///< The card at index.
        Choose,  ///< The card at index.
        FocusCards,
        FocusSearch,  ///< With its text selected.
        StartSearch,  ///< With what was typed.
        SelectAllText,
        CopyText,
        PasteText,
        CutText,
        UndoText,
    };

    Kind kind = Kind::LetThrough;
    int index = 0;

    friend bool operator==(const PanelKeyAction&, const PanelKeyAction&) = default;
};

/// Decides a key press. The digits 1 to 9 choose cards, also on layouts whose digit row gives
/// digits only with Shift; any other character starts a search.
[[nodiscard]] PanelKeyAction panelKeyAction(const PanelKeyPress& press);

}  // namespace quillo
