// SPDX-License-Identifier: MIT
#pragma once

#include "library/groups/panel_button.h"
#include "library/groups/popup_menu.h"

namespace quillo {

/// How a menu's rows are cut: the same for all of them, so that titles and ends line up.
struct MenuColumns {
    int title = 0;        ///< Width of the widest title.
    int shortcut = 0;     ///< Of the widest shortcut; 0 when there is none.
    bool hasEnd = false;  ///< A row has a check mark or a submenu.
};

/// One entry of a menu. It has the focus when it is highlighted.
class MenuRow final : public PanelButton {
    Q_OBJECT

public:
    /// The entry must outlive the row.
    MenuRow(const MenuEntry& entry, QWidget* parent);

    [[nodiscard]] const MenuEntry& entry() const { return m_entry; }
    [[nodiscard]] int titleWidth() const;
    [[nodiscard]] int shortcutWidth() const;
    /// The title without its mark, and the marked letter in lower case; null when there is none.
    [[nodiscard]] QString plainTitle() const;
    [[nodiscard]] QChar mnemonic() const;
    /// The title's first letter in lower case; null for an empty title.
    [[nodiscard]] QChar initial() const;

    /// It is the highlighted one, whether or not its window is the active one.
    [[nodiscard]] bool isCurrent() const { return window()->focusWidget() == this; }

    void setLook(const PopupLook& look);
    void setColumns(const MenuColumns& columns);
    /// Its submenu is open.
    void setSubmenuOpen(bool isOpen);

    [[nodiscard]] QSize sizeHint() const override;

Q_SIGNALS:
    /// The pointer was moved onto it.
    void entered();

protected:
    void mouseMoveEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] int titleX() const;
    [[nodiscard]] QColor ink(bool isHighlighted) const;
    void paintMark(QPainter& painter, const QColor& color) const;
    void paintTitle(QPainter& painter) const;
    void paintEnd(QPainter& painter, const QColor& color, bool isHighlighted) const;

    const MenuEntry& m_entry;
    PopupLook m_look;
    MenuColumns m_columns;
    bool m_isSubmenuOpen = false;
};

}  // namespace quillo
