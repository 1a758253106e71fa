// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QTimer>

#include "library/groups/glide.h"

class QScrollBar;

namespace quillo {

/// Moves a scroll bar: a finger or a thumb is followed at once, the notches of a wheel are glided
/// over. Main thread.
class ClipGridScroller final : public QObject {
    Q_OBJECT

public:
    /// The bar must outlive this.
    explicit ClipGridScroller(QScrollBar& bar);

    /// Goes there without animation and ends a glide.
    void jumpTo(int position);
    /// Moves smoothly. Further notches add to where the glide was going.
    void glideBy(int pixels);
    /// The content moved beneath what is seen: a glide goes on from there.
    void shiftBy(int pixels);
    /// Scrolls on while something is dragged at an edge or beyond it: y is the pointer's within a
    /// viewport of that height.
    void pull(int y, int height);
    void endPull();

private:
    QScrollBar& m_bar;
    Glide m_glide;
    QTimer m_pull;
    int m_pullStep = 0;
};

}  // namespace quillo
