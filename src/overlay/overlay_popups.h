// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QRect>
#include <QUuid>

#include "appearance/palette.h"
#include "library/groups/group_list.h"
#include "library/thumbnails/card_content.h"

namespace quillo {

class CreateGroupPopover;
class GroupPicker;
class PanelTips;

/// What opens inside the panel: a card's menu, its groups, the form for a new group, and the tips.
/// Lives as long as its panel. Main thread.
class OverlayPopups final : public QObject {
    Q_OBJECT

public:
    /// Belongs to the panel; the groups must outlive it.
    OverlayPopups(QWidget* panel, const GroupList& groups);

    void setColors(const Palette& colors);
    [[nodiscard]] const Palette& colors() const { return m_colors; }

    // Anchors are in the panel's coordinates.
    void openCardMenu(const CardContent& card, const QRect& anchor);
    void openGroups(const QUuid& clip, const QRect& anchor);
    void openCreateGroup(const QRect& anchor);

Q_SIGNALS:
    void pinToggled(const QUuid& clip);
    void deleteRequested(const QUuid& clip);

private:
    QWidget* m_panel;
    const GroupList& m_groups;
    PanelTips* m_tips;
    GroupPicker* m_picker;
    CreateGroupPopover* m_createGroup;
    Palette m_colors = paletteFor(ColorScheme::Light);
};

}  // namespace quillo
