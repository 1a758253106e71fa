// SPDX-License-Identifier: MIT
#include "library/groups/menu_row.h"

#include <QMouseEvent>
#include <QPainter>

#include "appearance/contrast.h"
#include "appearance/fonts.h"
#include "appearance/symbols.h"
#include "library/groups/form_controls.h"

namespace quillo {
namespace {

constexpr int kPadding = 10;
constexpr int kDot = 8;
constexpr int kAfterDot = 8;
constexpr int kSymbol = 14;
constexpr int kAfterSymbol = 7;
constexpr int kEndSymbol = 14;
constexpr int kBeforeEnd = 24;
constexpr int kRadius = 6;
constexpr int kLongestTitle = 260;

}  // namespace

MenuRow::MenuRow(const MenuEntry& entry, QWidget* parent)
    : PanelButton(QAccessible::MenuItem, parent), m_entry(entry) {
    setFont(sizedFont(font(), 13, QFont::Normal));
    setAccessibleName(plainTitle().isEmpty() ? QStringLiteral("Group without a name")
                                             : plainTitle());
    setEnabled(entry.isEnabled);
    setFocusPolicy(Qt::TabFocus);
    setMouseTracking(true);
    setFixedHeight(PopupMenu::kRowHeight);
    setHasPopup(!entry.submenu.empty());
    setCheckable(entry.check.has_value());
    setChecked(entry.check.value_or(false));
}

QString MenuRow::plainTitle() const {
    QString plain;
    bool isMarked = false;
    for (const QChar letter : m_entry.title) {
        isMarked = letter == u'&' && !isMarked;
        plain += isMarked ? QString() : QString(letter);
    }
    return plain;
}

QChar MenuRow::mnemonic() const {
    bool isMarked = false;
    for (const QChar letter : m_entry.title) {
        if (isMarked && letter != u'&') {
            return letter.toLower();
        }
        isMarked = letter == u'&' && !isMarked;
    }
    return {};
}

QChar MenuRow::initial() const {
    const QString plain = plainTitle();
    return plain.isEmpty() ? QChar() : plain.at(0).toLower();
}

int MenuRow::titleX() const {
    if (m_entry.dot.has_value()) {
        return kPadding + kDot + kAfterDot;
    }
    return m_entry.symbol.isEmpty() ? kPadding : kPadding + kSymbol + kAfterSymbol;
}

int MenuRow::titleWidth() const {
    return titleX() + std::min(kLongestTitle, fontMetrics().horizontalAdvance(plainTitle()));
}

int MenuRow::shortcutWidth() const {
    return fontMetrics().horizontalAdvance(m_entry.shortcut);
}

void MenuRow::setLook(const PopupLook& look) {
    m_look = look;
    update();
}

void MenuRow::setColumns(const MenuColumns& columns) {
    m_columns = columns;
    updateGeometry();
}

void MenuRow::setSubmenuOpen(bool isOpen) {
    m_isSubmenuOpen = isOpen;
    update();
}

QSize MenuRow::sizeHint() const {
    int width = m_columns.title + kPadding;
    if (m_columns.shortcut > 0) {
        width += kBeforeEnd + m_columns.shortcut;
    }
    if (m_columns.hasEnd) {
        width += kBeforeEnd + kEndSymbol;
    }
    return {width, PopupMenu::kRowHeight};
}

// Not on entering: a menu that opens beneath a resting pointer highlights nothing by that.
void MenuRow::mouseMoveEvent(QMouseEvent* event) {
    PanelButton::mouseMoveEvent(event);
    Q_EMIT entered();
}

QColor MenuRow::ink(bool isHighlighted) const {
    if (!isEnabled()) {
        return mixed(m_look.ground, m_look.primaryText, 0.42);
    }
    if (isHighlighted) {
        return m_look.onAccent;
    }
    return m_entry.isDestructive ? m_look.destructive : m_look.primaryText;
}

void MenuRow::paintMark(QPainter& painter, const QColor& color) const {
    if (m_entry.dot.has_value()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(*m_entry.dot);
        painter.drawEllipse(QRectF(kPadding, (height() - kDot) / 2.0, kDot, kDot));
    } else if (!m_entry.symbol.isEmpty()) {
        painter.drawPixmap(kPadding, (height() - kSymbol) / 2,
                           symbolPixmap(m_entry.symbol, kSymbol, color, devicePixelRatioF()));
    }
}

void MenuRow::paintEnd(QPainter& painter, const QColor& color, bool isHighlighted) const {
    const int x = width() - kPadding - kEndSymbol;
    const int y = (height() - kEndSymbol) / 2;
    if (!m_entry.submenu.empty()) {
        painter.drawPixmap(
            x + 3, y,
            symbolPixmap(QStringLiteral("chevron.right"), kEndSymbol, color, devicePixelRatioF()));
    } else if (isChecked()) {
        painter.drawPixmap(
            x, y,
            symbolPixmap(QStringLiteral("checkmark.bold"), kEndSymbol,
                         isHighlighted ? color : m_look.accentText, devicePixelRatioF()));
    }
}

// The mark of the mnemonic is lost with a title that has to be cut.
void MenuRow::paintTitle(QPainter& painter) const {
    const QRect line(titleX(), 0, m_columns.title - titleX() + 1, height());
    const QString plain = plainTitle();
    constexpr int kPlace = Qt::AlignVCenter | Qt::AlignLeft;
    if (fontMetrics().horizontalAdvance(plain) > line.width()) {
        painter.drawText(line, kPlace,
                         fontMetrics().elidedText(plain, Qt::ElideRight, line.width()));
    } else {
        painter.drawText(line, kPlace | Qt::TextShowMnemonic, m_entry.title);
    }
}

void MenuRow::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool isHighlighted = isEnabled() && (isCurrent() || m_isSubmenuOpen);
    if (isHighlighted) {
        fillRounded(painter, rect(), kRadius, m_look.accent);
    }
    const QColor color = ink(isHighlighted);
    paintMark(painter, color);
    paintEnd(painter, color, isHighlighted);
    painter.setPen(color);
    paintTitle(painter);
    if (!m_entry.shortcut.isEmpty()) {
        painter.setPen(isEnabled() && !isHighlighted ? m_look.secondaryText : color);
        painter.drawText(rect().adjusted(0, 0, -kPadding, 0), Qt::AlignVCenter | Qt::AlignRight,
                         m_entry.shortcut);
    }
}

}  // namespace quillo
