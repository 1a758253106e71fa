// SPDX-License-Identifier: MIT
#include "library/groups/chip.h"

#include <QContextMenuEvent>
#include <QLocale>
#include <QPainter>

#include "appearance/contrast.h"
#include "appearance/fonts.h"
#include "appearance/symbols.h"
#include "library/groups/form_controls.h"

namespace quillo {
namespace {

constexpr int kPadding = 10;
constexpr int kSymbol = 12;
constexpr int kAfterSymbol = 4;
constexpr int kBadge = 16;
constexpr qreal kBadgeRadius = 4;
constexpr int kBadgeSymbol = 11;
constexpr int kDot = 8;
constexpr int kAfterDot = 5;
constexpr int kBeforeCount = 5;
constexpr qreal kRadius = Chip::kHeight / 2.0;

QString countText(qsizetype count) {
    return QLocale().toString(qlonglong(count));
}

}  // namespace

Chip::Chip(Kind kind, QWidget* parent)
    : PanelButton(kind == Kind::Plus ? QAccessible::PushButton : QAccessible::RadioButton, parent),
      m_kind(kind) {
    setFont(sizedFont(font(), 12, QFont::Medium));
    setFocusPolicy(Qt::TabFocus);
    setFixedHeight(kHeight);
    setAttribute(Qt::WA_Hover);
    setCheckable(kind != Kind::Plus);
    setHasPopup(kind == Kind::Plus);
}

void Chip::setContent(const ChipContent& content) {
    if (m_content == content && !accessibleName().isEmpty()) {
        return;
    }
    m_content = content;
    const bool isGroup = m_kind == Kind::Group;
    const QString title =
        isGroup && content.text.isEmpty() ? QStringLiteral("Group without a name") : content.text;
    setAccessibleName(title);
    if (content.count.has_value()) {
        setAccessibleDescription(
            *content.count == 1
                ? QStringLiteral("Group with 1 clip")
                : QStringLiteral("Group with %1 clips").arg(countText(*content.count)));
    }
    setToolTip(shownTitle() != content.text ? content.text : QString());
    if (m_kind == Kind::Plus) {
        setToolTip(content.text);
    }
    updateGeometry();
    update();
}

void Chip::setColors(const Palette& colors) {
    m_colors = colors;
    update();
}

void Chip::setDropTarget(bool isDropTarget) {
    m_isDropTarget = isDropTarget;
    update();
}

void Chip::setFade(const Fade& fade) {
    if (m_fade != fade) {
        m_fade = fade;
        update();
    }
}

QString Chip::shownTitle() const {
    return fontMetrics().elidedText(m_content.text, Qt::ElideRight, kLongestTitle);
}

int Chip::markWidth() const {
    if (m_content.dot.has_value()) {
        return m_content.text.isEmpty() ? kDot : kDot + kAfterDot;
    }
    if (m_content.symbol.isEmpty()) {
        return 0;
    }
    return (m_content.badge.has_value() ? kBadge : kSymbol) + kAfterSymbol;
}

QSize Chip::sizeHint() const {
    if (m_kind == Kind::Plus) {
        return {kHeight, kHeight};
    }
    int width = 2 * kPadding + markWidth() + fontMetrics().horizontalAdvance(shownTitle());
    if (m_content.count.has_value()) {
        width += kBeforeCount + fontMetrics().horizontalAdvance(countText(*m_content.count));
    }
    return {width, kHeight};
}

Chip::Inks Chip::inks() const {
    if (isChecked()) {
        const QColor text = readableText(Qt::white, {m_colors.accent});
        return {m_colors.accent, text, text};
    }
    const bool isRaised = m_isDropTarget || underMouse() || isDown();
    const QColor raised = mixed(m_colors.field, m_colors.primaryText, isDown() ? 0.12 : 0.07);
    const QColor ground = isRaised ? raised : m_colors.field;
    const QColor quiet = readableText(m_colors.secondaryText, {ground});
    return {ground, m_kind == Kind::Group ? readableText(m_colors.primaryText, {ground}) : quiet,
            quiet};
}

int Chip::paintMark(QPainter& painter, int x, const Inks& inks) const {
    painter.setPen(Qt::NoPen);
    const qreal middle = height() / 2.0;
    if (m_content.dot.has_value()) {
        painter.setBrush(*m_content.dot);
        painter.drawEllipse(QRectF(x, middle - kDot / 2.0, kDot, kDot));
    } else if (m_content.badge.has_value()) {
        painter.setBrush(*m_content.badge);
        painter.drawRoundedRect(QRectF(x, middle - kBadge / 2.0, kBadge, kBadge), kBadgeRadius,
                                kBadgeRadius);
        const QColor ink =
            contrastRatio(Qt::white, *m_content.badge) >= 1.8 ? Qt::white : Qt::black;
        painter.drawPixmap(QPointF(x + (kBadge - kBadgeSymbol) / 2.0, middle - kBadgeSymbol / 2.0),
                           symbolPixmap(m_content.symbol, kBadgeSymbol, ink, devicePixelRatioF()));
    } else if (!m_content.symbol.isEmpty()) {
        painter.drawPixmap(
            QPointF(x, middle - kSymbol / 2.0),
            symbolPixmap(m_content.symbol, kSymbol, inks.secondary, devicePixelRatioF()));
    }
    return x + markWidth();
}

void Chip::paintChip(QPainter& painter) const {
    const Inks colors = inks();
    fillRounded(painter, rect(), kRadius, colors.ground);
    if (m_isDropTarget || hasFocus()) {
        // On the accent itself the ring is the colour of the text.
        painter.setPen(QPen(isChecked() ? colors.primary : ringOn(colors.ground), 2));
        painter.setBrush(Qt::NoBrush);
        const qreal inset = isChecked() ? 2.5 : 1;
        painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset),
                                kRadius - inset, kRadius - inset);
    }
    if (m_kind == Kind::Plus) {
        painter.drawPixmap(
            QPointF((width() - kSymbol) / 2.0, (height() - kSymbol) / 2.0),
            symbolPixmap(m_content.symbol, kSymbol, colors.secondary, devicePixelRatioF()));
        return;
    }
    const int x = paintMark(painter, kPadding, colors);
    const QRect text(x, 0, width() - x - kPadding, height());
    painter.setPen(colors.primary);
    painter.drawText(text.adjusted(0, 0, 2, 0), Qt::AlignLeft | Qt::AlignVCenter, shownTitle());
    if (m_content.count.has_value()) {
        painter.setPen(colors.secondary);
        painter.drawText(text, Qt::AlignRight | Qt::AlignVCenter, countText(*m_content.count));
    }
}

// The accent where it can be told from the ground, else the text's colour.
QColor Chip::ringOn(const QColor& ground) const {
    constexpr double kLeast = 2.0;
    return contrastRatio(m_colors.accent, ground) >= kLeast ? m_colors.accent
                                                            : m_colors.primaryText;
}

void Chip::fadeOut(QPainter& painter) const {
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    const auto fade = [&](int clear, int full) {
        QLinearGradient gradient(clear, 0, full, 0);
        gradient.setColorAt(0, Qt::transparent);
        gradient.setColorAt(1, Qt::black);
        painter.fillRect(rect(), gradient);
    };
    if (m_fade.left.has_value()) {
        fade(*m_fade.left, *m_fade.left + kFadeWidth);
    }
    if (m_fade.right.has_value()) {
        fade(*m_fade.right, *m_fade.right - kFadeWidth);
    }
}

void Chip::paintEvent(QPaintEvent* /*event*/) {
    QPainter screen(this);
    if (m_fade == Fade()) {
        screen.setRenderHint(QPainter::Antialiasing);
        paintChip(screen);
        return;
    }
    // What fades is drawn aside: the ground behind the row may be translucent.
    QPixmap layer(size() * devicePixelRatioF());
    layer.setDevicePixelRatio(devicePixelRatioF());
    layer.fill(Qt::transparent);
    QPainter painter(&layer);
    painter.setFont(font());
    painter.setRenderHint(QPainter::Antialiasing);
    paintChip(painter);
    fadeOut(painter);
    painter.end();
    screen.drawPixmap(0, 0, layer);
}

void Chip::keyPressEvent(QKeyEvent* event) {
    const bool isMenuKey =
        event->key() == Qt::Key_Menu ||
        (event->key() == Qt::Key_F10 && (event->modifiers() & Qt::ShiftModifier) != 0);
    if (isMenuKey) {
        Q_EMIT menuRequested();
    } else {
        PanelButton::keyPressEvent(event);
    }
}

// The Menu key arrives as a key too.
void Chip::contextMenuEvent(QContextMenuEvent* event) {
    if (event->reason() != QContextMenuEvent::Keyboard) {
        Q_EMIT menuRequested();
    }
}

void Chip::focusInEvent(QFocusEvent* event) {
    PanelButton::focusInEvent(event);
    Q_EMIT focused();
}

}  // namespace quillo
