// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QSet>
#include <QTimer>
#include <mutex>
#include <utility>

#include "platform/workspace.h"

namespace quillo::testing {

/// A desktop whose windows are values. frontmostApplication may be asked from any thread, the rest
/// belongs to the test's thread.
class FakeWorkspace final : public Workspace {
public:
    FakeWorkspace() {
        m_deadline.setSingleShot(true);
        m_deadline.callOnTimeout(&m_context, [this] { answer(false); });
    }

    [[nodiscard]] std::optional<RunningApplication> frontmostApplication() override {
        const std::lock_guard lock(m_mutex);
        const bool isIgnored = m_active && m_ignored.contains(m_active->windowId);
        return isIgnored ? m_before : m_active;
    }

    void ignoreWindow(quint32 windowId) override {
        const std::lock_guard lock(m_mutex);
        m_ignored.insert(windowId);
    }

    [[nodiscard]] std::optional<QRect> frame(const RunningApplication& application) override {
        const auto found = m_frames.constFind(application.windowId);
        return found == m_frames.cend() ? std::nullopt : std::optional(*found);
    }

    void activate(const RunningApplication& application) override {
        activated.append(application);
        if (activationWorks) {
            setActive(application);
        }
    }

    void whenFocused(const RunningApplication& application, std::chrono::milliseconds deadline,
                     std::function<void(bool)> callback) override {
        m_waitsFor = application.windowId;
        m_callback = std::move(callback);
        m_deadline.start(deadline);
        answerWaitSoon();
    }

    [[nodiscard]] std::unique_ptr<ActivationWatch> watchActivation(
        std::function<void()> changed) override {
        class Watch final : public ActivationWatch {
        public:
            Watch(FakeWorkspace& workspace, quint64 id) : m_workspace(workspace), m_id(id) {}
            ~Watch() override { m_workspace.m_watches.remove(m_id); }

        private:
            FakeWorkspace& m_workspace;
            quint64 m_id;
        };
        m_watches.insert(++m_lastWatch, std::move(changed));
        return std::make_unique<Watch>(*this, m_lastWatch);
    }
    [[nodiscard]] bool isWatched() const { return !m_watches.isEmpty(); }

    [[nodiscard]] std::optional<InstalledApplication> installedApplication(
        const QString& bundleIdentifier) override {
        const auto found = m_installed.constFind(bundleIdentifier);
        return found == m_installed.cend() ? std::nullopt : std::optional(*found);
    }

    /// Makes the program's window active and gives it the focus; none leaves no window active.
    void setActive(const std::optional<RunningApplication>& application) {
        {
            const std::lock_guard lock(m_mutex);
            if (m_active && !m_ignored.contains(m_active->windowId)) {
                m_before = m_active;
            }
            m_active = application;
        }
        answerWaitSoon();
        for (const auto watches = m_watches; const auto& changed : watches) {
            changed();
        }
    }

    void setFrame(quint32 windowId, const QRect& frame) { m_frames.insert(windowId, frame); }
    void install(const InstalledApplication& application) {
        m_installed.insert(application.bundleIdentifier, application);
    }

    QList<RunningApplication> activated;
    bool activationWorks = true;  ///< False for a window manager that refuses.

private:
    void answerWaitSoon() {
        QTimer::singleShot(0, &m_context, [this] {
            if (m_active && m_active->windowId == m_waitsFor) {
                answer(true);
            }
        });
    }

    void answer(bool hasFocus) {
        m_deadline.stop();
        if (const auto callback = std::exchange(m_callback, nullptr)) {
            callback(hasFocus);
        }
    }

    std::mutex m_mutex;
    std::optional<RunningApplication> m_active;
    std::optional<RunningApplication> m_before;
    QSet<quint32> m_ignored;
    QHash<quint32, QRect> m_frames;
    QHash<QString, InstalledApplication> m_installed;
    QObject m_context;
    QTimer m_deadline;
    quint32 m_waitsFor = 0;
    std::function<void(bool)> m_callback;
    QHash<quint64, std::function<void()>> m_watches;
    quint64 m_lastWatch = 0;
};

}  // namespace quillo::testing
