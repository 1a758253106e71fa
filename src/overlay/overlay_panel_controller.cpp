// SPDX-License-Identifier: MIT
#include "overlay/overlay_panel_controller.h"

#include <QApplication>
#include <QCursor>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScopedValueRollback>
#include <QScreen>
#include <QTextEdit>
#include <QTimer>
#include <QWindow>
#include <cmath>

#include "base/logging.h"
#include "overlay/search_field.h"

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcPanel, "OverlayPanelController")

constexpr std::chrono::milliseconds kToggleDebounce{300};

std::optional<QPointF> storedOrigin(const UserDefaults& defaults) {
    if (!defaults.boolean(QStringLiteral("panelHasCustomOrigin")).value_or(false)) {
        return std::nullopt;
    }
    const std::optional<double> x = defaults.real(QStringLiteral("panelCustomX"));
    const std::optional<double> y = defaults.real(QStringLiteral("panelCustomY"));
    // A settings file edited by hand may hold anything.
    constexpr double kFarthest = 1e6;
    if (!x || !y || !(std::abs(*x) < kFarthest) || !(std::abs(*y) < kFarthest)) {
        return std::nullopt;
    }
    return QPointF(*x, *y);
}

PanelPosition storedPosition(const UserDefaults& defaults) {
    return panelPositionFromText(
        defaults.string(QStringLiteral("panelPosition")).value_or(QString()));
}

bool storedLock(const UserDefaults& defaults) {
    return defaults.boolean(QStringLiteral("panelPositionLocked")).value_or(true);
}

// Whether the value was another one.
template <typename Value>
bool isReplaced(Value& field, Value value) {
    const bool isAnother = field != value;
    field = std::move(value);
    return isAnother;
}

QList<QRect> screenFrames() {
    QList<QRect> frames;
    for (const QScreen* screen : QGuiApplication::screens()) {
        frames.append(screen->geometry());
    }
    return frames;
}

}  // namespace

OverlayPanelController::OverlayPanelController(OverlayPanelServices services, QObject* parent)
    : PanelPositionControl(parent),
      m_services(std::move(services)),
      m_clips(m_services.persistence, m_services.workspace),
      m_thumbnails(m_services.images, storedImageLoader(m_services.persistence)),
      m_panelPosition(storedPosition(m_services.defaults)),
      m_isPositionLocked(storedLock(m_services.defaults)),
      m_customOrigin(storedOrigin(m_services.defaults)) {
    connect(&m_clips, &OverlayClips::refreshed, this, &OverlayPanelController::clipsRefreshed);
    m_services.surface.setCompositingListener([this] { compositingChanged(); });
    followSettings();
    m_clips.refresh();
    QTimer::singleShot(0, this, &OverlayPanelController::prepare);
}

void OverlayPanelController::followSettings() {
    ClipTypeColorManager& colors = m_services.colors;
    for (const auto changed :
         {&ClipTypeColorManager::panelOpacityChanged,
          &ClipTypeColorManager::panelBackgroundColorChanged,
          &ClipTypeColorManager::itemOpacityChanged, &ClipTypeColorManager::colorsChanged,
          &ClipTypeColorManager::filterBadgeColorsChanged,
          &ClipTypeColorManager::backgroundColorsChanged,
          &ClipTypeColorManager::backgroundOpacitiesChanged}) {
        connect(&colors, changed, this, &OverlayPanelController::updateLook);
    }
    connect(&colors, &ClipTypeColorManager::panelWidthChanged, this,
            &OverlayPanelController::fitPanel);
    connect(&m_services.theme, &ThemeManager::currentThemeChanged, this,
            &OverlayPanelController::themeChanged);
    connect(&m_services.theme, &ThemeManager::effectiveSchemeChanged, this,
            &OverlayPanelController::updateLook);
    connect(&m_services.defaults, &UserDefaults::changed, this,
            &OverlayPanelController::settingEdited);
}

void OverlayPanelController::updateLook() {
    if (m_view != nullptr) {
        const bool isBlended = m_panel->testAttribute(Qt::WA_TranslucentBackground);
        m_view->setLook(
            m_services.colors.panelLook(isBlended ? Backdrop::Visible : Backdrop::Hidden));
    }
}

void OverlayPanelController::themeChanged() {
    m_services.colors.resetPanelBackgroundColor(m_services.theme.effectiveScheme());
    updateLook();
}

// What is read here is compared with what is held: an edit may change several keys at once.
void OverlayPanelController::settingEdited(const QString& key) {
    if (m_isWriting || !key.startsWith(QLatin1StringView("panel"))) {
        return;
    }
    const UserDefaults& defaults = m_services.defaults;
    if (isReplaced(m_panelPosition, storedPosition(defaults))) {
        placeAgain();
        Q_EMIT panelPositionChanged();
    }
    if (isReplaced(m_isPositionLocked, storedLock(defaults))) {
        showLock();
        Q_EMIT positionLockedChanged();
    }
    if (isReplaced(m_customOrigin, storedOrigin(defaults))) {
        placeAgain();
        Q_EMIT customOriginChanged();
    }
}

OverlayPanelController::~OverlayPanelController() {
    m_services.surface.setCompositingListener({});
    qApp->removeEventFilter(this);
}

void OverlayPanelController::toggle() {
    const auto now = std::chrono::steady_clock::now();
    if (m_lastToggleTime.time_since_epoch().count() != 0 &&
        now - m_lastToggleTime <= kToggleDebounce) {
        return;
    }
    m_lastToggleTime = now;
    if (m_isVisible) {
        hide();
    } else {
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
    m_panel = std::make_unique<OverlayPanel>(m_services.surface.isCompositing()
                                                 ? OverlayPanel::Corners::Blended
                                                 : OverlayPanel::Corners::Cut);
    m_view = new OverlayView(m_clips, m_thumbnails, m_services.clock);
    m_view->bar().setLocked(m_isPositionLocked);
    m_panel->setContent(m_view);
    m_panel->setMovable(!m_isPositionLocked);
    updateLook();
    connect(m_panel.get(), &OverlayPanel::dragged, this, [this] { m_wasDragged = m_isVisible; });
    connect(&m_view->strip(), &ClipStrip::cardClicked, this,
            [this](int index) { chooseClip(index, m_clips.clips()); });
    connect(&m_view->bar(), &OverlayBar::closeRequested, this, &OverlayPanelController::hide);
    connect(&m_view->bar(), &OverlayBar::lockToggled, this,
            [this] { setPositionLocked(!m_isPositionLocked); });
    connect(&m_view->bar().search(), &QLineEdit::textChanged, this,
            &OverlayPanelController::searchTextChanged);
    m_panel->winId();
    m_services.workspace.ignoreWindow(quint32(m_panel->winId()));
    qCDebug(lcPanel, "Overlay panel created");
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
    m_panel->setMovable(!m_isPositionLocked);
    resetSelection();
    const quint32 userTime = m_services.userTime();
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
    if (m_wasDragged) {
        m_customOrigin = m_panel->pos();
        saveCustomOrigin();
        m_wasDragged = false;
    }
    qApp->removeEventFilter(this);
    m_isVisible = false;
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
    m_view->bar().search().clear();
    m_clips.clearCriteria();
    resetSelection();
    qCDebug(lcPanel, "Overlay hidden");
}

void OverlayPanelController::resetSelection() {
    m_awaitedChoice.reset();
    m_selectedIndex = 0;
    m_selectedClip = QUuid();
    m_view->reset();
}

void OverlayPanelController::searchTextChanged(const QString& text) {
    resetSelection();
    m_clips.setSearchText(text);
}

QScreen* OverlayPanelController::mainScreen() const {
    if (m_previousApp) {
        if (const std::optional<QRect> frame = m_services.workspace.frame(*m_previousApp)) {
            if (QScreen* screen = QGuiApplication::screenAt(frame->center())) {
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

void OverlayPanelController::applyFrame(const QScreen& screen, int width) {
    const std::optional<QPoint> custom =
        m_customOrigin ? std::optional(m_customOrigin->toPoint()) : std::nullopt;
    const QPoint origin = originForPanel(
        m_panelPosition, custom, ScreenArea{screen.geometry(), screen.availableGeometry()}, width);
    const QRect frame =
        nearestVisibleFrame(QRect(origin, QSize(width, kPanelHeight)), screenFrames());
    if (m_panel->geometry() != frame) {
        m_panel->setGeometry(frame);
    }
}

// A window's depth is fixed at its creation: the panel is made anew for the other kind.
void OverlayPanelController::compositingChanged() {
    const bool wasVisible = m_isVisible;
    hide();
    m_view = nullptr;
    m_panel.reset();
    if (wasVisible) {
        show();
    }
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
    const QList<std::shared_ptr<Clip>>& clips = m_clips.clips();
    for (int i = 0; i < clips.size() && !m_selectedClip.isNull(); ++i) {
        if (clips.at(i)->id() == m_selectedClip) {
            m_selectedIndex = i;
        }
    }
    m_selectedIndex = std::clamp(m_selectedIndex, 0, std::max(0, int(clips.size()) - 1));
    if (!m_selectedClip.isNull()) {
        m_view->strip().selectCard(m_selectedIndex);
    }
}

void OverlayPanelController::saveCustomOrigin() {
    const QScopedValueRollback writing(m_isWriting, true);
    UserDefaults& defaults = m_services.defaults;
    if (m_customOrigin) {
        defaults.setObject(QStringLiteral("panelCustomX"), m_customOrigin->x());
        defaults.setObject(QStringLiteral("panelCustomY"), m_customOrigin->y());
    }
    defaults.setObject(QStringLiteral("panelHasCustomOrigin"), m_customOrigin.has_value());
    Q_EMIT customOriginChanged();
}

void OverlayPanelController::setPanelPosition(PanelPosition position) {
    m_panelPosition = position;
    m_customOrigin.reset();
    {
        const QScopedValueRollback writing(m_isWriting, true);
        m_services.defaults.setObject(QStringLiteral("panelPosition"), panelPositionText(position));
    }
    saveCustomOrigin();
    Q_EMIT panelPositionChanged();
    placeAgain();
}

void OverlayPanelController::placeAgain() {
    const QScreen* screen = mainScreen();
    if (m_panel && screen != nullptr) {
        applyFrame(*screen, m_panel->width());
    }
}

void OverlayPanelController::resetToDefaultPosition() {
    setPanelPosition(m_panelPosition);
}

void OverlayPanelController::setPositionLocked(bool isLocked) {
    m_isPositionLocked = isLocked;
    m_services.defaults.setObject(QStringLiteral("panelPositionLocked"), isLocked);
    showLock();
    Q_EMIT positionLockedChanged();
}

void OverlayPanelController::showLock() {
    if (m_panel) {
        m_panel->setMovable(!m_isPositionLocked);
        m_view->bar().setLocked(m_isPositionLocked);
    }
}

void OverlayPanelController::selectItem(int index) {
    m_selectedIndex = index;
    m_selectedClip = m_clips.clips().value(index) ? m_clips.clips().at(index)->id() : QUuid();
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

bool OverlayPanelController::isTextInputFocused() const {
    const QWidget* focused = m_panel ? m_panel->focusWidget() : nullptr;
    return qobject_cast<const QLineEdit*>(focused) != nullptr ||
           qobject_cast<const QTextEdit*>(focused) != nullptr ||
           qobject_cast<const QPlainTextEdit*>(focused) != nullptr;
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
        .textHasFocus = isTextInputFocused(),
        .selectedIndex = m_selectedIndex,
        .cardCount =
            m_clips.isPending() ? OverlayClips::kMaxVisibleClips : int(m_clips.clips().size()),
    });
    switch (action.kind) {
        case PanelKeyAction::Kind::LetThrough:
            return false;
        case PanelKeyAction::Kind::Consume:
            break;
        case PanelKeyAction::Kind::Hide:
            hide();
            break;
        case PanelKeyAction::Kind::Select:
            selectItem(action.index);
            break;
        case PanelKeyAction::Kind::Choose:
            chooseWhenFound(action.index);
            break;
        case PanelKeyAction::Kind::FocusCards:
            m_view->strip().setFocus();
            break;
        case PanelKeyAction::Kind::FocusSearch:
            m_view->bar().search().setFocus(Qt::ShortcutFocusReason);
            m_view->bar().search().selectAll();
            break;
        case PanelKeyAction::Kind::StartSearch:
            m_view->bar().search().typeText(event.text());
            break;
        default:
            editText(action.kind);
            break;
    }
    return true;
}

void OverlayPanelController::editText(PanelKeyAction::Kind kind) {
    const char* slot = nullptr;
    switch (kind) {
        case PanelKeyAction::Kind::SelectAllText:
            slot = "selectAll";
            break;
        case PanelKeyAction::Kind::CopyText:
            slot = "copy";
            break;
        case PanelKeyAction::Kind::PasteText:
            slot = "paste";
            break;
        case PanelKeyAction::Kind::CutText:
            slot = "cut";
            break;
        case PanelKeyAction::Kind::UndoText:
            slot = "undo";
            break;
        default:
            return;
    }
    QMetaObject::invokeMethod(m_panel->focusWidget(), slot);
}

}  // namespace quillo
