// SPDX-License-Identifier: MIT
#pragma once

#include <QSet>
#include <memory>
#include <mutex>

#include "platform/application_index.h"
#include "platform/x11/desktop/focus_wait.h"
#include "platform/x11/desktop/window_queries.h"

namespace quillo::x11 {

/// The programs on an X11 desktop, asked on a connection of its own. whenFocused belongs to the
/// thread that made the object, everything else to any thread.
class X11Workspace final : public Workspace {
public:
    /// The index must outlive the workspace.
    [[nodiscard]] static Result<std::unique_ptr<X11Workspace>> create(
        ApplicationIndex& index, const QByteArray& displayName = {});

    [[nodiscard]] std::optional<RunningApplication> frontmostApplication() override;
    void ignoreWindow(quint32 windowId) override;
    [[nodiscard]] std::optional<QRect> frame(const RunningApplication& application) override;
    void activate(const RunningApplication& application) override;
    void whenFocused(const RunningApplication& application, std::chrono::milliseconds deadline,
                     std::function<void(bool)> callback) override;
    [[nodiscard]] std::unique_ptr<ActivationWatch> watchActivation(
        std::function<void()> changed) override;
    [[nodiscard]] std::optional<InstalledApplication> installedApplication(
        const QString& bundleIdentifier) override;

private:
    struct SeenWindow {
        xcb_window_t window = XCB_WINDOW_NONE;
        ProgramTraces traces;
    };

    X11Workspace(ApplicationIndex& index, Connection connection,
                 std::unique_ptr<FocusWait> focusWait, QByteArray displayName);

    // These expect the lock to be held.
    [[nodiscard]] std::optional<SeenWindow> frontWindow();
    [[nodiscard]] std::optional<SeenWindow> windowBehindIgnored();
    [[nodiscard]] xcb_timestamp_t serverTime();
    void requestActivation(xcb_window_t window);
    void focusDirectly(xcb_window_t window);
    void drainEvents();

    ApplicationIndex& m_index;
    std::mutex m_mutex;
    Connection m_connection;
    WindowQueries m_windows;
    xcb_window_t m_timeWindow = XCB_WINDOW_NONE;  ///< Never shown; its changes tell the time.
    QSet<quint32> m_ignored;
    xcb_window_t m_lastSeen = XCB_WINDOW_NONE;
    std::unique_ptr<FocusWait> m_focusWait;
    QByteArray m_displayName;
};

}  // namespace quillo::x11
