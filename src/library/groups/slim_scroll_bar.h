// SPDX-License-Identifier: MIT
#pragma once

#include <QScrollBar>

class QAbstractScrollArea;

namespace quillo {

/// A thin bar above the right edge of what scrolls up and down; takes no room from it, and is not
/// there when everything is seen. Dragged by the pointer; a press beside the thumb goes a page on.
/// In the quiet colour of its palette.
class SlimScrollBar final : public QScrollBar {
    Q_OBJECT

public:
    /// A child of the area, whose own bar it replaces for the eye and the pointer.
    explicit SlimScrollBar(QAbstractScrollArea& area);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void follow();
    void place();
    [[nodiscard]] QRectF thumb() const;

    QScrollBar& m_followed;
    qreal m_grabbed = 0;  ///< Where on the thumb the pointer holds it.
};

}  // namespace quillo
