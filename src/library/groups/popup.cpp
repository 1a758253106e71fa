// SPDX-License-Identifier: MIT
#include "library/groups/popup.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollArea>
#include <QWindow>

namespace quillo {
namespace {

/// After a press that closed a popup: what follows until the button is up is not for the widget
/// beneath the pointer.
class PressSwallower final : public QObject {
public:
    explicit PressSwallower(QObject* parent) : QObject(parent) { qApp->installEventFilter(this); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (!watched->isWindowType() && !watched->isWidgetType()) {
            return false;
        }
        const QEvent::Type type = event->type();
        const bool isRelease = type == QEvent::MouseButtonRelease;
        if (isRelease || type == QEvent::MouseButtonPress) {
            qApp->removeEventFilter(this);
            deleteLater();
        }
        return isRelease || type == QEvent::MouseMove;
    }
};

/// Leaves the keys to the popup: the arrows walk, and what they reach is scrolled to.
class KeylessScrollArea final : public QScrollArea {
public:
    using QScrollArea::QScrollArea;

protected:
    void keyPressEvent(QKeyEvent* event) override { event->ignore(); }
};

bool isIn(const QWidget* widget, const QWidget* ancestor) {
    return widget != nullptr && (widget == ancestor || ancestor->isAncestorOf(widget));
}

}  // namespace

Popup::Popup(QWidget* panel, const Palette& colors)
    : QWidget(panel),
      m_colors(colors),
      m_look(popupLook(colors)),
      m_scroll(new KeylessScrollArea(this)) {
    hide();
    setFocusPolicy(Qt::ClickFocus);
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setFocusPolicy(Qt::NoFocus);
    m_scroll->setWidgetResizable(true);
    m_scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scroll->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scroll->setAutoFillBackground(false);
    m_scroll->viewport()->setAutoFillBackground(false);
    m_scroll->viewport()->installEventFilter(this);
    styleScrollBar();
    panel->installEventFilter(this);
    connect(qApp, &QApplication::focusChanged, this,
            [this](const QWidget* /*old*/, const QWidget* now) { focusMoved(now); });
}

Popup::~Popup() {
    // The focus moves once more while the widget beneath is taken down.
    disconnect(qApp, nullptr, this, nullptr);
}

QList<Popup*> Popup::openPopups(const QWidget* panel) {
    QList<Popup*> open;
    for (const QWidget* at = panel; at != nullptr && open.isEmpty(); at = at->parentWidget()) {
        for (Popup* popup : at->findChildren<Popup*>(Qt::FindDirectChildrenOnly)) {
            if (popup->m_isOpen) {
                open.append(popup);
            }
        }
    }
    return open;
}

Popup* Popup::openIn(const QWidget* panel) {
    const QList<Popup*> open = openPopups(panel);
    Popup* top = nullptr;
    for (Popup* popup : open) {
        if (top == nullptr || top->isUnder(popup)) {
            top = popup;
        }
    }
    return top;
}

void Popup::closeAll(const QWidget* panel) {
    while (Popup* popup = openIn(panel)) {
        popup->close();
    }
}

Popup* Popup::around(const QWidget* widget) {
    for (const QWidget* at = widget; at != nullptr; at = at->parentWidget()) {
        if (auto* popup = qobject_cast<Popup*>(const_cast<QWidget*>(at))) {
            return popup;
        }
    }
    return nullptr;
}

bool Popup::isUnder(const Popup* other) const {
    for (const Popup* at = other; at != nullptr; at = at->m_below) {
        if (at->m_below == this) {
            return true;
        }
    }
    return false;
}

QRect Popup::ground() const {
    return geometry().marginsRemoved(QMargins(kShadow, kShadow, kShadow, kShadow));
}

QRect Popup::anchorOf(const QWidget& widget) {
    return {widget.mapTo(widget.window(), QPoint()), widget.size()};
}

void Popup::setContent(QWidget* content) {
    m_content = content;
    m_scroll->setWidget(content);
    content->setAutoFillBackground(false);
    content->installEventFilter(this);
}

void Popup::setColors(const Palette& colors) {
    m_colors = colors;
    m_look = popupLook(colors);
    styleScrollBar();
    lookChanged();
    update();
}

void Popup::openAt(const QRect& anchor, PopupSide side) {
    m_anchor = anchor;
    m_side = side;
    if (m_isOpen) {
        place();
        return;
    }
    QWidget* const focused = window()->focusWidget();
    if (m_below == nullptr && around(focused) != this) {
        m_below = around(focused);
    }
    closeOthers();
    m_focusBefore = window()->focusWidget();
    m_isOpen = true;
    place();
    raise();
    show();
    qApp->installEventFilter(this);
    if (QWidget* first = initialFocus()) {
        first->setFocus(Qt::PopupFocusReason);
    }
    Q_EMIT opened();
}

void Popup::closeOthers() {
    const QList<Popup*> open = openPopups(panel());
    for (Popup* popup : open) {
        if (popup != this && popup->m_isOpen && !popup->isUnder(this)) {
            popup->close();
        }
    }
}

// Also when the panel hides: then the popup would come back with it.
void Popup::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    if (m_isOpen) {
        finishClosing();
    }
}

void Popup::finishClosing() {
    m_isOpen = false;
    qApp->removeEventFilter(this);
    const QList<Popup*> open = openPopups(panel());
    for (Popup* popup : open) {
        if (popup->m_isOpen && isUnder(popup)) {
            popup->close();
        }
    }
    hide();
    giveFocusBack();
    m_below = nullptr;
    if (testAttribute(Qt::WA_DeleteOnClose)) {
        deleteLater();
    }
    Q_EMIT closed();
}

void Popup::giveFocusBack() {
    QWidget* const now = window()->focusWidget();
    const bool isOurs = now == nullptr || isIn(now, this);
    if (isOurs && m_focusBefore != nullptr && m_focusBefore->isEnabled()) {
        m_focusBefore->setFocus(Qt::PopupFocusReason);
    }
    m_focusBefore = nullptr;
}

// Somebody took the focus for another part of the panel: that part is what the person is at.
void Popup::focusMoved(const QWidget* now) {
    if (m_isOpen && isIn(now, panel()) && around(now) == nullptr) {
        close();
    }
}

QWidget* Popup::initialFocus() const {
    const QList<QWidget*> stops = focusStops();
    return stops.isEmpty() ? const_cast<Popup*>(this) : stops.first();
}

QList<QWidget*> Popup::focusStops() const {
    QList<QWidget*> stops;
    const auto widgets = m_scroll->findChildren<QWidget*>();
    for (QWidget* widget : widgets) {
        if ((widget->focusPolicy() & Qt::TabFocus) != 0 && widget->isEnabled() &&
            widget->isVisibleTo(this)) {
            stops.append(widget);
        }
    }
    return stops;
}

// The keyboard stays inside while the popup is open.
bool Popup::focusNextPrevChild(bool next) {
    const QList<QWidget*> stops = focusStops();
    if (!m_isOpen || stops.isEmpty()) {
        return m_isOpen;
    }
    const qsizetype at = stops.indexOf(window()->focusWidget());
    const qsizetype count = stops.size();
    const qsizetype before = at < 0 ? count - 1 : (at + count - 1) % count;
    QWidget* const wanted = stops.at(next ? (at + 1) % count : before);
    wanted->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    showWidget(*wanted);
    return true;
}

void Popup::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Escape) {
        event->accept();
    } else if ((event->modifiers() & Qt::ControlModifier) != 0) {
        event->ignore();
    } else {
        close();
    }
}

void Popup::mousePressEvent(QMouseEvent* event) {
    event->accept();
}

// What is done on the ground is not done to the panel beneath.
bool Popup::event(QEvent* event) {
    switch (event->type()) {
        case QEvent::MouseMove:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::Wheel:
        case QEvent::ContextMenu:
            event->accept();
            return true;
        default:
            return QWidget::event(event);
    }
}

// The window hears of a press first, and must: a widget that takes the focus by a click has it
// before the widget's own event is filtered.
bool Popup::isOfPanel(const QObject* watched) const {
    return watched == window()->windowHandle() ||
           (watched->isWidgetType() && isIn(static_cast<const QWidget*>(watched), panel()));
}

bool Popup::eventFilter(QObject* watched, QEvent* event) {
    if (!m_isOpen) {
        return QWidget::eventFilter(watched, event);
    }
    const QEvent::Type type = event->type();
    if ((watched == panel() && type == QEvent::Resize) ||
        (type == QEvent::LayoutRequest &&
         (watched == m_content || watched == m_scroll->viewport()))) {
        place();
    }
    const bool isPress = type == QEvent::MouseButtonPress;
    if ((isPress || type == QEvent::Wheel) && isOfPanel(watched)) {
        const auto* pointer = static_cast<QSinglePointEvent*>(event);
        const QPoint at = panel()->mapFromGlobal(pointer->globalPosition()).toPoint();
        const bool isRight = isPress && pointer->button() == Qt::RightButton;
        if (isPress && pressedOutside(at) && !isRight) {
            event->accept();
            new PressSwallower(panel());
            return true;
        }
        return type == QEvent::Wheel && around(panel()->childAt(at)) == nullptr;
    }
    return QWidget::eventFilter(watched, event);
}

// True when the press lies outside all popups: it closes them and does nothing else. One on a
// popup below goes there.
bool Popup::pressedOutside(const QPoint& position) {
    if (ground().contains(position)) {
        return false;
    }
    Popup* lowest = this;
    for (Popup* popup = m_below; popup != nullptr; popup = popup->m_below) {
        if (popup->ground().contains(position)) {
            lowest->close();
            return false;
        }
        lowest = popup;
    }
    // A press on what lies above this one is no concern of this one.
    const QList<Popup*> open = openPopups(panel());
    for (const Popup* popup : open) {
        if (isUnder(popup) && popup->ground().contains(position)) {
            return false;
        }
    }
    lowest->close();
    return true;
}

}  // namespace quillo
