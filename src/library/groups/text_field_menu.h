// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>
#include <functional>
#include <vector>

#include "library/groups/popup_menu.h"

class QLineEdit;

namespace quillo {

/// Undo, Redo, Cut, Copy, Paste, Delete, Select All, as far as each is possible now.
[[nodiscard]] std::vector<MenuEntry> textFieldMenuEntries(QLineEdit& field);

/// Opens that menu, instead of the standard one, which is a window, on a right click, the Menu key
/// and Shift-F10. Belongs to the field.
class TextFieldMenu final : public QObject {
    Q_OBJECT

public:
    using Colors = std::function<Palette()>;

    /// The panel is that of the field when it is null: its window. colors says how the menu is
    /// drawn when it opens.
    TextFieldMenu(QLineEdit& field, QWidget* panel, Colors colors);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void open(const QRect& anchorInField);

    QLineEdit& m_field;
    QPointer<QWidget> m_panel;
    Colors m_colors;
};

}  // namespace quillo
