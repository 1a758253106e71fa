// SPDX-License-Identifier: MIT
#include "overlay/hints_line.h"

#include <QAccessible>
#include <QLabel>
#include <QPainter>
#include <array>
#include <utility>

#include "appearance/fonts.h"
#include "library/groups/form_controls.h"
#include "library/groups/text_color.h"

namespace quillo {
namespace {

constexpr int kGapBetweenHints = 18;
constexpr int kGapWithinHint = 4;
constexpr int kGapBeforeUndo = 8;
constexpr int kButtonPadding = 8;
constexpr int kButtonHeight = 20;
constexpr qreal kRadius = 6;

using Hint = std::pair<const char*, const char*>;
constexpr std::array<Hint, 3> kHints = {Hint{"arrows", "Navigate"}, Hint{"return", "Paste"},
                                        Hint{"esc", "Close"}};

}  // namespace

/// A word that can be pressed.
class LinkButton final : public PanelButton {
public:
    explicit LinkButton(QWidget* parent) : PanelButton(QAccessible::PushButton, parent) {
        setAttribute(Qt::WA_Hover);
    }

    void setColors(const Palette& colors) {
        m_colors = colors;
        update();
    }
    [[nodiscard]] QSize sizeHint() const override {
        return {fontMetrics().horizontalAdvance(text()) + 2 * kButtonPadding, kButtonHeight};
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(m_colors.field);
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), kRadius, kRadius);
        if (hasFocus()) {
            paintFocusRing(painter, rect(), kRadius, m_colors.accent);
        }
        painter.setPen(m_colors.primaryText);
        painter.drawText(rect(), Qt::AlignCenter, text());
    }

private:
    Palette m_colors = paletteFor(ColorScheme::Light);
};

HintsLine::HintsLine(QWidget* parent)
    : QWidget(parent), m_message(new QLabel(this)), m_undo(new LinkButton(this)) {
    setFixedHeight(kHeight);
    const QFont small = sizedFont(font(), 11, QFont::Normal);
    m_message->setFont(small);
    m_undo->setFont(sizedFont(font(), 11, QFont::Medium));
    m_undo->setText(QStringLiteral("Undo"));
    m_undo->setShortcut(QKeySequence(QKeySequence::Undo));
    m_undo->setToolTip(QStringLiteral("Bring it back (%1)")
                           .arg(m_undo->shortcut().toString(QKeySequence::NativeText)));
    m_undo->setFocusPolicy(Qt::TabFocus);
    connect(m_undo, &QAbstractButton::clicked, this, &HintsLine::undoRequested);
    m_message->hide();
    m_undo->hide();
}

QWidget* HintsLine::undoButton() const {
    return m_undo;
}

void HintsLine::setColors(const Palette& colors) {
    m_colors = colors;
    setTextColor(*m_message, colors.primaryText);
    m_undo->setColors(colors);
    update();
}

void HintsLine::offerUndo(qsizetype deletedCount) {
    const bool isOffered = deletedCount > 0;
    m_message->setText(deletedCount == 1 ? QStringLiteral("Clip deleted")
                                         : QStringLiteral("%1 clips deleted").arg(deletedCount));
    m_message->setVisible(isOffered);
    m_undo->setVisible(isOffered);
    layOut();
    update();
    if (isOffered && QAccessible::isActive()) {
        QAccessibleEvent shown(m_message, QAccessible::NameChanged);
        QAccessible::updateAccessibility(&shown);
    }
}

void HintsLine::layOut() {
    const int message = m_message->sizeHint().width();
    const QSize button = m_undo->sizeHint();
    const int left = (width() - message - kGapBeforeUndo - button.width()) / 2;
    m_message->setGeometry(left, 0, message, kHeight);
    m_undo->setGeometry(left + message + kGapBeforeUndo, (kHeight - button.height()) / 2,
                        button.width(), button.height());
}

void HintsLine::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    layOut();
}

void HintsLine::paintEvent(QPaintEvent* /*event*/) {
    if (!m_message->isVisibleTo(this)) {
        QPainter painter(this);
        paintHints(painter);
    }
}

void HintsLine::paintHints(QPainter& painter) const {
    const QFont keyFont = sizedFont(font(), 11, QFont::Medium);
    const QFont actionFont = sizedFont(font(), 11, QFont::Normal);
    const auto widthOf = [](const char* text, const QFont& wordFont) {
        return QFontMetrics(wordFont).horizontalAdvance(QString::fromLatin1(text));
    };
    int total = kGapBetweenHints * int(kHints.size() - 1);
    for (const auto& [key, action] : kHints) {
        total += widthOf(key, keyFont) + kGapWithinHint + widthOf(action, actionFont);
    }
    int x = (width() - total) / 2;
    const auto draw = [&](const char* text, const QFont& wordFont, const QColor& color) {
        painter.setFont(wordFont);
        painter.setPen(color);
        painter.drawText(QRect(x, 0, width(), height()), Qt::AlignLeft | Qt::AlignVCenter,
                         QString::fromLatin1(text));
        x += widthOf(text, wordFont);
    };
    for (const auto& [key, action] : kHints) {
        draw(key, keyFont, m_colors.primaryText);
        x += kGapWithinHint;
        draw(action, actionFont, m_colors.secondaryText);
        x += kGapBetweenHints;
    }
}

}  // namespace quillo
