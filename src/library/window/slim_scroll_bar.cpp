// SPDX-License-Identifier: MIT
#include "library/window/slim_scroll_bar.h"

#include <QEvent>

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

constexpr int kWidth = 10;

QString css(const QColor& color) {
    return u"rgba(%1, %2, %3, %4)"_s.arg(color.red())
        .arg(color.green())
        .arg(color.blue())
        .arg(color.alpha());
}

}  // namespace

SlimScrollBar::SlimScrollBar(QAbstractScrollArea& area)
    : QScrollBar(Qt::Vertical, &area), m_followed(*area.verticalScrollBar()) {
    area.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area.installEventFilter(this);
    setCursor(Qt::ArrowCursor);
    setAccessibleName(u"Scroll bar"_s);
    connect(&m_followed, &QScrollBar::rangeChanged, this, &SlimScrollBar::follow);
    connect(&m_followed, &QScrollBar::valueChanged, this, &QScrollBar::setValue);
    connect(this, &QScrollBar::valueChanged, &m_followed, &QScrollBar::setValue);
    connect(this, &QScrollBar::sliderPressed, &m_followed, &QScrollBar::sliderPressed);
    setLook(libraryLook(ColorScheme::Light));
    place();
    follow();
}

void SlimScrollBar::setLook(const LibraryLook& look) {
    QColor thumb = look.primaryText;
    thumb.setAlpha(70);
    QColor held = look.primaryText;
    held.setAlpha(130);
    setStyleSheet(
        u"QScrollBar { background: transparent; width: 10px; margin: 2px 1px; }"
        "QScrollBar::handle { background: %1; border-radius: 3px; min-height: 36px;"
        " margin: 0 1px; }"
        "QScrollBar::handle:hover { background: %2; }"
        "QScrollBar::add-line, QScrollBar::sub-line { height: 0; }"
        "QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }"_s.arg(css(thumb),
                                                                                        css(held)));
}

void SlimScrollBar::follow() {
    setSingleStep(m_followed.singleStep());
    setPageStep(m_followed.pageStep());
    setRange(m_followed.minimum(), m_followed.maximum());
    setValue(m_followed.value());
    setVisible(m_followed.maximum() > m_followed.minimum());
    raise();
}

void SlimScrollBar::place() {
    const QWidget& area = *parentWidget();
    setGeometry(area.width() - kWidth, 0, kWidth, area.height());
}

bool SlimScrollBar::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize) {
        place();
    }
    return QScrollBar::eventFilter(watched, event);
}

}  // namespace quillo
