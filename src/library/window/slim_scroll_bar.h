// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractScrollArea>
#include <QScrollBar>

#include "library/window/library_look.h"

namespace quillo {

/// A narrow bar that lies over the right edge of a scroll area and takes no room from it; there
/// only while something can be scrolled. Belongs to the area, whose own bar it replaces for the
/// eye and the pointer.
class SlimScrollBar final : public QScrollBar {
    Q_OBJECT

public:
    explicit SlimScrollBar(QAbstractScrollArea& area);

    void setLook(const LibraryLook& look);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void follow();
    void place();

    QScrollBar& m_followed;
};

}  // namespace quillo
