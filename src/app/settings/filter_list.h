// SPDX-License-Identifier: MIT
#pragma once

#include <QBasicTimer>
#include <QList>
#include <QPoint>
#include <QPointer>
#include <QWidget>

#include "model/filter_type.h"

class QScrollArea;

namespace quillo {

class ClipTypeColorManager;
class FilterRow;

/// The filters in the order of their chips, each with a switch. A row is moved by dragging it or
/// with Alt-Up and Alt-Down; Up and Down go from switch to switch. What is dragged is stored when
/// it is let go, and not when Escape ends it; near the edge of a page the page scrolls.
class FilterList final : public QWidget {
    Q_OBJECT

public:
    /// The manager must outlive the list.
    explicit FilterList(ClipTypeColorManager& manager, QWidget* parent = nullptr);

    /// In the order shown, which a drag changes before it is stored.
    [[nodiscard]] const QList<FilterRow*>& rows() const { return m_rows; }

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void showOrder();
    void showVisibility();
    void place();
    void moveRow(qsizetype from, qsizetype to);
    bool focusRow(qsizetype index);
    void reveal(FilterRow& row);
    [[nodiscard]] qsizetype focusedIndex() const;
    [[nodiscard]] QScrollArea* enclosingPage() const;
    void dragTo(const QPoint& pointer);
    void endDrag();

    ClipTypeColorManager& m_manager;
    QList<FilterRow*> m_rows;
    QPointer<FilterRow> m_pressed;
    QPoint m_grabbed;  ///< Where on the pressed row the pointer took it.
    QPoint m_pointer;  ///< On the screen.
    bool m_isDragging = false;
    QBasicTimer m_scrolling;
};

}  // namespace quillo
