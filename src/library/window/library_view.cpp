// SPDX-License-Identifier: MIT
#include "library/window/library_view.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMimeData>
#include <QShortcut>
#include <QStackedLayout>
#include <QVBoxLayout>
#include <utility>

#include "appearance/fonts.h"
#include "library/groups/form_controls.h"
#include "library/groups/text_color.h"
#include "library/groups/text_field_menu.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

constexpr int kHeaderHeight = 47;
constexpr int kMargin = 16;
constexpr int kSearchGap = 12;
constexpr int kSearchTrail = 10;

QString howToFill(const LibraryQuestion& question) {
    switch (question.section) {
        case LibrarySection::Kind::Favorites:
            return u"Pinned clips are found here"_s;
        case LibrarySection::Kind::Pinboard:
            return u"Drag clips onto the pinboard, or add them from their menu"_s;
        case LibrarySection::Kind::AllClips:
            break;
    }
    constexpr QChar kUnbrokenHyphen(0x2011);
    return u"Copy something to get started, then press %1 wherever you want to paste it"_s.arg(
        QString(question.shortcut).replace(u'-', kUnbrokenHyphen));
}

void setGround(QWidget& widget, const QColor& color) {
    QPalette palette = widget.palette();
    palette.setColor(QPalette::Window, color);
    widget.setPalette(palette);
}

}  // namespace

LibraryEmptyState::Texts libraryEmptyTexts(const LibraryQuestion& question) {
    const bool isFiltered = !question.searchText.isEmpty() || question.filter;
    return {.symbol = u"doc.on.clipboard"_s,
            .title = question.searchText.isEmpty() ? u"No clips yet"_s : u"No matching clips"_s,
            .caption = isFiltered ? QString() : howToFill(question),
            .button = isFiltered ? u"Clear Filters"_s : QString()};
}

LibraryView::LibraryView(LibraryServices services, QWidget* parent)
    : QWidget(parent),
      m_services(std::move(services)),
      m_sourceNames(m_services.workspace),
      m_groups(m_services.persistence.viewContext()),
      m_sections(m_groups),
      m_clips(m_services.persistence, m_services.sharedSearch,
              [this](const QString& id) { return m_sourceNames.of(id); }),
      m_pictures({m_services.images, m_services.documents, m_services.thumbnails,
                  m_services.workspace, storedBytesLoader(m_services.persistence)}),
      m_loader(
          {m_services.images, m_services.documents, storedBytesLoader(m_services.persistence)}),
      m_actions(m_services.persistence, m_services.pasteBack, m_groups, NoticeBar::kSecondThoughts),
      m_look(libraryLook(ColorScheme::Light)),
      m_tips(new PanelTips(this)),
      m_sidebar(new LibrarySidebar(m_sections)),
      m_title(new QLabel),
      m_newPinboard(new PushButton(PushButton::Style::Plain, u"New Pinboard"_s)),
      m_line(new QWidget),
      m_searchBar(new LibrarySearchBar),
      m_grid(new ClipGrid(m_clips, m_pictures, m_services.clock)),
      m_empty(new LibraryEmptyState({})),
      m_detail(new ClipDetail({m_services.persistence.viewContext(), m_groups, m_loader,
                               [this](const QString& id) { return m_sourceNames.of(id); },
                               [this](const Clip& clip) { return sourceIcon(clip); }})),
      m_columns(new LibraryColumns(m_services.defaults, m_sidebar, makeContent(), m_detail)),
      m_notice(new NoticeBar(m_stack->parentWidget())) {
    setMinimumSize(kLeastSize);
    auto* all = new QHBoxLayout(this);
    all->setContentsMargins(0, 0, 0, 0);
    all->addWidget(m_columns);
    new TextFieldMenu(m_searchBar->field(), nullptr, [this] { return m_look.menus; });
    connectParts();
    connectDetail();
    addShortcuts();
    applyLook();
    sectionsChanged();
    listChanged();
    if (m_stack->currentWidget() == m_grid) {
        m_grid->setFocus();
    } else {
        lendFocus();
    }
}

// The widgets use what the members are.
LibraryView::~LibraryView() {
    hide();
    delete m_columns;
}

QWidget* LibraryView::makeContent() {
    auto* content = new QWidget;
    content->setAutoFillBackground(true);
    m_title->setFont(sizedFont(font(), 16, QFont::Bold));
    m_title->setTextFormat(Qt::PlainText);
    m_newPinboard->setSymbol(u"folder.badge.plus"_s);
    m_newPinboard->setFixedHeight(28);
    m_newPinboard->setToolTip(u"New Pinboard (Ctrl+N)"_s);
    auto* header = new QHBoxLayout;
    header->setContentsMargins(kMargin, 0, kMargin, 0);
    header->addWidget(m_title, 1);
    header->addWidget(m_newPinboard);
    auto* headerArea = new QWidget;
    headerArea->setFixedHeight(kHeaderHeight);
    headerArea->setLayout(header);
    m_line->setFixedHeight(1);
    m_line->setAutoFillBackground(true);
    m_searchBar->setContentsMargins(kMargin, kSearchGap, kMargin, kSearchTrail);
    auto* area = new QWidget;
    m_stack = new QStackedLayout(area);
    m_stack->addWidget(m_grid);
    m_stack->addWidget(m_empty);
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(headerArea);
    column->addWidget(m_line);
    column->addWidget(m_searchBar);
    column->addWidget(area, 1);
    return content;
}

void LibraryView::connectParts() {
    connect(m_sidebar, &LibrarySidebar::sectionChosen, this, &LibraryView::showSection);
    connect(m_sidebar, &LibrarySidebar::typed, m_searchBar, &LibrarySearchBar::typeText);
    connect(m_sidebar, &LibrarySidebar::editorRequested, this, &LibraryView::openEditor);
    connect(m_sidebar, &LibrarySidebar::renameRequested, this, &LibraryView::openRename);
    connect(m_sidebar, &LibrarySidebar::deleteRequested, this, &LibraryView::deletePinboard);
    connect(m_sidebar, &LibrarySidebar::clipDropped, this, &LibraryView::takeDrop);
    connect(m_newPinboard, &PushButton::clicked, this, [this] { openEditor(); });
    connect(&m_searchBar->field(), &QLineEdit::textChanged, &m_clips, &LibraryClips::setSearchText);
    connect(&m_searchBar->field(), &LibrarySearchField::left, m_grid,
            [this] { m_grid->setFocus(Qt::TabFocusReason); });
    connect(&m_searchBar->types(), &TypePicker::chosen, this,
            [this](std::optional<FilterType> filter) {
                m_searchBar->types().setFilter(filter);
                m_clips.setTypeFilter(filter);
            });
    connect(m_empty, &LibraryEmptyState::pressed, this, &LibraryView::clearFilters);
    connect(m_grid, &ClipGrid::selectionChanged, this,
            [this] { m_detail->setClips(m_grid->selectedClips()); });
    connect(m_grid, &ClipGrid::activated, this, &LibraryView::copySelected);
    connect(m_grid, &ClipGrid::deleteRequested, this, &LibraryView::deleteSelected);
    connect(m_grid, &ClipGrid::moveRequested, this, [this](const ClipMove& move) {
        m_actions.moveClips(m_clips.section().pinboard, move);
    });
    connect(m_grid, &ClipGrid::menuRequested, this, &LibraryView::openMenu);
    connect(m_grid, &ClipGrid::typed, m_searchBar, &LibrarySearchBar::typeText);
    m_grid->setDragData([this](const QList<QUuid>& clips) { return dragData(clips); });
    connect(&m_clips, &LibraryClips::replaced, this, &LibraryView::listChanged);
    connect(&m_clips, &LibraryClips::changed, this, &LibraryView::listChanged);
    connect(&m_sections, &LibrarySections::changed, this, &LibraryView::sectionsChanged);
    connect(&m_actions, &LibraryActions::pendingChanged, this, [this] {
        m_clips.setHidden(m_actions.pendingClips());
        m_sections.setHidden(m_actions.pendingClips());
    });
    connect(&m_services.persistence.viewContext(), &ObjectContext::changed, this,
            &LibraryView::storeChanged);
}

void LibraryView::connectDetail() {
    connect(m_detail, &ClipDetail::copyRequested, this, &LibraryView::copySelected);
    connect(m_detail, &ClipDetail::deleteRequested, this, &LibraryView::deleteSelected);
    connect(m_detail, &ClipDetail::pinRequested, this,
            [this](bool isPinned) { m_actions.setPinned(m_detail->clips(), isPinned); });
    connect(m_detail, &ClipDetail::transformRequested, this,
            [this](TextTransformation transformation) {
                m_actions.copyTransformed(m_detail->clips().value(0), transformation);
                m_notice->say(u"Copied as "_s + label(transformation));
            });
    connect(m_detail, &ClipDetail::membershipRequested, this,
            [this](const QUuid& pinboard, bool isMember) {
                m_actions.setMembers(pinboard, m_detail->clips(), isMember);
            });
    connect(m_detail, &ClipDetail::linkOpened, this, [this](const QUrl& address) {
        if (!m_services.openLink(address)) {
            m_notice->say(u"No program opens links here"_s);
        }
    });
    connect(m_detail, &ClipDetail::fileShown, this,
            [this](const QUrl& address) { m_services.showFile(address); });
    connect(&m_pictures, &CardPictures::ready, m_detail, [this](const QUuid& clip) {
        if (m_detail->clips() == QList<QUuid>{clip}) {
            m_detail->showSource();
        }
    });
}

void LibraryView::addShortcuts() {
    const auto add = [this](const QString& keys, auto action) {
        connect(new QShortcut(QKeySequence(keys), this), &QShortcut::activated, this, action);
    };
    add(u"Ctrl+F"_s, [this] { m_searchBar->focusField(); });
    add(u"Ctrl+N"_s, [this] { openEditor(); });
    add(u"Ctrl+Z"_s, [this] { undo(); });
    add(u"F9"_s, [this] {
        keepFocus(*m_sidebar);
        m_columns->showSidebar(!m_columns->columnWidths().isSidebarShown);
    });
    add(u"Ctrl+I"_s, [this] {
        keepFocus(*m_detail);
        m_columns->showDetail(!m_columns->columnWidths().isDetailShown);
    });
    for (int i = 0; i < 9; ++i) {
        add(u"Ctrl+%1"_s.arg(i + 1), [this, i] {
            if (i < m_sidebar->rows().size()) {
                const bool isInSidebar = m_sidebar->isAncestorOf(focusWidget());
                showSection(m_sidebar->rows()[i]->content().section);
                if (isInSidebar) {
                    m_sidebar->focusSection();
                }
            }
        });
    }
}

// A column that goes leaves the focus to the clips.
void LibraryView::keepFocus(const QWidget& column) {
    if (column.isAncestorOf(QApplication::focusWidget())) {
        m_grid->setFocus();
    }
}

void LibraryView::applyLook() {
    m_look = libraryLookOf(*this);
    m_tips->setColors(m_look.menus);
    setGround(*m_line, m_look.line);
    setGround(*m_line->parentWidget(), m_look.ground);
    setTextColor(*m_title, m_look.primaryText);
    m_newPinboard->setLook(m_look.controls);
    m_sidebar->setLook(m_look);
    m_searchBar->setLook(m_look);
    m_grid->setLook(m_look);
    m_empty->setLook(m_look);
    m_detail->setLook(m_look);
    m_columns->setLook(m_look);
    m_notice->setLook(m_look);
}

void LibraryView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        applyLook();
    }
}

// The menu key is the display server's; its twin reaches us where nobody else wants it.
void LibraryView::keyPressEvent(QKeyEvent* event) {
    QWidget* const focus = focusWidget();
    if (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier &&
        focus != nullptr) {
        const QPoint place = focus->rect().center();
        QContextMenuEvent request(QContextMenuEvent::Keyboard, place, focus->mapToGlobal(place));
        QCoreApplication::sendEvent(focus, &request);
    } else if (event->key() == Qt::Key_Escape) {
        clearFilters();
    } else {
        QWidget::keyPressEvent(event);
    }
}

void LibraryView::showSection(const LibrarySection& section) {
    m_sidebar->setSection(section);
    m_clips.setSection(section);
    m_title->setText(m_sections.title(section));
}

// The chosen pinboard may be gone.
void LibraryView::sectionsChanged() {
    const LibrarySection& section = m_clips.section();
    showSection(m_sections.contains(section) ? section : LibrarySection());
}

void LibraryView::listChanged() {
    if (m_clips.count() > 0 || m_clips.isPending()) {
        m_stack->setCurrentWidget(m_grid);
        const QLineEdit& field = m_searchBar->field();
        if (std::exchange(m_isFocusLent, false) && field.hasFocus() && field.text().isEmpty()) {
            m_grid->setFocus();
        }
    } else {
        if (m_grid->hasFocus()) {
            lendFocus();
        }
        m_empty->setTexts(libraryEmptyTexts({m_clips.section().kind, m_clips.searchText(),
                                             m_clips.typeFilter(), m_services.shortcut()}));
        m_stack->setCurrentWidget(m_empty);
    }
    m_notice->raise();
}

void LibraryView::clearFilters() {
    m_searchBar->types().setFilter(std::nullopt);
    m_clips.clearFilters();
    m_searchBar->field().clear();
    m_grid->setFocus();
}

// While there are no cards nobody else would have the keyboard.
void LibraryView::lendFocus() {
    m_isFocusLent = true;
    m_searchBar->focusField();
}

void LibraryView::storeChanged(const ChangeSet& changes) {
    m_pictures.takeChanges(changes);
    if (!changes.deleted.isEmpty() || changes.everything) {
        m_grid->forgetTexts();
    }
}

QPixmap LibraryView::sourceIcon(const Clip& clip) {
    const CardContent card =
        cardContentFor(clip, m_sourceNames.of(clip.sourceBundleId().value_or(QString())));
    return m_pictures
        .picture(GridCardPainter::asked(card), GridCardPainter::askedSize(), devicePixelRatioF())
        .sourceIcon;
}

}  // namespace quillo
