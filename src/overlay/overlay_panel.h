// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

namespace quillo {

/// The floating window of the overlay: frameless, above everything, round corners; translucent
/// outside them where a compositor runs, cut to shape where none does. Can be dragged by its
/// ground while it is movable.
class OverlayPanel final : public QWidget {
    Q_OBJECT

public:
    enum class Corners { Blended, Cut };

    explicit OverlayPanel(Corners corners);

    void setContent(QWidget* content);
    void setMovable(bool isMovable) { m_isMovable = isMovable; }
    [[nodiscard]] bool isMovable() const { return m_isMovable; }

    /// What is inside the round corners.
    [[nodiscard]] const QRegion& shape() const { return m_shape; }

Q_SIGNALS:
    /// The person moved the panel.
    void dragged();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    Corners m_corners;
    QRegion m_shape;
    bool m_isMovable = false;
    bool m_isDragging = false;
    QPoint m_grip;
};

}  // namespace quillo
