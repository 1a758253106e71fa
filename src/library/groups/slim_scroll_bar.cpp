// SPDX-License-Identifier: MIT
#include "library/groups/slim_scroll_bar.h"

#include <QAbstractScrollArea>
#include <QCoreApplication>
#include <QMouseEvent>
#include <QPainter>

#include "library/groups/form_controls.h"

namespace quillo {
namespace {

constexpr int kWidth = 12;
constexpr qreal kThumb = 6;
constexpr qreal kEnd = 3;
constexpr qreal kShortest = 32;
constexpr double kOpacity = 0.45;
constexpr double kHeldOpacity = 0.8;

}  // namespace

SlimScrollBar::SlimScrollBar(QAbstractScrollArea& area)
    : QScrollBar(Qt::Vertical, &area), m_followed(*area.verticalScrollBar()) {
    setAttribute(Qt::WA_Hover);
    setAttribute(Qt::WA_OpaquePaintEvent, false);
    setContextMenuPolicy(Qt::PreventContextMenu);
    setCursor(Qt::ArrowCursor);
    setAccessibleName(QStringLiteral("Scroll bar"));
    area.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area.installEventFilter(this);
    connect(&m_followed, &QScrollBar::rangeChanged, this, &SlimScrollBar::follow);
    connect(&m_followed, &QScrollBar::valueChanged, this, &QScrollBar::setValue);
    connect(this, &QScrollBar::valueChanged, &m_followed, &QScrollBar::setValue);
    connect(this, &QScrollBar::sliderPressed, &m_followed, &QScrollBar::sliderPressed);
    place();
    follow();
}

void SlimScrollBar::follow() {
    setRange(m_followed.minimum(), m_followed.maximum());
    setValue(m_followed.value());
    setVisible(m_followed.maximum() > m_followed.minimum());
    update();
}

void SlimScrollBar::place() {
    const QWidget& area = *parentWidget();
    setGeometry(area.width() - kWidth, 0, kWidth, area.height());
    raise();
}

QRectF SlimScrollBar::thumb() const {
    const qreal room = height() - 2 * kEnd;
    const int range = maximum() - minimum();
    // Asked for here, because nothing tells of another one.
    const int page = m_followed.pageStep();
    const qreal length = qMax(kShortest, room * page / (range + page));
    const qreal share = qreal(value() - minimum()) / qMax(1, range);
    return {width() - kThumb - kEnd, kEnd + share * (room - length), kThumb, length};
}

bool SlimScrollBar::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parentWidget() && event->type() == QEvent::Resize) {
        place();
    }
    return QScrollBar::eventFilter(watched, event);
}

void SlimScrollBar::mousePressEvent(QMouseEvent* event) {
    const QRectF held = thumb();
    const qreal y = event->position().y();
    if (event->button() != Qt::LeftButton) {
        return;
    }
    if (y >= held.top() && y <= held.bottom()) {
        m_grabbed = y - held.top();
        setSliderDown(true);
    } else {
        m_followed.triggerAction(y < held.top() ? SliderPageStepSub : SliderPageStepAdd);
    }
    update();
}

void SlimScrollBar::mouseMoveEvent(QMouseEvent* event) {
    if (isSliderDown()) {
        const qreal room = height() - 2 * kEnd - thumb().height();
        const qreal share = (event->position().y() - m_grabbed - kEnd) / qMax(1.0, room);
        setSliderPosition(minimum() + qRound(share * (maximum() - minimum())));
    }
}

void SlimScrollBar::mouseReleaseEvent(QMouseEvent* /*event*/) {
    setSliderDown(false);
    update();
}

void SlimScrollBar::wheelEvent(QWheelEvent* event) {
    QCoreApplication::sendEvent(&m_followed, event);
}

void SlimScrollBar::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(isSliderDown() || underMouse() ? kHeldOpacity : kOpacity);
    fillRounded(painter, thumb(), kThumb / 2, palette().color(QPalette::PlaceholderText));
}

}  // namespace quillo
