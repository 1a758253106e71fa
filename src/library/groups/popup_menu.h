// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QList>
#include <QTimer>
#include <functional>
#include <optional>
#include <vector>

#include "library/groups/popup.h"

namespace quillo {

class MenuRow;

/// One line of a menu.
struct MenuEntry {
    enum class Kind { Action, Separator };

    QString title = {};  ///< An "&" marks the letter that triggers it, "&&" is one "&".
    Kind kind = Kind::Action;
    std::optional<QColor> dot = {};  ///< A coloured dot in front of the title.
    QString symbol = {};             ///< In front of the title.
    QString shortcut = {};           ///< What is shown at the end; triggers nothing.
    std::optional<bool> check = {};  ///< Present: can be checked, and whether it is.
    bool isEnabled = true;
    bool isDestructive = false;
    std::vector<MenuEntry> submenu = {};
    std::function<void()> action = {};  ///< Called when the menu is closed and the focus is back.

    [[nodiscard]] static MenuEntry separator();
};

/// A menu inside the panel. Up and Down walk its entries, Right or Return opens a submenu, Left
/// and Escape leave it, Return and Space trigger, a letter goes to the next title that starts with
/// it and triggers the only one that has it as its mnemonic.
class PopupMenu final : public Popup {
    Q_OBJECT

public:
    static constexpr int kRowHeight = 26;

    PopupMenu(QWidget* panel, std::vector<MenuEntry> entries,
              const Palette& colors = paletteFor(ColorScheme::Light));

    /// Opens a menu that deletes itself when it is closed. The anchor is in the panel's
    /// coordinates: for a right click the point, for a key the rectangle of what it belongs to.
    static PopupMenu* open(QWidget* panel, std::vector<MenuEntry> entries, const QRect& anchor,
                           const Palette& colors, PopupSide side = PopupSide::Below);

    [[nodiscard]] const std::vector<MenuEntry>& entries() const { return m_entries; }
    /// Position in entries(); -1 when nothing is highlighted.
    [[nodiscard]] int currentIndex() const;
    void setCurrentIndex(int index);
    /// Closes the menus and calls the action, or opens the submenu. A disabled entry does nothing.
    void trigger(int index);
    /// The open submenu; none is null.
    [[nodiscard]] PopupMenu* submenu() const { return m_submenu; }

Q_SIGNALS:
    /// When an entry without a submenu was triggered, before its action is called. Sent by the
    /// menu that holds the entry.
    void triggered(int index);

protected:
    [[nodiscard]] QWidget* initialFocus() const override;
    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent* event) override;
    void lookChanged() override;

private:
    enum class Entered { ByKey, ByPointer };

    void addRows();
    void rowEntered(int index);
    void step(int from, int direction);
    void openSubmenu(int index, Entered how);
    void closeSubmenu();
    void closeAllMenus();
    void followPointer();
    [[nodiscard]] bool jumpTo(const QString& letter);

    std::vector<MenuEntry> m_entries;
    QList<MenuRow*> m_rows;  ///< Null for a separator.
    PopupMenu* m_parentMenu = nullptr;
    QPointer<PopupMenu> m_submenu;
    int m_submenuIndex = -1;
    QTimer m_hover;
    int m_pointedIndex = -1;
};

}  // namespace quillo
