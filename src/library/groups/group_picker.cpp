// SPDX-License-Identifier: MIT
#include "library/groups/group_picker.h"

#include <QKeyEvent>
#include <QLabel>
#include <QVBoxLayout>
#include <algorithm>

#include "appearance/fonts.h"
#include "base/logging.h"
#include "library/groups/form_controls.h"
#include "library/groups/group_form.h"
#include "library/groups/group_picker_row.h"
#include "library/groups/text_color.h"
#include "library/groups/text_field_menu.h"
#include "model/groups.h"

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcPicker, "GroupPickerPopover")

// What stands beside a text starts further in than a row, whose ground has a margin.
constexpr int kRowMargin = 5;
constexpr int kTextMargin = 14;

QLabel* newLabel(const QString& text, int pixels, QFont::Weight weight) {
    auto* label = new QLabel(text);
    label->setFont(sizedFont(label->font(), pixels, weight));
    label->setContentsMargins(kTextMargin - kRowMargin, 0, 0, 0);
    return label;
}

bool isSameRow(const GroupItem& item, const GroupItem& other) {
    return item.id == other.id && item.title == other.title && item.color == other.color;
}

}  // namespace

GroupPicker::GroupPicker(QWidget* panel, const GroupList& groups, const Palette& colors)
    : Popup(panel, colors),
      m_groups(groups),
      m_heading(newLabel(QStringLiteral("Groups"), 13, QFont::DemiBold)),
      m_empty(newLabel(QStringLiteral("No groups yet"), 13, QFont::Normal)),
      m_list(new QVBoxLayout),
      m_newGroup(
          new GroupPickerRow(QAccessible::PushButton, {.title = QStringLiteral("New Group")})),
      m_form(new GroupForm({.heading = QString()}, GroupForm::CustomColor::NotOffered)) {
    setAccessibleName(QStringLiteral("Groups"));
    m_newGroup->setSymbol(QStringLiteral("plus.circle.fill"));
    m_heading->setFixedHeight(26);
    m_empty->setFixedHeight(GroupPickerRow::kHeight);
    m_form->hide();
    auto* content = new QWidget;
    content->setFixedWidth(kWidth - 2);
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(kRowMargin, 2, kRowMargin, 0);
    column->setSpacing(0);
    column->addWidget(m_heading);
    column->addWidget(m_empty);
    column->addLayout(m_list);
    column->addSpacing(4);
    column->addWidget(m_newGroup);
    column->addWidget(m_form);
    setContent(content);
    fill();
    new TextFieldMenu(m_form->nameField(), panel, [this] { return panelColors(); });
    connect(m_newGroup, &GroupPickerRow::clicked, this, [this] { showForm(true); });
    connect(m_form, &GroupForm::cancelled, this, [this] { showForm(false); });
    connect(m_form, &GroupForm::confirmed, this, &GroupPicker::create);
    connect(&m_groups, &GroupList::changed, this, &GroupPicker::fill);
}

// A row that only another count would change stays, and with it the focus.
void GroupPicker::fill() {
    const QList<GroupItem>& items = m_groups.items();
    if (m_rows.isEmpty() || !std::ranges::equal(items, m_shown, &isSameRow)) {
        for (GroupPickerRow* row : std::as_const(m_rows)) {
            row->hide();
            row->deleteLater();
        }
        m_rows.clear();
        for (const GroupItem& item : items) {
            m_rows.append(newRow(item));
        }
        m_shown = items;
    }
    m_empty->setVisible(items.isEmpty());
    readMemberships();
    lookChanged();
}

GroupPickerRow* GroupPicker::newRow(const GroupItem& item) {
    auto* row = new GroupPickerRow(
        QAccessible::CheckBox,
        {.group = item.id, .title = item.title, .hasColor = true, .color = item.color});
    row->setCheckable(true);
    m_list->addWidget(row);
    connect(row, &GroupPickerRow::clicked, this, [this, row] { toggle(row->group()); });
    return row;
}

void GroupPicker::openFor(const QUuid& clip, const QRect& anchor, PopupSide side) {
    m_clip = clip;
    showForm(false);
    readMemberships();
    openAt(anchor, side);
}

// As this context holds them, saved or not.
void GroupPicker::readMemberships() {
    if (!m_clip.isNull()) {
        if (auto groups = groupIdsOf(m_groups.context(), m_clip)) {
            m_memberOf = std::move(*groups);
        }
    }
    for (GroupPickerRow* row : std::as_const(m_rows)) {
        const bool isMember = m_memberOf.contains(row->group());
        row->setChecked(isMember);
        row->setSymbol(isMember ? QStringLiteral("checkmark.circle.fill")
                                : QStringLiteral("circle"));
    }
}

void GroupPicker::toggle(const QUuid& group) {
    const auto record = m_groups.group(group);
    if (record == nullptr) {
        return;
    }
    if (const auto toggled = toggleClip(*record, m_clip); !toggled) {
        qCCritical(lcPicker, "Error toggling group: %ls", qUtf16Printable(toggled.error().text));
    }
    readMemberships();
}

void GroupPicker::create(const QString& name, const QColor& color) {
    const auto group =
        createGroup(m_groups.context(), {.title = name, .color = color, .clips = {m_clip}});
    if (!group) {
        qCCritical(lcPicker, "Error creating group: %ls", qUtf16Printable(group.error().text));
    }
    m_form->startAnew();
    showForm(false);
    readMemberships();
}

bool GroupPicker::isFormShown() const {
    return !m_form->isHidden();
}

void GroupPicker::showForm(bool isShown) {
    const bool hadFocus = m_form->isAncestorOf(window()->focusWidget());
    if (isShown) {
        m_form->show();
        m_form->nameField().setFocus();
        m_newGroup->hide();
        showWidget(*m_form);
        return;
    }
    m_newGroup->show();
    if (hadFocus) {
        m_newGroup->setFocus();
    }
    m_form->hide();
}

void GroupPicker::lookChanged() {
    applyLook(*content(), look());
    setTextColor(*m_empty, look().secondaryText);
    for (GroupPickerRow* row : std::as_const(m_rows)) {
        row->setLook(look());
    }
    m_newGroup->setLook(look());
    m_form->setLook(look());
}

QWidget* GroupPicker::initialFocus() const {
    return m_rows.isEmpty() ? m_newGroup : m_rows.first();
}

void GroupPicker::moveFocus(int direction) {
    QList<QWidget*> stops(m_rows.begin(), m_rows.end());
    if (!m_newGroup->isHidden()) {
        stops.append(m_newGroup);
    }
    const qsizetype at = stops.indexOf(window()->focusWidget());
    if (at >= 0) {
        QWidget* const wanted = stops.at((at + direction + stops.size()) % stops.size());
        wanted->setFocus();
        showWidget(*wanted);
    }
}

void GroupPicker::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Down) {
        moveFocus(1);
    } else if (event->key() == Qt::Key_Up) {
        moveFocus(-1);
    } else {
        Popup::keyPressEvent(event);
    }
}

}  // namespace quillo
