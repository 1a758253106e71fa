// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QRect>
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>

#include "platform/panel_surface.h"

namespace quillo {

/// A small window beside the status item that goes away when the person turns to something else,
/// or presses Escape. It is made anew each time. Main thread.
class Popover final : public QObject {
    Q_OBJECT

public:
    static constexpr QSize kSize{400, 500};

    /// Makes what is inside; it has the popover's size.
    using MakeContent = std::function<std::unique_ptr<QWidget>()>;

    /// surface must outlive the popover.
    Popover(PanelSurface& surface, MakeContent makeContent, QObject* parent = nullptr);
    ~Popover() override;

    [[nodiscard]] bool isShown() const { return m_window != nullptr; }
    /// Whether it lost the focus so short a time ago that a click on the status item, which may
    /// have taken it, is meant to close it.
    [[nodiscard]] bool wasJustDismissed() const;

    /// Shows it at the anchor, or at the pointer where there is none.
    void present(const std::optional<QRect>& anchor);
    void dismiss();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    PanelSurface& m_surface;
    MakeContent m_makeContent;
    std::unique_ptr<QWidget> m_window;
    QElapsedTimer m_sinceFocusLoss;
};

/// Where a popover goes: centred below the anchor, above it where there is no room below, moved as
/// far as it takes to be whole within the screen's area.
[[nodiscard]] QRect popoverFrame(const QRect& anchor, const QSize& size, const QRect& area);

}  // namespace quillo
