// SPDX-License-Identifier: MIT
// What is done to clips and pinboards from the library window.
#include <QMimeData>

#include "library/groups/alert.h"
#include "library/groups/clip_drag.h"
#include "library/groups/form_controls.h"
#include "library/window/library_view.h"
#include "library/window/pinboard_editor.h"
#include "model/groups.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

QString clipsText(qsizetype count, const QString& done) {
    return (count == 1 ? u"Clip"_s : u"%1 clips"_s.arg(count)) + u' ' + done;
}

}  // namespace

void LibraryView::undo() {
    m_notice->undo();
}

void LibraryView::copySelected() {
    const QList<QUuid> clips = m_grid->selectedClips();
    if (clips.isEmpty()) {
        return;
    }
    const qsizetype copied = m_actions.copy(clips);
    if (copied == clips.size()) {
        m_notice->say(clipsText(copied, u"copied"_s));
    } else if (copied > 0) {
        m_notice->say(u"%1 of %2 clips copied, as text"_s.arg(copied).arg(clips.size()));
    } else {
        m_notice->say(u"Several images cannot be copied together"_s);
    }
}

void LibraryView::deleteSelected() {
    const QList<QUuid> clips = m_grid->selectedClips();
    if (clips.isEmpty()) {
        return;
    }
    m_actions.deleteClips(clips);
    m_notice->say(clipsText(m_actions.pendingClips().size(), u"deleted"_s),
                  [this] { m_actions.undoDeletion(); });
}

void LibraryView::deletePinboard(const QUuid& pinboard) {
    const auto item = m_groups.item(pinboard);
    auto restore = m_actions.deletePinboard(pinboard);
    if (item && restore) {
        m_notice->say(u"“%1” deleted"_s.arg(pinboardTitle(*item)), std::move(restore));
    }
}

void LibraryView::openMenu(const QRect& anchor) {
    const QList<QUuid> clips = m_grid->selectedClips();
    if (clips.isEmpty()) {
        return;
    }
    const bool isPinned = arePinned(m_services.persistence.viewContext(), clips);
    std::vector<MenuEntry> entries;
    entries.push_back({.title = u"&Copy"_s,
                       .symbol = u"doc.on.doc"_s,
                       .shortcut = u"Return"_s,
                       .action = [this, clips] {
                           if (clips.size() > 1) {
                               copySelected();
                               return;
                           }
                           m_actions.copyCard(clips[0]);
                           m_notice->say(clipsText(1, u"copied"_s));
                       }});
    entries.push_back(
        {.title = isPinned ? u"Un&pin"_s : u"&Pin"_s,
         .symbol = isPinned ? u"pin.slash"_s : u"pin"_s,
         .action = [this, clips, isPinned] { m_actions.setPinned(clips, !isPinned); }});
    entries.push_back(pinboardMenu());
    entries.push_back(MenuEntry::separator());
    entries.push_back({.title = u"&Delete"_s,
                       .symbol = u"trash"_s,
                       .shortcut = u"Del"_s,
                       .isDestructive = true,
                       .action = [this] { deleteSelected(); }});
    const QPoint corner = m_grid->viewport()->mapTo(window(), anchor.topLeft());
    PopupMenu::open(window(), std::move(entries), QRect(corner, anchor.size()), m_look.menus);
}

MenuEntry LibraryView::pinboardMenu() {
    MenuEntry menu{.title = u"&Add to Pinboard"_s, .symbol = u"folder"_s};
    const QList<QUuid> clips = m_grid->selectedClips();
    for (const GroupItem& item : m_groups.items()) {
        // An "&" of a title is no mark.
        menu.submenu.push_back(
            {.title = pinboardTitle(item).replace(u'&', u"&&"_s),
             .dot = item.color.value_or(m_look.accent),
             .action = [this, clips, id = item.id] { m_actions.setMembers(id, clips, true); }});
    }
    menu.isEnabled = !menu.submenu.empty();
    return menu;
}

void LibraryView::openEditor(std::optional<QUuid> pinboard) {
    if (Sheet::openIn(this) != nullptr) {
        return;
    }
    auto* editor = new PinboardEditor(m_services.persistence.viewContext(), pinboard);
    auto* sheet = new Sheet(this, librarySheet);
    sheet->setContent(editor);
    connect(editor, &PinboardEditor::saved, sheet, &Sheet::closeSheet);
    connect(editor, &PinboardEditor::cancelled, sheet, &Sheet::closeSheet);
    sheet->open(&editor->nameField());
}

// As typed: an empty name is a pinboard without one.
void LibraryView::openRename(const QUuid& pinboard) {
    const auto board = m_groups.group(pinboard);
    if (board == nullptr || Sheet::openIn(this) != nullptr) {
        return;
    }
    Alert::ask(this, librarySheet,
               {.title = u"Rename Pinboard"_s,
                .field = u"Name"_s,
                .text = board->title().value_or(QString()),
                .confirm = u"Rename"_s,
                .answered = [this, pinboard](const QString& name) {
                    if (const auto renamed = m_groups.group(pinboard)) {
                        (void)renameGroup(*renamed, name);
                    }
                }});
}

// A drag of the grid's own may be of several.
void LibraryView::takeDrop(const LibrarySection& section, const QUuid& clip) {
    const bool isOurs = m_grid->draggedClips().contains(clip);
    const QList<QUuid> clips = isOurs ? m_grid->draggedClips() : QList<QUuid>{clip};
    if (section.kind == LibrarySection::Kind::Pinboard) {
        m_actions.setMembers(section.pinboard, clips, true);
    } else if (section.kind == LibrarySection::Kind::Favorites) {
        m_actions.setPinned(clips, true);
    }
}

std::unique_ptr<QMimeData> LibraryView::dragData(const QList<QUuid>& clips) const {
    std::unique_ptr<QMimeData> carried = m_actions.dragData(clips);
    if (carried != nullptr) {
        setClipOfDrag(*carried, clips[0]);
    }
    return carried;
}

}  // namespace quillo
