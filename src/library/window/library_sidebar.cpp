// SPDX-License-Identifier: MIT
#include "library/window/library_sidebar.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "appearance/fonts.h"
#include "library/groups/form_controls.h"
#include "library/groups/slim_scroll_bar.h"
#include "library/groups/text_color.h"
#include "library/window/library_search_bar.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

constexpr int kMargin = 10;
constexpr int kTop = 22;
constexpr int kFixedRows = 2;
constexpr int kHeadingHeight = 22;

QLabel* heading(const QString& text) {
    auto* label = new QLabel(text);
    label->setFont(sizedFont(label->font(), 11, QFont::DemiBold));
    label->setFixedHeight(kHeadingHeight);
    label->setContentsMargins(8, 0, 0, 0);
    return label;
}

}  // namespace

LibrarySidebar::LibrarySidebar(const LibrarySections& sections, QWidget* parent)
    : QScrollArea(parent),
      m_sections(sections),
      m_look(libraryLook(ColorScheme::Light)),
      m_content(new QWidget),
      m_column(new QVBoxLayout(m_content)),
      m_libraryHeading(heading(u"Library"_s)),
      m_pinboardsHeading(heading(u"Pinboards"_s)),
      m_plus(new PushButton(PushButton::Style::Bare, QString())),
      m_placeLine(new QWidget(m_content)) {
    new SlimScrollBar(*this);
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    setAccessibleName(u"Sections"_s);
    m_content->setAcceptDrops(true);
    m_content->installEventFilter(this);
    m_content->setAutoFillBackground(true);
    m_placeLine->setAutoFillBackground(true);
    m_placeLine->hide();
    m_plus->setSymbol(u"plus"_s);
    m_plus->setAccessibleName(u"New Pinboard"_s);
    m_plus->setToolTip(u"New Pinboard"_s);
    m_column->setContentsMargins(kMargin, kTop, kMargin, kMargin);
    m_column->setSpacing(0);
    m_column->addWidget(m_libraryHeading);
    auto* pinboards = new QHBoxLayout;
    pinboards->setContentsMargins(0, 6, 0, 3);
    pinboards->addWidget(m_pinboardsHeading);
    pinboards->addStretch();
    pinboards->addWidget(m_plus);
    m_column->addLayout(pinboards);
    m_column->addStretch();
    setWidget(m_content);
    connect(m_plus, &PushButton::clicked, this, [this] { Q_EMIT editorRequested(std::nullopt); });
    connect(&m_sections, &LibrarySections::changed, this, &LibrarySidebar::updateRows);
    updateRows();
}

void LibrarySidebar::setLook(const LibraryLook& look) {
    m_look = look;
    QPalette palette = m_content->palette();
    palette.setColor(QPalette::Window, look.sidebar);
    m_content->setPalette(palette);
    setPalette(palette);
    palette.setColor(QPalette::Window, look.accent);
    m_placeLine->setPalette(palette);
    const QColor quiet = readableText(look.secondaryText, {look.sidebar});
    setTextColor(*m_libraryHeading, quiet);
    setTextColor(*m_pinboardsHeading, quiet);
    m_plus->setLook(look.controls);
    for (SidebarRow* row : std::as_const(m_rows)) {
        row->setLook(look);
    }
}

QList<SidebarRowContent> LibrarySidebar::contents() const {
    QList<SidebarRowContent> contents{{.section = {.kind = LibrarySection::Kind::AllClips},
                                       .symbol = u"doc.on.clipboard.fill"_s,
                                       .symbolColor = {},
                                       .title = u"All Clips"_s,
                                       .count = m_sections.clipCount()},
                                      {.section = {.kind = LibrarySection::Kind::Favorites},
                                       .symbol = u"star.fill"_s,
                                       .symbolColor = {},
                                       .title = u"Favorites"_s,
                                       .count = m_sections.favoriteCount()}};
    for (const GroupItem& item : m_sections.groups().items()) {
        contents.append({.section = LibrarySection::ofPinboard(item.id),
                         .symbol = u"folder.fill"_s,
                         .symbolColor = item.color.value_or(m_look.accent),
                         .title = pinboardTitle(item),
                         .count = m_sections.memberCount(item)});
    }
    return contents;
}

void LibrarySidebar::updateRows() {
    const QList<SidebarRowContent> wanted = contents();
    const bool isSameOrder =
        std::ranges::equal(wanted, m_rows, {}, &SidebarRowContent::section,
                           [](const SidebarRow* row) { return row->content().section; });
    if (isSameOrder) {
        for (qsizetype i = 0; i < wanted.size(); ++i) {
            m_rows[i]->setContent(wanted[i]);
        }
    } else {
        makeRows(wanted);
    }
}

// A section that stays keeps its row, and thereby the focus.
void LibrarySidebar::makeRows(const QList<SidebarRowContent>& contents) {
    QList<SidebarRow*> rows;
    for (const SidebarRowContent& content : contents) {
        SidebarRow* row = takeRow(content);
        rows.append(row);
        m_column->removeWidget(row);
        const int headings = rows.size() <= kFixedRows ? 1 : 2;
        m_column->insertWidget(int(rows.size()) - 1 + headings, row);
    }
    QWidget* before = m_content;
    for (SidebarRow* row : std::as_const(rows)) {
        setTabOrder(before, row);
        row->raise();
        before = row;
    }
    setTabOrder(before, m_plus);
    const bool hadFocus = std::ranges::any_of(m_rows, &QWidget::hasFocus);
    for (SidebarRow* row : std::exchange(m_rows, rows)) {
        row->hide();
        row->deleteLater();
    }
    markSection();
    if (hadFocus) {
        focusRow(rowOf(m_section) != nullptr ? m_section : LibrarySection());
    }
}

SidebarRow* LibrarySidebar::takeRow(const SidebarRowContent& content) {
    SidebarRow* row = rowOf(content.section);
    if (row == nullptr) {
        return makeRow(content);
    }
    m_rows.removeOne(row);
    row->setContent(content);
    return row;
}

SidebarRow* LibrarySidebar::makeRow(const SidebarRowContent& content) {
    auto* row = new SidebarRow(content, m_content);
    row->setLook(m_look);
    connect(row, &SidebarRow::clicked, this, [this, row] { choose(row->content().section); });
    if (content.section.kind == LibrarySection::Kind::Pinboard) {
        const QUuid pinboard = content.section.pinboard;
        connect(row, &SidebarRow::menuRequested, this,
                [this, row](const QRect& anchor) { openMenu(*row, anchor); });
        connect(row, &SidebarRow::dragged, this, [this, row](const QPoint& position) {
            showPlace(placeAt(row->mapTo(m_content, position)));
        });
        connect(row, &SidebarRow::dropped, this, [this, row, pinboard](const QPoint& position) {
            m_placeLine->hide();
            movePinboard(pinboard, placeAt(row->mapTo(m_content, position)));
        });
    }
    return row;
}

SidebarRow* LibrarySidebar::rowOf(const LibrarySection& section) const {
    const auto found = std::ranges::find_if(
        m_rows, [&](const SidebarRow* row) { return row->content().section == section; });
    return found != m_rows.end() ? *found : nullptr;
}

void LibrarySidebar::setSection(const LibrarySection& section) {
    m_section = section;
    markSection();
}

// The chosen row is the one that Tab stops at.
void LibrarySidebar::markSection() {
    for (SidebarRow* row : std::as_const(m_rows)) {
        const bool isChosen = row->content().section == m_section;
        row->setChecked(isChosen);
        row->setFocusPolicy(isChosen ? Qt::StrongFocus : Qt::ClickFocus);
    }
}

void LibrarySidebar::focusSection() {
    focusRow(m_section);
}

void LibrarySidebar::focusRow(const LibrarySection& section) {
    if (SidebarRow* row = rowOf(section)) {
        row->setFocus(Qt::OtherFocusReason);
        ensureWidgetVisible(row, 0, SidebarRow::kHeight);
    }
}

void LibrarySidebar::choose(const LibrarySection& section) {
    setSection(section);
    Q_EMIT sectionChosen(section);
}

void LibrarySidebar::chooseBeside(int step) {
    const qsizetype now = m_rows.indexOf(rowOf(m_section));
    const qsizetype next = std::clamp<qsizetype>(now + step, 0, m_rows.size() - 1);
    if (next != now) {
        choose(m_rows[next]->content().section);
        focusSection();
    }
}

// What the keys mean: a row can have the focus without being chosen.
LibrarySection LibrarySidebar::sectionAtHand() const {
    const auto focused = std::ranges::find_if(m_rows, &QWidget::hasFocus);
    return focused != m_rows.end() ? (*focused)->content().section : m_section;
}

void LibrarySidebar::keyPressEvent(QKeyEvent* event) {
    const LibrarySection section = sectionAtHand();
    const bool isPinboard = section.kind == LibrarySection::Kind::Pinboard;
    const bool isUp = event->key() == Qt::Key_Up;
    if (isUp || event->key() == Qt::Key_Down) {
        if (!event->modifiers().testFlag(Qt::AltModifier)) {
            chooseBeside(isUp ? -1 : 1);
        } else if (isPinboard) {
            const int place = int(m_rows.indexOf(rowOf(section))) - kFixedRows;
            movePinboard(section.pinboard, isUp ? place - 1 : place + 2);
        }
    } else if (isPinboard && event->key() == Qt::Key_F2) {
        Q_EMIT renameRequested(section.pinboard);
    } else if (isPinboard && event->key() == Qt::Key_Delete) {
        Q_EMIT deleteRequested(section.pinboard);
    } else if (isSearchText(*event)) {
        Q_EMIT typed(event->text());
    } else {
        QScrollArea::keyPressEvent(event);
    }
}

}  // namespace quillo
