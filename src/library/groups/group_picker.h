// SPDX-License-Identifier: MIT
#pragma once

#include <QSet>
#include <QUuid>

#include "library/groups/group_list.h"
#include "library/groups/popup.h"

class QLabel;
class QVBoxLayout;

namespace quillo {

class GroupForm;
class GroupPickerRow;

/// The groups of one clip, to be joined and left, and a form for a new one with the clip in it.
/// Stays open while groups are toggled. Up and Down walk the rows, Space and Return toggle.
class GroupPicker final : public Popup {
    Q_OBJECT

public:
    static constexpr int kWidth = 250;

    /// The list must outlive the picker.
    GroupPicker(QWidget* panel, const GroupList& groups,
                const Palette& colors = paletteFor(ColorScheme::Light));

    /// Reads which groups the clip is in, and opens.
    void openFor(const QUuid& clip, const QRect& anchor, PopupSide side = PopupSide::Below);

    [[nodiscard]] QUuid clip() const { return m_clip; }
    [[nodiscard]] const QSet<QUuid>& memberOf() const { return m_memberOf; }
    void toggle(const QUuid& group);

    /// The form for a new group.
    [[nodiscard]] GroupForm& form() { return *m_form; }
    [[nodiscard]] bool isFormShown() const;
    void showForm(bool isShown);

protected:
    void lookChanged() override;
    [[nodiscard]] QWidget* initialFocus() const override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void fill();
    void create(const QString& name, const QColor& color);
    [[nodiscard]] GroupPickerRow* newRow(const GroupItem& item);
    void readMemberships();
    void moveFocus(int direction);

    const GroupList& m_groups;
    QUuid m_clip;
    QSet<QUuid> m_memberOf;
    QLabel* m_heading;
    QLabel* m_empty;
    QVBoxLayout* m_list;
    QList<GroupPickerRow*> m_rows;
    QList<GroupItem> m_shown;  ///< As the rows say it.
    GroupPickerRow* m_newGroup;
    GroupForm* m_form;
};

}  // namespace quillo
