// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class QAbstractScrollArea;
class QScrollBar;

namespace quillo {

/// A thin bar above the right edge of what scrolls up and down; takes no room from it, and is not
/// there when everything is seen. Dragged by the pointer; a press beside the thumb goes a page on.
class PageScrollBar final : public QWidget {
    Q_OBJECT

public:
    /// A child of the area, which hides its own bar.
    explicit PageScrollBar(QAbstractScrollArea& area);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void followRange();
    [[nodiscard]] QRectF thumb() const;

    QScrollBar* m_bar;
    qreal m_grabbed = -1;  ///< Where on the thumb the pointer holds it; negative is not.
};

}  // namespace quillo
