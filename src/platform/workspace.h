// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>
#include <QString>
#include <QStringList>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace quillo {

/// A program with a window on the desktop, as it was when asked.
struct RunningApplication {
    quint32 windowId = 0;      ///< The display server's identifier of its window; 0 for none.
    qint64 processId = 0;      ///< 0 when unknown.
    QString windowClass;       ///< WM_CLASS class (or app id), as given by the program.
    QString windowInstance;    ///< WM_CLASS instance.
    QString bundleIdentifier;  ///< The desktop entry's id without ".desktop"; empty when none.
    QString localizedName;     ///< The desktop entry's name; empty when none.
};

/// What is known of an installed program.
struct InstalledApplication {
    QString bundleIdentifier;
    QString name;      ///< Localised.
    QString iconName;  ///< A themed icon's name or an absolute path; may be empty.
    QStringList categories;
};

/// Being told of each change of the active window; destroying it ends that.
class ActivationWatch {
public:
    virtual ~ActivationWatch() = default;
};

/// The programs on the desktop. Thread-safe. Answers come from the display server and from the
/// desktop entries (freedesktop Desktop Entry Specification), never from the programs, so a
/// program that hangs costs nothing.
class Workspace {
public:
    virtual ~Workspace() = default;

    /// The program whose window is active; none when there is none. While a window named with
    /// ignoreWindow is active, the program that was active before it. Well under a millisecond
    /// once the desktop entries are indexed.
    [[nodiscard]] virtual std::optional<RunningApplication> frontmostApplication() = 0;

    /// Marks a window of ours (the panel) that never counts as a program in front.
    virtual void ignoreWindow(quint32 windowId) = 0;

    /// Where the program's window lies on the desktop, in the display server's pixels; none when
    /// it is gone.
    [[nodiscard]] virtual std::optional<QRect> frame(const RunningApplication& application) = 0;

    /// Asks the window manager to bring the program's window to the front. Returns at once.
    virtual void activate(const RunningApplication& application) = 0;

    /// Calls back on the calling thread's event loop, with true as soon as the program's window
    /// has the keyboard focus, or with false when the deadline passed first. A later call
    /// replaces a pending one, whose callback is then never run.
    virtual void whenFocused(const RunningApplication& application,
                             std::chrono::milliseconds deadline,
                             std::function<void(bool)> callback) = 0;

    /// Calls back on the calling thread's event loop whenever another window has become the
    /// active one. Costs wake-ups as long as the watch lives; null where the desktop cannot tell.
    [[nodiscard]] virtual std::unique_ptr<ActivationWatch> watchActivation(
        std::function<void()> changed) = 0;

    /// The desktop entry of that identifier; none when no such program is installed.
    [[nodiscard]] virtual std::optional<InstalledApplication> installedApplication(
        const QString& bundleIdentifier) = 0;
};

}  // namespace quillo
