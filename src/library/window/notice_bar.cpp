// SPDX-License-Identifier: MIT
#include "library/window/notice_bar.h"

#include <QAccessible>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <utility>

#include "appearance/fonts.h"
#include "library/groups/form_controls.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

constexpr std::chrono::milliseconds kWord{2'000};
constexpr int kHeight = 36;
constexpr int kFromEdge = 14;

}  // namespace

NoticeBar::NoticeBar(QWidget* over)
    : QWidget(over),
      m_look(libraryLook(ColorScheme::Light)),
      m_text(new QLabel),
      m_button(new PushButton(PushButton::Style::Link, u"Undo"_s)) {
    m_text->setFont(sizedFont(font(), 13, QFont::Normal));
    m_text->setTextFormat(Qt::PlainText);
    m_button->setToolTip(u"Undo (Ctrl+Z)"_s);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(14, 0, 14, 0);
    row->setSpacing(14);
    row->addWidget(m_text);
    row->addWidget(m_button);
    setFixedHeight(kHeight);
    over->installEventFilter(this);
    m_timeout.setSingleShot(true);
    connect(&m_timeout, &QTimer::timeout, this, [this] {
        m_undo = {};
        hide();
    });
    connect(m_button, &PushButton::clicked, this, &NoticeBar::undo);
    hide();
}

void NoticeBar::say(const QString& text, std::function<void()> undo) {
    if (!undo && m_undo) {
        return;
    }
    m_undo = std::move(undo);
    m_text->setText(text);
    m_button->setVisible(bool(m_undo));
    m_timeout.start(m_undo ? kSecondThoughts : kWord);
    setAccessibleName(text);
    place();
    show();
    raise();
    QAccessibleEvent event(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

bool NoticeBar::undo() {
    if (!m_undo) {
        return false;
    }
    m_timeout.stop();
    hide();
    std::exchange(m_undo, {})();
    return true;
}

void NoticeBar::setLook(const LibraryLook& look) {
    m_look = look;
    // The other way round than what it lies over.
    QPalette palette = this->palette();
    palette.setColor(QPalette::WindowText, look.ground);
    m_text->setPalette(palette);
    PopupLook controls = look.controls;
    controls.primaryText = look.ground;
    controls.accentText = readableText(mixed(look.accent, look.ground, 0.3), {look.primaryText});
    controls.ring = controls.accentText;
    m_button->setLook(controls);
    update();
}

void NoticeBar::place() {
    const QRect over = parentWidget()->rect();
    const int width = std::min(sizeHint().width(), over.width() - 2 * kFromEdge);
    setGeometry((over.width() - width) / 2, over.height() - kHeight - kFromEdge, width, kHeight);
}

bool NoticeBar::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize && isVisible()) {
        place();
    }
    return QWidget::eventFilter(watched, event);
}

void NoticeBar::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_look.primaryText);
    painter.drawRoundedRect(rect(), 9, 9);
}

}  // namespace quillo
