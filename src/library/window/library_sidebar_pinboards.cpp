// SPDX-License-Identifier: MIT
// What can be done to the pinboards in the sidebar: their menu, their order, and what is dropped
// on them.
#include <QDropEvent>
#include <QMimeData>
#include <algorithm>

#include "base/color_text.h"
#include "library/groups/clip_drag.h"
#include "library/window/library_sidebar.h"
#include "model/group_palette.h"
#include "model/groups.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

constexpr int kFixedRows = 2;
constexpr int kLineHeight = 2;

}  // namespace

MenuEntry LibrarySidebar::colorMenuOf(const QUuid& pinboard) {
    MenuEntry menu{.title = u"Change &Color"_s, .symbol = u"paintpalette"_s};
    const auto group = m_sections.groups().group(pinboard);
    const QString current = group ? group->colorHex().value_or(QString()) : QString();
    for (const GroupColor& color : groupPalette()) {
        const QString hex = QString::fromLatin1(color.hex);
        menu.submenu.push_back({.title = QString::fromLatin1(color.name),
                                .dot = colorFromHex(hex),
                                .check = hex == current,
                                .action = [this, pinboard, hex] {
                                    if (const auto board = m_sections.groups().group(pinboard)) {
                                        (void)recolorGroup(*board,
                                                           colorFromHex(hex).value_or(QColor()));
                                    }
                                }});
    }
    return menu;
}

std::vector<MenuEntry> LibrarySidebar::menuOf(const QUuid& pinboard) {
    std::vector<MenuEntry> entries;
    entries.push_back({.title = u"&Rename"_s,
                       .symbol = u"pencil"_s,
                       .shortcut = u"F2"_s,
                       .action = [this, pinboard] { Q_EMIT renameRequested(pinboard); }});
    entries.push_back({.title = u"&Edit…"_s, .symbol = u"folder"_s, .action = [this, pinboard] {
                           Q_EMIT editorRequested(pinboard);
                       }});
    entries.push_back(colorMenuOf(pinboard));
    entries.push_back(MenuEntry::separator());
    entries.push_back({.title = u"&Delete"_s,
                       .symbol = u"trash"_s,
                       .shortcut = u"Del"_s,
                       .isDestructive = true,
                       .action = [this, pinboard] { Q_EMIT deleteRequested(pinboard); }});
    return entries;
}

void LibrarySidebar::openMenu(const SidebarRow& row, const QRect& anchor) {
    const QRect inWindow(row.mapTo(window(), anchor.topLeft()), anchor.size());
    PopupMenu::open(window(), menuOf(row.content().section.pinboard), inWindow, m_look.menus);
}

// Before which pinboard a dragged row would go.
int LibrarySidebar::placeAt(const QPoint& contentPoint) const {
    int place = 0;
    for (qsizetype i = kFixedRows; i < m_rows.size(); ++i) {
        place += contentPoint.y() > m_rows[i]->geometry().center().y() ? 1 : 0;
    }
    return place;
}

void LibrarySidebar::showPlace(int place) {
    const QRect above = m_rows[kFixedRows + std::max(0, place - 1)]->geometry();
    const int y = place == 0 ? above.top() : above.bottom();
    m_placeLine->setGeometry(above.left(), y, above.width(), kLineHeight);
    m_placeLine->raise();
    m_placeLine->show();
}

void LibrarySidebar::movePinboard(const QUuid& pinboard, int place) {
    QList<std::shared_ptr<Pinboard>> groups;
    qsizetype from = -1;
    for (const GroupItem& item : m_sections.groups().items()) {
        from = item.id == pinboard ? groups.size() : from;
        groups.append(m_sections.groups().group(item.id));
    }
    // Counted without the one that moves.
    const qsizetype to = std::clamp<qsizetype>(place > from ? place - 1 : place, 0,
                                               std::max<qsizetype>(0, groups.size() - 1));
    if (from >= 0 && from != to && !groups.contains(nullptr)) {
        groups.move(from, to);
        (void)reorderGroups(m_sections.groups().context(), groups);
    }
}

bool LibrarySidebar::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::DragEnter:
        case QEvent::DragMove: {
            auto* move = static_cast<QDropEvent*>(event);
            const bool isTaken = clipOfDrag(*move->mimeData()).has_value();
            // Between two rows nothing is dropped, but the drag goes on.
            move->setDropAction(isTaken && dragOver(*move) ? Qt::CopyAction : Qt::IgnoreAction);
            move->setAccepted(isTaken);
            return true;
        }
        case QEvent::DragLeave:
            markDropTarget(nullptr);
            return true;
        case QEvent::Drop:
            drop(*static_cast<QDropEvent*>(event));
            return true;
        default:
            return QScrollArea::eventFilter(watched, event);
    }
}

bool LibrarySidebar::dragOver(const QDropEvent& event) {
    const QPoint position = event.position().toPoint();
    const auto at = std::ranges::find_if(m_rows, [&](const SidebarRow* row) {
        return row->geometry().contains(position) &&
               row->content().section.kind != LibrarySection::Kind::AllClips;
    });
    markDropTarget(at != m_rows.end() ? *at : nullptr);
    return at != m_rows.end();
}

void LibrarySidebar::drop(const QDropEvent& event) {
    const auto clip = clipOfDrag(*event.mimeData());
    const bool isOnRow = dragOver(event);
    const QPoint position = event.position().toPoint();
    markDropTarget(nullptr);
    if (!isOnRow || !clip) {
        return;
    }
    const auto at = std::ranges::find_if(
        m_rows, [&](const SidebarRow* row) { return row->geometry().contains(position); });
    Q_EMIT clipDropped((*at)->content().section, *clip);
}

void LibrarySidebar::markDropTarget(const SidebarRow* target) {
    for (SidebarRow* row : std::as_const(m_rows)) {
        row->setDropTarget(row == target);
    }
}

}  // namespace quillo
