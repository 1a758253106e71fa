// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <functional>
#include <memory>

#include "platform/workspace.h"
#include "platform/x11/xcb_support.h"

namespace quillo::x11 {

/// Follows _NET_ACTIVE_WINDOW (Extended Window Manager Hints) on a connection of its own and the
/// event loop of the thread that made it.
class ActiveWindowWatch final : public QObject, public ActivationWatch {
public:
    /// Null when there is no connection to be had.
    [[nodiscard]] static std::unique_ptr<ActiveWindowWatch> create(const QByteArray& displayName,
                                                                   std::function<void()> changed);

private:
    ActiveWindowWatch(Connection connection, std::function<void()> changed);

    void readEvents();

    Connection m_connection;
    xcb_atom_t m_activeWindow = XCB_ATOM_NONE;
    QSocketNotifier m_notifier;
    std::function<void()> m_changed;
};

}  // namespace quillo::x11
