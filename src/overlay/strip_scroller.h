// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include "library/groups/glide.h"

namespace quillo {

/// Where the strip is scrolled to, in logical pixels from its start. A finger or a thumb is
/// followed at once; the notches of a wheel are glided over. Main thread.
class StripScroller final : public QObject {
    Q_OBJECT

public:
    explicit StripScroller(QObject* parent = nullptr);

    [[nodiscard]] int position() const { return m_position; }

    /// The farthest position; a position beyond it moves back there.
    void setLimit(int limit);
    /// Goes there without animation and ends a glide.
    void jumpTo(int position);
    /// Follows a movement of the content at once.
    void scrollBy(int pixels);
    /// Moves smoothly. Further notches add to where the glide was going.
    void glideBy(int pixels);

Q_SIGNALS:
    void moved();

private:
    void moveTo(int position);

    int m_position = 0;
    int m_limit = 0;
    Glide m_glide;
};

}  // namespace quillo
