// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include "library/groups/group_list.h"

namespace quillo {

class SymbolButton;

/// One group of GroupManagementList: its dot, title and number of clips, and what can be done.
class GroupManagementRow final : public QWidget {
    Q_OBJECT

public:
    explicit GroupManagementRow(QWidget* parent);

    void setItem(const GroupItem& item);
    [[nodiscard]] const GroupItem& item() const { return m_item; }
    /// What the row says of the number of clips.
    [[nodiscard]] QString countText() const;
    [[nodiscard]] SymbolButton& edit() { return *m_edit; }
    [[nodiscard]] SymbolButton& remove() { return *m_remove; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    GroupItem m_item;
    SymbolButton* m_edit;
    SymbolButton* m_remove;
};

}  // namespace quillo
