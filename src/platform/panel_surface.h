// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>
#include <functional>

class QRegion;
class QWindow;

namespace quillo {

/// What a display server must be told so that a frameless window of ours can float above
/// everything on all desktops and take the keyboard at once. Main thread.
class PanelSurface {
public:
    virtual ~PanelSurface() = default;

    /// Before the window is shown. It must have been created (have a window id). userTime is the
    /// display server's time of the key press that brings the window up; 0 when unknown.
    virtual void prepare(QWindow& window, quint32 userTime) = 0;

    /// Asks for what is behind that part of the window to be blurred, where the compositor can; in
    /// the window's logical coordinates, none for an empty region.
    virtual void setBlurRegion(QWindow& window, const QRegion& region) = 0;

    /// Right after the window was shown: asks for the focus.
    virtual void takeFocus(QWindow& window, quint32 userTime) = 0;

    /// Right before the window is hidden.
    virtual void release(QWindow& window) = 0;

    /// True when translucent windows are blended with what is behind them.
    [[nodiscard]] virtual bool isCompositing() const = 0;

    /// The one listener for changes of isCompositing.
    virtual void setCompositingListener(std::function<void()> listener) = 0;
};

}  // namespace quillo
