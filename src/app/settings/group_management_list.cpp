// SPDX-License-Identifier: MIT
#include "app/settings/group_management_list.h"

#include <QPainter>
#include <QVBoxLayout>

#include "app/settings/group_management_row.h"
#include "app/settings/settings_look.h"
#include "app/settings/symbol_button.h"
#include "appearance/fonts.h"
#include "appearance/symbols.h"
#include "base/logging.h"
#include "library/groups/alert.h"
#include "library/groups/form_controls.h"
#include "model/groups.h"

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcManagement, "GroupManagementView")

constexpr int kFormWidth = 260;

void logFailure(const char* what, const Error& error) {
    qCCritical(lcManagement, "%s: %ls", what, qUtf16Printable(error.text));
}

/// A symbol and a word where the groups would be.
class NoGroups final : public QWidget {
public:
    NoGroups() {
        setFixedHeight(kHeight);
        setFont(sizedFont(font(), 12, QFont::Normal));
        setAccessibleName(text());
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        const QColor ink = lookOf(*this).controls.secondaryText;
        QPainter painter(this);
        painter.drawPixmap(
            (width() - kSymbol) / 2, kAbove,
            symbolPixmap(QStringLiteral("folder.badge.plus"), kSymbol, ink, devicePixelRatioF()));
        painter.setPen(ink);
        painter.drawText(rect().adjusted(0, kAbove + kSymbol, 0, -kAbove), Qt::AlignCenter, text());
    }

private:
    static constexpr int kHeight = 76;
    static constexpr int kSymbol = 24;
    static constexpr int kAbove = 14;

    static QString text() { return QStringLiteral("No groups yet"); }
};

}  // namespace

GroupManagementList::GroupManagementList(ObjectContext& context, QWidget* parent)
    : QWidget(parent), m_groups(context), m_none(new NoGroups), m_column(new QVBoxLayout(this)) {
    setAccessibleName(QStringLiteral("Clip Groups"));
    m_column->setContentsMargins(0, 0, 0, 0);
    m_column->setSpacing(1);
    m_column->addWidget(m_none);
    connect(&m_groups, &GroupList::changed, this, &GroupManagementList::showGroups);
    showGroups();
}

// A group that stays keeps its row, and thereby the focus.
GroupManagementRow* GroupManagementList::takeRow(const QUuid& group) {
    for (qsizetype i = 0; i < m_rows.size(); ++i) {
        if (m_rows.at(i)->item().id == group) {
            return m_rows.takeAt(i);
        }
    }
    auto* row = new GroupManagementRow(this);
    connect(&row->edit(), &QAbstractButton::clicked, this,
            [this, row] { openEditSheet(row->item()); });
    connect(&row->remove(), &QAbstractButton::clicked, this,
            [this, row] { askToDelete(row->item()); });
    return row;
}

void GroupManagementList::showGroups() {
    QList<GroupManagementRow*> rows;
    QWidget* before = this;
    for (const GroupItem& item : m_groups.items()) {
        GroupManagementRow* row = takeRow(item.id);
        row->setItem(item);
        m_column->removeWidget(row);
        m_column->insertWidget(int(rows.size()), row);
        setTabOrder(before, &row->edit());
        setTabOrder(&row->edit(), &row->remove());
        before = &row->remove();
        rows.append(row);
    }
    for (GroupManagementRow* gone : std::as_const(m_rows)) {
        gone->hide();
        gone->deleteLater();
    }
    m_rows = rows;
    m_none->setVisible(rows.isEmpty());
    update();
}

GroupForm* GroupManagementList::openForm(const GroupForm::Texts& texts, const QString& name,
                                         const QColor& color) {
    auto* sheet = new Sheet(this, settingsControls);
    auto* form = new GroupForm(texts, GroupForm::CustomColor::Offered);
    form->layout()->setContentsMargins(0, 0, 0, 0);
    form->setFixedWidth(kFormWidth);
    form->setName(name);
    form->setColor(color);
    connect(form, &GroupForm::cancelled, sheet, &Sheet::closeSheet);
    connect(form, &GroupForm::confirmed, sheet, &Sheet::closeSheet);
    sheet->setContent(form);
    sheet->open(&form->nameField());
    return form;
}

void GroupManagementList::openAddSheet() {
    const GroupForm* form = openForm({}, {}, QColor(kStandardBlue));
    connect(form, &GroupForm::confirmed, this, &GroupManagementList::create);
}

void GroupManagementList::openEditSheet(const GroupItem& group) {
    const GroupForm* form =
        openForm({.heading = QStringLiteral("Edit Group"), .confirm = QStringLiteral("Save")},
                 group.title, group.color.value_or(lookOf(*this).controls.accent));
    connect(
        form, &GroupForm::confirmed, this,
        [this, id = group.id](const QString& name, const QColor& color) { save(id, name, color); });
}

void GroupManagementList::askToDelete(const GroupItem& group) {
    const QString name = group.title.isEmpty() ? QStringLiteral("this group") : group.title;
    const QString question = QStringLiteral("Are you sure you want to delete \"") + name +
                             QStringLiteral(
                                 "\"? Clips in this group will be moved to the general "
                                 "tab.");
    Alert::show(this, settingsControls,
                {.title = QStringLiteral("Delete Group"),
                 .message = question,
                 .dismiss = QStringLiteral("Cancel"),
                 .destructive = Alert::Action{QStringLiteral("Delete"),
                                              [this, id = group.id] { remove(id); }}});
}

void GroupManagementList::create(const QString& name, const QColor& color) {
    const auto group = createGroup(m_groups.context(), {name, color, GroupPlace::AfterListed, {}});
    if (!group) {
        logFailure("Error creating group", group.error());
    }
}

void GroupManagementList::save(const QUuid& id, const QString& name, const QColor& color) {
    const auto group = m_groups.group(id);
    const auto saved = group != nullptr ? editGroup(*group, name, color) : Result<bool>(false);
    if (!saved) {
        logFailure("Error saving group", saved.error());
    }
}

void GroupManagementList::remove(const QUuid& id) {
    const auto group = m_groups.group(id);
    const auto removed = group != nullptr ? deleteGroup(*group) : Result<void>();
    if (!removed) {
        logFailure("Error deleting group", removed.error());
    }
}

void GroupManagementList::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setPen(lookOf(*this).sectionBorder);
    for (qsizetype i = 1; i < m_rows.size(); ++i) {
        const int y = m_rows.at(i)->y() - 1;
        painter.drawLine(1, y, width() - 2, y);
    }
}

}  // namespace quillo
