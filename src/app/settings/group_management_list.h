// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QWidget>

#include "library/groups/group_form.h"
#include "library/groups/group_list.h"

class QVBoxLayout;

namespace quillo {

class GroupManagementRow;

/// The groups, to be made, edited and deleted. A form is a sheet in the window; what cannot be
/// saved is logged and waits in the context.
class GroupManagementList final : public QWidget {
    Q_OBJECT

public:
    /// The context must outlive the list.
    explicit GroupManagementList(ObjectContext& context, QWidget* parent = nullptr);

    void openAddSheet();

    /// In the order shown.
    [[nodiscard]] const QList<GroupManagementRow*>& rows() const { return m_rows; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void showGroups();
    GroupManagementRow* takeRow(const QUuid& group);
    void openEditSheet(const GroupItem& group);
    void askToDelete(const GroupItem& group);
    [[nodiscard]] GroupForm* openForm(const GroupForm::Texts& texts, const QString& name,
                                      const QColor& color);
    void create(const QString& name, const QColor& color);
    void save(const QUuid& id, const QString& name, const QColor& color);
    void remove(const QUuid& id);

    GroupList m_groups;
    QList<GroupManagementRow*> m_rows;
    QWidget* m_none;  ///< Shown when there are no groups.
    QVBoxLayout* m_column;
};

}  // namespace quillo
