// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include "appearance/panel_look.h"
#include "overlay/clip_strip.h"
#include "overlay/overlay_bar.h"

namespace quillo {

/// What is inside the panel: the bar, the strip of cards and the line of key hints, on a ground
/// with round corners. A drag by the ground moves the panel unless it is locked.
class OverlayView final : public QWidget {
    Q_OBJECT

public:
    /// Everything must outlive the view.
    OverlayView(const OverlayClips& clips, ImageThumbnails& thumbnails, const Clock& clock,
                QWidget* parent = nullptr);

    [[nodiscard]] ClipStrip& strip() { return *m_strip; }
    [[nodiscard]] OverlayBar& bar() { return *m_bar; }

    /// Back to how it looks when it is first shown.
    void reset();
    void setLook(const PanelLook& look);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void paintHints(QPainter& painter) const;

    OverlayBar* m_bar;
    ClipStrip* m_strip;
    Palette m_colors = PanelLook().palette();
};

}  // namespace quillo
