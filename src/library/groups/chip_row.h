// SPDX-License-Identifier: MIT
#pragma once

#include <QTimer>
#include <QUuid>
#include <QWidget>
#include <functional>
#include <optional>

#include "appearance/palette.h"
#include "library/groups/chip.h"
#include "library/groups/group_list.h"
#include "model/filter_type.h"

class QDropEvent;

namespace quillo {

class ClipTypeColorManager;

/// A filter of the chip row; a badge is shown when the person chose a colour for it.
struct FilterItem {
    FilterType filter = FilterType::Text;
    std::optional<QColor> badge = {};

    friend bool operator==(const FilterItem&, const FilterItem&) = default;
};

/// The row of chips: "All", the filters, the groups and the button that makes a new group. Scrolls
/// sideways when it is too narrow. Shows a choice and reports clicks; what follows from them is
/// the owner's, who may set another choice at any time. Needs nothing of the panel around it.
class ChipRow final : public QWidget {
    Q_OBJECT

public:
    static constexpr int kHeight = 40;
    static constexpr int kLeastWidth = 120;

    explicit ChipRow(QWidget* parent = nullptr);

    void setFilters(const QList<FilterItem>& filters);
    void setGroups(const QList<GroupItem>& groups);
    void setColors(const Palette& colors);
    /// Takes what these hold, now and whenever it changes; they may go before the row does.
    void followFilters(const ClipTypeColorManager& manager);
    void followGroups(const GroupList& groups);
    /// Without groups the row has no divider and no "plus".
    void setGroupsShown(bool areShown);

    /// None is "All". Sends no signal, nor do the other setters of the choice.
    void setSelectedFilter(std::optional<FilterType> filter);
    void setSelectedGroup(std::optional<QUuid> group);
    [[nodiscard]] std::optional<FilterType> selectedFilter() const { return m_filter; }
    [[nodiscard]] std::optional<QUuid> selectedGroup() const { return m_group; }

    /// Which drags are the program's own; others are refused. None are before one of these is
    /// called. The first takes the drags that this object started.
    void setDragSource(const QObject* source);
    using DragFilter = std::function<bool(const QDropEvent&)>;
    void setDragFilter(DragFilter filter) { m_isOwnDrag = std::move(filter); }

    /// The focus goes to the chip beside the focused one; from outside it enters at the selected
    /// one. False, and nothing happens, at the row's ends.
    bool focusNext();
    bool focusPrevious();
    /// The focus enters the row: at the selected chip.
    void focusSelected(Qt::FocusReason reason = Qt::TabFocusReason);
    [[nodiscard]] bool hasFocusInside() const;

    /// In the order of the row, "plus" last.
    [[nodiscard]] const QList<Chip*>& chips() const { return m_chips; }
    [[nodiscard]] Chip* groupChip(const QUuid& group) const;
    /// How far the row is scrolled, and how far it can be; logical pixels.
    [[nodiscard]] int scrollOffset() const { return m_offset; }
    [[nodiscard]] int scrollRange() const;
    void scrollTo(int offset);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// None is "All". Sent when the selected one is pressed again too.
    void filterChosen(std::optional<quillo::FilterType> filter);
    /// None when the selected group was clicked again, or is gone.
    void groupChosen(std::optional<QUuid> group);
    /// The rectangles are in the coordinates of the row's window.
    void createGroupRequested(const QRect& anchor);
    void groupMenuRequested(const QUuid& group, const QRect& anchor);
    void clipDropped(const QUuid& group, const QUuid& clip);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    struct ChipKey {
        Chip::Kind kind;
        std::optional<FilterType> filter = {};
        std::optional<QUuid> group = {};
    };
    [[nodiscard]] Chip* takeChip(QList<Chip*>& old, const ChipKey& key);
    [[nodiscard]] Chip* newChip(const ChipKey& key);
    void rebuild();
    void addGroupChips(QList<Chip*>& old);
    void layOut();
    void placeChips();
    void showSelection();
    void clicked(Chip& chip);
    void reveal(const Chip& chip);
    [[nodiscard]] int focusedIndex() const;
    [[nodiscard]] Chip* selectedChip() const;
    bool focusAt(int index, Qt::FocusReason reason);
    [[nodiscard]] bool isWelcome(const QDropEvent& event) const;
    [[nodiscard]] Chip* groupChipAt(const QPoint& position) const;
    void dragOver(Chip* chip);
    void scrollForDrag(const QPoint& position);
    [[nodiscard]] QRect rectInWindow(const Chip& chip) const;

    QList<FilterItem> m_filters;
    QList<GroupItem> m_groups;
    QList<Chip*> m_chips;
    Palette m_colors = paletteFor(ColorScheme::Light);
    std::optional<FilterType> m_filter;
    std::optional<QUuid> m_group;
    DragFilter m_isOwnDrag;
    QTimer m_dragScroll;
    int m_dragScrollStep = 0;
    int m_offset = 0;
    int m_contentWidth = 0;
    int m_dividerX = -1;  ///< In the content's coordinates; negative is none.
    bool m_areGroupsShown = true;
};

}  // namespace quillo
