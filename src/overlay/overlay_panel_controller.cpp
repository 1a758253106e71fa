// SPDX-License-Identifier: MIT
#include "overlay/overlay_panel_controller.h"

#include <QApplication>
#include <QCursor>
#include <QKeyEvent>
#include <QMimeData>
#include <QScreen>
#include <QTimer>
#include <QWindow>

#include "base/logging.h"
#include "library/groups/chip_row.h"
#include "library/groups/clip_drag.h"
#include "library/groups/group_menu.h"
#include "library/groups/text_field_menu.h"
#include "overlay/panel_geometry.h"
#include "overlay/search_field.h"

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcPanel, "OverlayPanelController")

constexpr std::chrono::milliseconds kToggleDebounce{300};

}  // namespace

OverlayPanelController::OverlayPanelController(OverlayPanelServices services, QObject* parent)
    : PanelPositionControl(parent),
      m_services(std::move(services)),
      m_placement(m_services.defaults),
      m_clips(m_services.persistence, m_services.workspace),
      m_actions(m_services.persistence, m_clips),
      m_deletions([this](const QList<QUuid>& clips) { m_actions.deleteForGood(clips); },
                  kSecondThoughts),
      m_groups(m_services.persistence.viewContext()),
      m_pictures({m_services.images, m_services.documents, m_services.thumbnails,
                  m_services.workspace, storedBytesLoader(m_services.persistence)}),
      m_appearance(m_services.colors, m_services.theme, m_services.defaults) {
    connect(&m_clips, &OverlayClips::refreshed, this, &OverlayPanelController::clipsRefreshed);
    connect(&m_clips, &OverlayClips::groupLost, this, [this] {
        if (m_view != nullptr) {
            m_view->bar().chips().setSelectedGroup(std::nullopt);
        }
        resetSelection();
    });
    connect(&m_deletions, &PendingDeletions::changed, this,
            &OverlayPanelController::deletionsChanged);
    connect(&m_services.persistence.viewContext(), &ObjectContext::changed, &m_pictures,
            &CardPictures::takeChanges);
    connect(&m_services.persistence.viewContext(), &ObjectContext::changed, this,
            [this](const ChangeSet& changes) {
                m_deletions.forget([&changes](const QUuid& clip) {
                    return changes.deleted.contains(ObjectId{Entity::Clip, clip});
                });
                if (m_view != nullptr && (changes.everything || !changes.deleted.isEmpty())) {
                    m_view->strip().forgetTexts();
                }
            });
    m_services.surface.setCompositingListener([this] { compositingChanged(); });
    followSettings();
    m_clips.refresh();
    QTimer::singleShot(0, this, &OverlayPanelController::prepare);
}

OverlayPanelController::~OverlayPanelController() {
    m_services.surface.setCompositingListener({});
    qApp->removeEventFilter(this);
    // While the list that hears of it is still there.
    m_deletions.complete();
}

void OverlayPanelController::followSettings() {
    connect(&m_services.colors, &ClipTypeColorManager::panelWidthChanged, this,
            &OverlayPanelController::fitPanel);
    connect(&m_placement, &PanelPlacement::positionChanged, this, [this] {
        placeAgain();
        Q_EMIT panelPositionChanged();
    });
    connect(&m_placement, &PanelPlacement::lockedChanged, this, [this] {
        showLock();
        Q_EMIT positionLockedChanged();
    });
    connect(&m_placement, &PanelPlacement::customOriginChanged, this, [this] {
        if (m_isVisible) {
            placeAgain();
        }
        Q_EMIT customOriginChanged();
    });
}

void OverlayPanelController::toggle() {
    const auto now = std::chrono::steady_clock::now();
    if (m_lastToggleTime.time_since_epoch().count() != 0 &&
        now - m_lastToggleTime <= kToggleDebounce) {
        return;
    }
    m_lastToggleTime = now;
    // A window manager that starts or ends may have taken the window off the screen.
    const bool isSeen = m_isVisible && m_panel->windowHandle()->isExposed();
    hide();
    if (!isSeen) {
        show();
    }
}

void OverlayPanelController::createPanel() {
    if (m_panel) {
        return;
    }
    if (mainScreen() == nullptr) {
        qCCritical(lcPanel, "No screen available");
        return;
    }
    const bool isBlended = m_services.surface.isCompositing();
    m_panel = std::make_unique<OverlayPanel>(isBlended ? OverlayPanel::Corners::Blended
                                                       : OverlayPanel::Corners::Cut);
    m_view = new OverlayView(m_clips, m_pictures, m_services.clock);
    m_panel->setContent(m_view);
    m_popups = new OverlayPopups(m_panel.get(), m_groups);
    connectBar();
    connectStrip();
    showLock();
    m_appearance.dress(m_view, m_popups, isBlended ? Backdrop::Visible : Backdrop::Hidden);
    connect(m_panel.get(), &OverlayPanel::dragged, this, [this] { m_wasDragged = m_isVisible; });
    m_panel->winId();
    m_services.workspace.ignoreWindow(quint32(m_panel->winId()));
    qCDebug(lcPanel, "Overlay panel created");
}

void OverlayPanelController::connectBar() {
    OverlayBar& bar = m_view->bar();
    connect(&bar, &OverlayBar::closeRequested, this, &OverlayPanelController::hide);
    connect(&bar, &OverlayBar::lockToggled, this,
            [this] { setPositionLocked(!isPositionLocked()); });
    connect(&bar, &OverlayBar::settingsRequested, this,
            [this] { m_services.notifications.post(kOpenPreferencesNotification); });
    connect(&bar, &OverlayBar::libraryRequested, this,
            [this] { m_services.notifications.post(kOpenLibraryNotification); });
    connect(&bar.search(), &QLineEdit::textChanged, this,
            &OverlayPanelController::searchTextChanged);
    new TextFieldMenu(bar.search(), m_panel.get(), [this] { return m_popups->colors(); });
    ChipRow& chips = bar.chips();
    chips.followFilters(m_services.colors);
    chips.followGroups(m_groups);
    connect(&chips, &ChipRow::filterChosen, this, [this](std::optional<FilterType> filter) {
        ChipRow& row = m_view->bar().chips();
        // "All" twice is all of the history.
        if (!filter && !m_clips.typeFilter() && m_clips.groupFilter()) {
            row.setSelectedGroup(std::nullopt);
            m_clips.setGroupFilter(std::nullopt);
        }
        row.setSelectedFilter(filter);
        resetSelection();
        m_clips.setTypeFilter(filter);
    });
    connect(&chips, &ChipRow::groupChosen, this, [this](std::optional<QUuid> group) {
        m_view->bar().chips().setSelectedGroup(group);
        resetSelection();
        m_clips.setGroupFilter(group);
    });
    connect(&chips, &ChipRow::createGroupRequested, m_popups, &OverlayPopups::openCreateGroup);
    connect(&chips, &ChipRow::clipDropped, this, [this](const QUuid& group, const QUuid& clip) {
        addDroppedClip(m_groups, group, clip);
    });
}

void OverlayPanelController::connectStrip() {
    ClipStrip& strip = m_view->strip();
    strip.setDragData([this](const QUuid& id) {
        const auto clip = m_services.persistence.viewContext().object<Clip>(id);
        std::unique_ptr<QMimeData> data = clip ? m_services.pasteBack.dragData(*clip) : nullptr;
        if (data) {
            setClipOfDrag(*data, id);
        }
        return data;
    });
    connect(&strip, &ClipStrip::cardClicked, this,
            [this](int index) { chooseClip(index, m_clips.clips()); });
    connect(&strip, &ClipStrip::deleteRequested, this,
            [this](int index) { deleteClip(clipAt(index)); });
    connect(&strip, &ClipStrip::groupsRequested, this, [this](int index, const QRect& anchor) {
        m_popups->openGroups(clipAt(index), inPanel(anchor));
    });
    connect(&strip, &ClipStrip::menuRequested, this, &OverlayPanelController::openCardMenu);
    connect(&strip, &ClipStrip::draggedOver, this,
            [this](const QUuid& dragged, int index) { m_actions.dragOver(dragged, index); });
    connect(&m_view->hints(), &HintsLine::undoRequested, &m_deletions, &PendingDeletions::undo);
    connect(m_popups, &OverlayPopups::pinToggled, this,
            [this](const QUuid& clip) { m_actions.togglePin(clip); });
    connect(m_popups, &OverlayPopups::deleteRequested, this, &OverlayPanelController::deleteClip);
}

// Loads the fonts and symbols, lays the view out and asks for the first pictures, so that the first
// show costs no more than the later ones.
void OverlayPanelController::prepare() {
    if (m_isVisible) {
        return;
    }
    createPanel();
    if (m_panel) {
        fitPanel();
        (void)m_panel->grab();
    }
}

void OverlayPanelController::show() {
    if (m_isVisible) {
        return;
    }
    m_services.captureSoon();
    m_previousApp = m_services.workspace.frontmostApplication();
    createPanel();
    if (!m_panel) {
        return;
    }
    fitPanel();
    m_panel->setMovable(!isPositionLocked());
    updateButtons();
    resetSelection();
    const quint32 userTime = m_services.userTime();
    const bool shinesThrough = m_panel->testAttribute(Qt::WA_TranslucentBackground);
    m_services.surface.setBlurRegion(*m_panel->windowHandle(),
                                     shinesThrough ? m_panel->shape() : QRegion());
    m_services.surface.prepare(*m_panel->windowHandle(), userTime);
    m_panel->show();
    m_panel->raise();
    m_services.surface.takeFocus(*m_panel->windowHandle(), userTime);
    m_view->strip().setFocus();
    qApp->installEventFilter(this);
    m_isVisible = true;
    QTimer::singleShot(0, this,
                       [this] { m_services.notifications.post(kOverlayDidShowNotification); });
}

void OverlayPanelController::hide() {
    if (!m_isVisible || !m_panel) {
        return;
    }
    qApp->removeEventFilter(this);
    m_isVisible = false;
    if (std::exchange(m_wasDragged, false)) {
        m_placement.setCustomOrigin(m_panel->pos());
    }
    m_services.surface.release(*m_panel->windowHandle());
    m_panel->hide();
    if (m_previousApp) {
        qCDebug(lcPanel, "Reactivating: %s",
                m_previousApp->localizedName.isEmpty()
                    ? "unknown"
                    : qUtf8Printable(m_previousApp->localizedName));
        m_services.workspace.activate(*m_previousApp);
    }
    // Reset now, so that the next first frame never shows where this one ended.
    clearCriteria();
    // The paste that may follow does not wait for the store.
    QTimer::singleShot(0, &m_deletions, &PendingDeletions::complete);
    qCDebug(lcPanel, "Overlay hidden");
}

void OverlayPanelController::clearCriteria() {
    m_view->bar().search().clear();
    m_view->bar().chips().setSelectedFilter(std::nullopt);
    m_view->bar().chips().setSelectedGroup(std::nullopt);
    m_clips.clearCriteria();
    resetSelection();
}

void OverlayPanelController::updateButtons() {
    const NotificationCenter& notifications = m_services.notifications;
    m_view->bar().setSettingsAvailable(notifications.isObserved(kOpenPreferencesNotification));
    m_view->bar().setLibraryAvailable(notifications.isObserved(kOpenLibraryNotification));
}

void OverlayPanelController::resetSelection() {
    m_awaitedChoice.reset();
    m_selection.reset();
    if (m_view != nullptr) {
        m_view->reset();
    }
}

void OverlayPanelController::searchTextChanged(const QString& text) {
    resetSelection();
    m_clips.setSearchText(text);
}

QScreen* OverlayPanelController::mainScreen() const {
    if (m_previousApp) {
        if (const std::optional<QRect> frame = m_services.workspace.frame(*m_previousApp)) {
            if (QScreen* screen = screenOfNativeFrame(*frame)) {
                return screen;
            }
        }
    }
    QScreen* underPointer = QGuiApplication::screenAt(QCursor::pos());
    return underPointer != nullptr ? underPointer : QGuiApplication::primaryScreen();
}

void OverlayPanelController::fitPanel() {
    const QScreen* screen = mainScreen();
    if (m_panel && screen != nullptr) {
        applyFrame(*screen,
                   panelWidthOn(screen->geometry().width(), m_services.colors.panelWidth()));
    }
}

void OverlayPanelController::placeAgain() {
    const QScreen* screen = mainScreen();
    if (m_panel && screen != nullptr) {
        applyFrame(*screen, m_panel->width());
    }
}

void OverlayPanelController::applyFrame(const QScreen& screen, int width) {
    const QRect frame = m_placement.frameOn(screen, width);
    if (m_panel->geometry() != frame) {
        m_panel->setGeometry(frame);
    }
}

// A window's depth is fixed at its creation: the panel is made anew for the other kind.
void OverlayPanelController::compositingChanged() {
    const bool wasVisible = m_isVisible;
    hide();
    m_view = nullptr;
    m_popups = nullptr;
    m_panel.reset();
    if (wasVisible) {
        show();
    }
}

QUuid OverlayPanelController::clipAt(int index) const {
    return m_clips.cards().value(index).clip;
}

void OverlayPanelController::clipsRefreshed() {
    if (!m_isVisible) {
        return;
    }
    if (m_awaitedChoice && !m_clips.isPending()) {
        chooseClip(*std::exchange(m_awaitedChoice, std::nullopt), m_clips.clips());
        return;
    }
    // A card that the person moved to stays the selected one when others come before it.
    m_selection.follow(m_clips.cardIds());
    m_view->strip().followSelected(m_selection.index());
}

void OverlayPanelController::setPanelPosition(PanelPosition position) {
    m_placement.setPosition(position);
}

void OverlayPanelController::resetToDefaultPosition() {
    setPanelPosition(panelPosition());
}

void OverlayPanelController::setPositionLocked(bool isLocked) {
    m_placement.setLocked(isLocked);
}

void OverlayPanelController::showLock() {
    if (m_panel) {
        m_panel->setMovable(!isPositionLocked());
        m_view->bar().setLocked(isPositionLocked());
    }
}

void OverlayPanelController::selectItem(int index) {
    m_selection.select(index, m_clips.cardIds());
    if (m_view != nullptr) {
        m_view->strip().selectCard(index);
    }
}

void OverlayPanelController::chooseClip(int index, const QList<std::shared_ptr<Clip>>& clips) {
    if (index < 0 || index >= clips.size()) {
        return;
    }
    // Taken now: hiding may refresh the list that it comes from.
    const QUuid chosen = clips.at(index)->id();
    const std::optional<RunningApplication> target = m_previousApp;
    m_services.pasteBack.copyToPasteboard(*clips.at(index), target);
    hide();
    m_services.pasteBack.pasteAndTouch(chosen, target);
}

// What is pressed while the answer to the newest search is on its way means that answer.
void OverlayPanelController::chooseWhenFound(int index) {
    if (m_clips.isPending()) {
        m_awaitedChoice = index;
    } else {
        chooseClip(index, m_clips.clips());
    }
}

void OverlayPanelController::deleteClip(const QUuid& clip) {
    if (!clip.isNull()) {
        m_deletions.add(clip);
    }
}

void OverlayPanelController::deletionsChanged() {
    m_clips.setHidden(m_deletions.clips());
    if (m_view != nullptr) {
        m_view->hints().offerUndo(m_deletions.clips().size());
    }
}

QRect OverlayPanelController::inPanel(const QRect& inStrip) const {
    return {m_view->strip().mapTo(m_panel.get(), inStrip.topLeft()), inStrip.size()};
}

void OverlayPanelController::openCardMenu(int index, const QRect& anchorInStrip) {
    if (index >= 0 && index < m_clips.cards().size()) {
        m_popups->openCardMenu(m_clips.cards().at(index), inPanel(anchorInStrip));
    }
}

bool OverlayPanelController::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress && m_isVisible && m_panel &&
        watched == m_panel->windowHandle()) {
        return handleKey(*static_cast<QKeyEvent*>(event));
    }
    return QObject::eventFilter(watched, event);
}

bool OverlayPanelController::handleKey(const QKeyEvent& event) {
    const PanelKeyAction action = panelKeyAction({
        .key = event.key(),
        .modifiers = event.modifiers() & ~Qt::KeypadModifier,
        .text = event.text(),
        .scanCode = event.nativeScanCode(),
        .focus = m_view->focus(),
        .selectedIndex = m_selection.index(),
        .cardCount =
            m_clips.isPending() ? OverlayClips::kMaxVisibleClips : int(m_clips.clips().size()),
        .cardsPerPage = m_view->strip().cardsPerPage(),
    });
    if (action.kind == PanelKeyAction::Kind::LetThrough) {
        return false;
    }
    act(action, event.text());
    return true;
}

void OverlayPanelController::act(const PanelKeyAction& action, const QString& typed) {
    using Kind = PanelKeyAction::Kind;
    SearchField& search = m_view->bar().search();
    const int selected = m_selection.index();
    switch (action.kind) {
        case Kind::LetThrough:
        case Kind::Consume:
            break;
        case Kind::Hide:
            hide();
            break;
        case Kind::Select:
            selectItem(action.index);
            break;
        case Kind::Choose:
            chooseWhenFound(action.index);
            break;
        case Kind::Delete:
            deleteClip(clipAt(selected));
            break;
        case Kind::TogglePin:
            m_actions.togglePin(clipAt(selected));
            break;
        case Kind::OpenMenu:
            openCardMenu(selected, m_view->strip().cardRect(selected));
            break;
        case Kind::FocusCards:
            m_view->strip().setFocus(Qt::ShortcutFocusReason);
            break;
        case Kind::FocusSearch:
            search.setFocus(Qt::ShortcutFocusReason);
            search.selectAll();
            break;
        case Kind::StartSearch:
            search.typeText(typed);
            break;
        case Kind::PressControl:
            m_view->pressFocusedControl();
            break;
        case Kind::NextControl:
            m_view->focusBesideControl(1);
            break;
        case Kind::PreviousControl:
            m_view->focusBesideControl(-1);
            break;
    }
}

}  // namespace quillo
