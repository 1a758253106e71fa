// SPDX-License-Identifier: MIT
#pragma once

#include <QStyledItemDelegate>
#include <functional>

#include "library/list/clip_list_model.h"

namespace quillo {

/// Draws one row of a list of clips: the kind's symbol on a tile of its colour, the text, the age.
/// A text that is cut off is shown whole in a tip.
class QuickClipRowView final : public QStyledItemDelegate {
    Q_OBJECT

public:
    static constexpr int kHeight = 44;

    using KindColor = std::function<QColor(ClipType)>;

    /// model must outlive it; kindColor is asked at each drawing.
    QuickClipRowView(const ClipListModel& model, KindColor kindColor, QObject* parent = nullptr);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const override;
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

private:
    struct Layout;

    [[nodiscard]] Layout layOut(const QStyleOptionViewItem& option, int row) const;
    void paintTile(QPainter& painter, const QRect& tile, std::optional<ClipType> kind) const;

    const ClipListModel& m_model;
    KindColor m_kindColor;
};

}  // namespace quillo
