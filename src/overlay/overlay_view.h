// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include "appearance/panel_look.h"
#include "overlay/clip_strip.h"
#include "overlay/hints_line.h"
#include "overlay/overlay_bar.h"
#include "overlay/panel_keys.h"

namespace quillo {

/// What is inside the panel: the bar, the strip of cards and the line of key hints, on a ground
/// with round corners. A drag by the ground moves the panel unless it is locked.
class OverlayView final : public QWidget {
    Q_OBJECT

public:
    /// Everything must outlive the view.
    OverlayView(const OverlayClips& clips, CardPictures& pictures, const Clock& clock,
                QWidget* parent = nullptr);

    [[nodiscard]] ClipStrip& strip() { return *m_strip; }
    [[nodiscard]] OverlayBar& bar() { return *m_bar; }
    [[nodiscard]] HintsLine& hints() { return *m_hints; }

    /// Back to how it looks when it is first shown.
    void reset();
    void setLook(const PanelLook& look, TypeBadges::KindColor kindColor);

    /// Which part has the keyboard.
    [[nodiscard]] PanelFocus focus() const;
    /// Moves the focus to the control beside the focused one, around the ends.
    void focusBesideControl(int direction);
    /// Presses the control that has the focus.
    void pressFocusedControl();

protected:
    void paintEvent(QPaintEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    [[nodiscard]] QList<QWidget*> tabStops() const;

    OverlayBar* m_bar;
    ClipStrip* m_strip;
    HintsLine* m_hints;
    Palette m_colors = PanelLook().palette();
};

}  // namespace quillo
