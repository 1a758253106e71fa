// SPDX-License-Identifier: MIT
// How a menu is walked by key.
#include <QKeyEvent>
#include <algorithm>

#include "library/groups/menu_row.h"
#include "library/groups/popup_menu.h"

namespace quillo {

void PopupMenu::step(int from, int direction) {
    const int count = int(m_rows.size());
    for (int i = 1; i <= count; ++i) {
        const int at = ((from + direction * i) % count + count) % count;
        if (m_rows.at(at) != nullptr && m_rows.at(at)->isEnabled()) {
            setCurrentIndex(at);
            return;
        }
    }
}

// A mnemonic triggers, other first letters walk through the titles that start with them.
bool PopupMenu::jumpTo(const QString& letter) {
    if (letter.isEmpty() || !letter.at(0).isPrint()) {
        return false;
    }
    const QChar wanted = letter.at(0).toLower();
    const int count = int(m_rows.size());
    const auto isOf = [&](int at, auto&& tells) {
        const MenuRow* row = m_rows.at(at);
        return row != nullptr && row->isEnabled() && tells(*row) == wanted;
    };
    for (int at = 0; at < count; ++at) {
        if (isOf(at, [](const MenuRow& row) { return row.mnemonic(); })) {
            trigger(at);
            return true;
        }
    }
    for (int i = 1; i <= count; ++i) {
        const int at = (std::max(currentIndex(), -1) + i) % count;
        if (isOf(at, [](const MenuRow& row) { return row.initial(); })) {
            setCurrentIndex(at);
            return true;
        }
    }
    return false;
}

void PopupMenu::keyPressEvent(QKeyEvent* event) {
    const int current = currentIndex();
    switch (event->key()) {
        case Qt::Key_Up:
            step(current < 0 ? 0 : current, -1);
            return;
        case Qt::Key_Down:
            step(current, 1);
            return;
        case Qt::Key_Home:
            step(-1, 1);
            return;
        case Qt::Key_End:
            step(0, -1);
            return;
        case Qt::Key_Right:
            if (current >= 0) {
                openSubmenu(current, Entered::ByKey);
            }
            return;
        case Qt::Key_Left:
            if (m_parentMenu != nullptr) {
                close();
            }
            return;
        default:
            break;
    }
    const bool isPlain = (event->modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) == 0;
    if (!isPlain || event->key() == Qt::Key_Escape || !jumpTo(event->text())) {
        Popup::keyPressEvent(event);
    }
}

bool PopupMenu::focusNextPrevChild(bool next) {
    step(currentIndex() < 0 && !next ? 0 : currentIndex(), next ? 1 : -1);
    return true;
}

}  // namespace quillo
