// SPDX-License-Identifier: MIT
#pragma once

#include <QSocketNotifier>
#include <memory>

#include "platform/panel_surface.h"
#include "platform/x11/xcb_support.h"

namespace quillo::x11 {

/// The panel under X11: a managed window on all desktops that asks for the focus with the time of
/// the key press, as the Extended Window Manager Hints want it, so that window managers that
/// guard the focus grant it. A compositor is known by its selection (_NET_WM_CM_Sn).
class X11PanelSurface final : public PanelSurface {
public:
    [[nodiscard]] static Result<std::unique_ptr<X11PanelSurface>> create(
        const QByteArray& displayName = {});
    ~X11PanelSurface() override;

    void prepare(QWindow& window, quint32 userTime) override;
    void setBlurRegion(QWindow& window, const QRegion& region) override;
    void takeFocus(QWindow& window, quint32 userTime) override;
    void release(QWindow& window) override;
    [[nodiscard]] bool isCompositing() const override { return m_isCompositing; }
    void setCompositingListener(std::function<void()> listener) override;

private:
    explicit X11PanelSurface(Connection connection);
    void watchCompositor();
    void readEvents();
    [[nodiscard]] bool compositorRuns();

    Connection m_connection;
    AtomTable m_atoms;
    xcb_atom_t m_compositorSelection = XCB_ATOM_NONE;
    bool m_isCompositing = false;
    std::function<void()> m_listener;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

}  // namespace quillo::x11
