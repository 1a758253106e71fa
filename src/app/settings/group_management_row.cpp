// SPDX-License-Identifier: MIT
#include "app/settings/group_management_row.h"

#include <QHBoxLayout>
#include <QLocale>
#include <QPainter>

#include "app/settings/settings_look.h"
#include "app/settings/symbol_button.h"
#include "appearance/fonts.h"

namespace quillo {
namespace {

constexpr int kHeight = 40;
constexpr int kPadding = 14;
constexpr int kDot = 12;
constexpr int kDotX = 16;  // In the middle of a row's symbol.
constexpr int kTextX = 46;
constexpr int kGap = 12;

}  // namespace

GroupManagementRow::GroupManagementRow(QWidget* parent)
    : QWidget(parent),
      m_edit(new SymbolButton(QStringLiteral("pencil"), QStringLiteral("Edit group"))),
      m_remove(new SymbolButton(QStringLiteral("trash"), QStringLiteral("Delete group"))) {
    setFixedHeight(kHeight);
    auto* line = new QHBoxLayout(this);
    line->setContentsMargins(kPadding, 0, kPadding, 0);
    line->setSpacing(2);
    line->addStretch(1);
    line->addWidget(m_edit);
    line->addWidget(m_remove);
}

void GroupManagementRow::setItem(const GroupItem& item) {
    m_item = item;
    setAccessibleName(item.title);
    setAccessibleDescription(countText());
    m_edit->setAccessibleName(QStringLiteral("Edit group %1").arg(item.title).trimmed());
    m_remove->setAccessibleName(QStringLiteral("Delete group %1").arg(item.title).trimmed());
    update();
}

QString GroupManagementRow::countText() const {
    return m_item.memberCount == 1
               ? QStringLiteral("1 clip")
               : QStringLiteral("%1 clips").arg(QLocale().toString(qlonglong(m_item.memberCount)));
}

void GroupManagementRow::paintEvent(QPaintEvent* /*event*/) {
    const PopupLook& look = lookOf(*this).controls;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_item.color.value_or(look.accent));
    painter.drawEllipse(QRectF(kDotX, (height() - kDot) / 2.0, kDot, kDot));
    const QFont small = sizedFont(font(), 11, QFont::Normal);
    const int countWidth = QFontMetrics(small).horizontalAdvance(countText());
    const QRect count(m_edit->x() - kGap - countWidth, 0, countWidth, height());
    painter.setFont(small);
    painter.setPen(look.secondaryText);
    painter.drawText(count, Qt::AlignVCenter | Qt::AlignRight, countText());
    const QFont normal = sizedFont(font(), 13, QFont::Normal);
    const QRect title(kTextX, 0, count.left() - kGap - kTextX, height());
    const bool hasTitle = !m_item.title.isEmpty();
    painter.setFont(normal);
    painter.setPen(hasTitle ? look.primaryText : look.secondaryText);
    painter.drawText(
        title, Qt::AlignVCenter | Qt::AlignLeft,
        QFontMetrics(normal).elidedText(hasTitle ? m_item.title : QStringLiteral("Untitled"),
                                        Qt::ElideRight, title.width()));
}

}  // namespace quillo
