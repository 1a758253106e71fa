// SPDX-License-Identifier: MIT
#pragma once

#include <QLineEdit>
#include <QListView>
#include <QUuid>
#include <QWidget>
#include <functional>

#include "library/list/listed_clips.h"
#include "library/list/quick_clip_row_view.h"

class QLabel;

namespace quillo {

/// What a list of clips needs, and what choosing one in it does; everything must outlive the list.
struct ClipListServices {
    PersistenceController& persistence;
    ClipSearch& search;  ///< What it read is shared.
    const Clock& clock;
    QuickClipRowView::KindColor kindColor;
    std::function<void(const Clip&)> copy;
};

/// A search field above a list of clips, one of which is selected. The field has the keyboard: up
/// and down, Page Up and Page Down move the selection, Return chooses, everything else is typed.
class ClipListView final : public QWidget {
    Q_OBJECT

public:
    /// clips must outlive the view.
    ClipListView(ListedClips& clips, QuickClipRowView::KindColor kindColor,
                 QWidget* parent = nullptr);

    /// What scrolls; without a bar it shows the style's own.
    [[nodiscard]] QAbstractScrollArea& scrollArea();
    /// Bounds the list's height; what is left below stays empty.
    void setListHeight(int height);

Q_SIGNALS:
    /// Return on the selected row.
    void chosen(const QUuid& clip);
    void clicked(const QUuid& clip);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void rememberSelection();
    void showRefreshed();
    [[nodiscard]] bool handleKey(int key);
    void select(int row);
    void moveBy(int rows);
    [[nodiscard]] int rowsPerPage() const;
    void applyColors();

    ListedClips& m_clips;
    QLineEdit* m_search;
    QListView* m_list;
    QLabel* m_empty;
    QUuid m_selected;  ///< Before the rows became other ones.
};

}  // namespace quillo
