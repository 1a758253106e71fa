// SPDX-License-Identifier: MIT
#include "library/groups/sheet.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

#include "library/groups/form_controls.h"
#include "library/groups/text_field_menu.h"

namespace quillo {
namespace {

constexpr int kPadding = 20;
constexpr int kMargin = 24;  // Kept free of the window around the card.
constexpr qreal kRadius = 14;
constexpr QColor kDim(0, 0, 0, 110);

QList<QWidget*> focusStops(QWidget* root) {
    QList<QWidget*> stops;
    for (QWidget* widget = root->nextInFocusChain(); widget != root;
         widget = widget->nextInFocusChain()) {
        if (root->isAncestorOf(widget) && widget->isVisible() && widget->isEnabled() &&
            (widget->focusPolicy() & Qt::TabFocus) != 0) {
            stops.append(widget);
        }
    }
    return stops;
}

}  // namespace

Sheet::Sheet(QWidget* over, Look look)
    : QWidget(over->window()), m_lookFor(look), m_look(look(schemeOf(palette()))) {
    over->window()->installEventFilter(this);
    hide();
}

void Sheet::setContent(QWidget* content) {
    m_content = content;
    content->setParent(this);
    content->installEventFilter(this);
    if (accessibleName().isEmpty()) {
        setAccessibleName(content->accessibleName());
    }
    const QList<FormField*> fields = content->findChildren<FormField*>();
    for (FormField* field : fields) {
        new TextFieldMenu(*field, window(), [this] { return paletteFor(schemeOf(palette())); });
    }
    takeColors();
}

void Sheet::takeColors() {
    m_look = m_lookFor(schemeOf(palette()));
    if (m_content != nullptr) {
        applyLook(*m_content, m_look);
        dressControls(*m_content, m_look);
    }
    update();
}

void Sheet::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        takeColors();
    }
}

void Sheet::open(QWidget* firstFocus) {
    m_focusBefore = QApplication::focusWidget();
    place();
    show();
    raise();
    const QList<QWidget*> stops = focusStops(this);
    QWidget* wanted = firstFocus != nullptr ? firstFocus : stops.value(0, this);
    wanted->setFocus(Qt::PopupFocusReason);
}

void Sheet::closeSheet() {
    if (isHidden()) {
        return;
    }
    hide();
    if (m_focusBefore != nullptr) {
        m_focusBefore->setFocus(Qt::PopupFocusReason);
    }
    Q_EMIT closed();
    deleteLater();
}

Sheet* Sheet::openIn(const QWidget* widget) {
    Sheet* uppermost = nullptr;
    for (QObject* child : widget->window()->children()) {
        auto* sheet = qobject_cast<Sheet*>(child);
        uppermost = sheet != nullptr && sheet->isVisible() ? sheet : uppermost;
    }
    return uppermost;
}

void Sheet::place() {
    setGeometry(parentWidget()->rect());
    if (m_content == nullptr) {
        return;
    }
    const QSize room = size() - QSize(2 * (kMargin + kPadding), 2 * (kMargin + kPadding));
    const QSize wanted = m_content->sizeHint().expandedTo(m_content->minimumSize());
    const int width = qMin(wanted.width(), room.width());
    const int height =
        m_content->hasHeightForWidth() ? m_content->heightForWidth(width) : wanted.height();
    QRect place(QPoint(), QSize(width, qMin(height, room.height())));
    place.moveCenter(rect().center());
    m_content->setGeometry(place);
    update();
}

bool Sheet::eventFilter(QObject* watched, QEvent* event) {
    const bool isWindow = watched == parentWidget() && event->type() == QEvent::Resize;
    if (isWindow || (watched == m_content && event->type() == QEvent::LayoutRequest)) {
        place();
    }
    return QWidget::eventFilter(watched, event);
}

bool Sheet::focusNextPrevChild(bool next) {
    const QList<QWidget*> stops = focusStops(this);
    if (stops.isEmpty()) {
        return true;
    }
    const qsizetype at = stops.indexOf(focusWidget());
    const qsizetype step = next ? 1 : stops.size() - 1;
    stops[at < 0 ? 0 : (at + step) % stops.size()]->setFocus(next ? Qt::TabFocusReason
                                                                  : Qt::BacktabFocusReason);
    return true;
}

// The shortcuts of the window behind are out of reach too.
bool Sheet::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride) {
        event->accept();
        return true;
    }
    return QWidget::event(event);
}

void Sheet::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        closeSheet();
    } else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        pressDefault();
    }
    // Keys that nobody inside wants are not for the window behind.
    event->accept();
}

void Sheet::pressDefault() {
    const QList<PushButton*> buttons = findChildren<PushButton*>();
    const auto button = std::ranges::find_if(buttons, &PushButton::isDefault);
    if (button != buttons.end()) {
        (*button)->click();
    }
}

void Sheet::mousePressEvent(QMouseEvent* event) {
    event->accept();
}

void Sheet::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.fillRect(rect(), kDim);
    if (m_content == nullptr) {
        return;
    }
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF card =
        QRectF(m_content->geometry()).adjusted(-kPadding, -kPadding, kPadding, kPadding);
    painter.setPen(QPen(m_look.border, 1));
    painter.setBrush(m_look.ground);
    painter.drawRoundedRect(card.adjusted(0.5, 0.5, -0.5, -0.5), kRadius, kRadius);
}

}  // namespace quillo
