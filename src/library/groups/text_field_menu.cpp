// SPDX-License-Identifier: MIT
#include "library/groups/text_field_menu.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QKeySequence>
#include <QLineEdit>

namespace quillo {
namespace {

struct Command {
    const char* title;
    QKeySequence::StandardKey key;
    void (*run)(QLineEdit& field);
    bool isPossible;
};

MenuEntry entryFor(const Command& command, QLineEdit& field) {
    MenuEntry entry;
    entry.title = QString::fromLatin1(command.title);
    entry.shortcut = QKeySequence(command.key).toString(QKeySequence::NativeText);
    entry.isEnabled = command.isPossible;
    entry.action = [run = command.run, target = QPointer<QLineEdit>(&field)] {
        if (target != nullptr) {
            run(*target);
        }
    };
    return entry;
}

bool isMenuKey(const QKeyEvent& event) {
    return event.key() == Qt::Key_Menu ||
           (event.key() == Qt::Key_F10 && (event.modifiers() & Qt::ShiftModifier) != 0);
}

}  // namespace

// Whether there is anything to paste is not asked: the answer is another program's, and waiting
// for it would stop the panel.
std::vector<MenuEntry> textFieldMenuEntries(QLineEdit& field) {
    const bool canWrite = !field.isReadOnly();
    const bool isShown = field.echoMode() == QLineEdit::Normal;
    const bool hasSelection = field.hasSelectedText();
    const bool hasMore = !field.text().isEmpty() && field.selectedText() != field.text();
    const auto entry = [&field](const Command& command) { return entryFor(command, field); };
    using Key = QKeySequence;
    return {
        entry({"&Undo", Key::Undo, [](QLineEdit& to) { to.undo(); },
               canWrite && field.isUndoAvailable()}),
        entry({"&Redo", Key::Redo, [](QLineEdit& to) { to.redo(); },
               canWrite && field.isRedoAvailable()}),
        MenuEntry::separator(),
        entry({"Cu&t", Key::Cut, [](QLineEdit& to) { to.cut(); },
               canWrite && isShown && hasSelection}),
        entry({"&Copy", Key::Copy, [](QLineEdit& to) { to.copy(); }, isShown && hasSelection}),
        entry({"&Paste", Key::Paste, [](QLineEdit& to) { to.paste(); }, canWrite}),
        entry({"Delete", Key::Delete, [](QLineEdit& to) { to.del(); }, canWrite && hasSelection}),
        MenuEntry::separator(),
        entry({"Select &All", Key::SelectAll, [](QLineEdit& to) { to.selectAll(); }, hasMore})};
}

TextFieldMenu::TextFieldMenu(QLineEdit& field, QWidget* panel, Colors colors)
    : QObject(&field), m_field(field), m_panel(panel), m_colors(std::move(colors)) {
    field.installEventFilter(this);
}

void TextFieldMenu::open(const QRect& anchorInField) {
    QWidget* const panel = m_panel != nullptr ? m_panel.data() : m_field.window();
    const QRect anchor = anchorInField.translated(m_field.mapTo(panel, QPoint()));
    PopupMenu::open(panel, textFieldMenuEntries(m_field), anchor, m_colors());
}

// The Menu key comes as a key and, on some display servers, as a request before it.
bool TextFieldMenu::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ContextMenu) {
        const auto* request = static_cast<QContextMenuEvent*>(event);
        if (request->reason() != QContextMenuEvent::Keyboard) {
            m_field.setFocus(Qt::MouseFocusReason);
            open(QRect(request->pos(), QSize()));
        }
        return true;
    }
    if (event->type() == QEvent::KeyPress && isMenuKey(*static_cast<QKeyEvent*>(event))) {
        open(m_field.rect());
        return true;
    }
    return QObject::eventFilter(watched, event);
}

}  // namespace quillo
