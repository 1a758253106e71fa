// SPDX-License-Identifier: MIT
#include "app/settings/page_scroll_bar.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

#include "app/settings/settings_look.h"

namespace quillo {
namespace {

constexpr int kWidth = 12;
constexpr qreal kThumb = 6;
constexpr qreal kEnd = 3;
constexpr qreal kShortest = 32;
constexpr double kOpacity = 0.45;
constexpr double kHeldOpacity = 0.8;

}  // namespace

PageScrollBar::PageScrollBar(QAbstractScrollArea& area)
    : QWidget(&area), m_bar(area.verticalScrollBar()) {
    setAttribute(Qt::WA_Hover);
    area.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area.installEventFilter(this);
    connect(m_bar, &QScrollBar::valueChanged, this, qOverload<>(&QWidget::update));
    connect(m_bar, &QScrollBar::rangeChanged, this, &PageScrollBar::followRange);
    followRange();
}

void PageScrollBar::followRange() {
    setVisible(m_bar->maximum() > m_bar->minimum());
    update();
}

QRectF PageScrollBar::thumb() const {
    const qreal room = height() - 2 * kEnd;
    const int range = m_bar->maximum() - m_bar->minimum();
    const qreal length = qMax(kShortest, room * m_bar->pageStep() / (range + m_bar->pageStep()));
    const qreal share = qreal(m_bar->value() - m_bar->minimum()) / qMax(1, range);
    return {width() - kThumb - kEnd, kEnd + share * (room - length), kThumb, length};
}

bool PageScrollBar::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parentWidget() && event->type() == QEvent::Resize) {
        setGeometry(parentWidget()->width() - kWidth, 0, kWidth, parentWidget()->height());
        raise();
    }
    return QWidget::eventFilter(watched, event);
}

void PageScrollBar::mousePressEvent(QMouseEvent* event) {
    const QRectF held = thumb();
    const qreal y = event->position().y();
    if (event->button() != Qt::LeftButton) {
        return;
    }
    if (y >= held.top() && y <= held.bottom()) {
        m_grabbed = y - held.top();
    } else {
        m_bar->triggerAction(y < held.top() ? QAbstractSlider::SliderPageStepSub
                                            : QAbstractSlider::SliderPageStepAdd);
    }
    update();
}

void PageScrollBar::mouseMoveEvent(QMouseEvent* event) {
    if (m_grabbed < 0) {
        return;
    }
    const qreal room = height() - 2 * kEnd - thumb().height();
    const qreal share = (event->position().y() - m_grabbed - kEnd) / qMax(1.0, room);
    m_bar->setValue(m_bar->minimum() + qRound(share * (m_bar->maximum() - m_bar->minimum())));
}

void PageScrollBar::mouseReleaseEvent(QMouseEvent* /*event*/) {
    m_grabbed = -1;
    update();
}

void PageScrollBar::wheelEvent(QWheelEvent* event) {
    QApplication::sendEvent(m_bar, event);
}

void PageScrollBar::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(m_grabbed >= 0 || underMouse() ? kHeldOpacity : kOpacity);
    painter.setPen(Qt::NoPen);
    painter.setBrush(lookOf(*this).controls.secondaryText);
    painter.drawRoundedRect(thumb(), kThumb / 2, kThumb / 2);
}

}  // namespace quillo
