// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QThread>
#include <functional>
#include <mutex>
#include <optional>

#include "platform/path_monitor.h"

namespace quillo {

/// The state of the network as the desktop's network service tells it over the system bus
/// (org.freedesktop.NetworkManager, properties State and Connectivity); where there is no such
/// service, or it does not know, the kernel's routing table. A thread of its own, begun with the
/// first check, does the asking; the service is never started for it.
class NetworkPathMonitor final : public PathMonitor {
public:
    struct Options {
        QString busAddress;                   ///< Empty takes the system bus.
        std::function<bool()> hasRoute = {};  ///< Empty asks the kernel.
    };

    NetworkPathMonitor();
    explicit NetworkPathMonitor(Options options);
    ~NetworkPathMonitor() override;

    void check(std::chrono::milliseconds patience, Callback callback) override;

private:
    /// Lives on the thread.
    class Worker;

    [[nodiscard]] Worker* worker();

    Options m_options;
    std::mutex m_mutex;
    Worker* m_worker = nullptr;  ///< Dies with the thread; guarded by the mutex.
    QThread m_thread;
};

/// What the service's two numbers say; none where they decide nothing, such as for a network that
/// somebody else set up. A network whose pages are a log-in page counts as none.
[[nodiscard]] std::optional<bool> pathFromNetworkManager(uint state, uint connectivity);

}  // namespace quillo
