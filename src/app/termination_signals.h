// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <functional>

#include "base/unique_fd.h"

class QSocketNotifier;

namespace quillo {

/// Turns SIGTERM, SIGINT and SIGHUP into a call on the main thread, so that the program ends in
/// order. Made when there is an application, without which Qt watches no descriptor.
class TerminationSignals final : public QObject {
    Q_OBJECT

public:
    /// Call it before any thread starts, the application's own included: threads inherit the
    /// blocked signals. One that comes between this and the constructor is not lost.
    static void block();

    explicit TerminationSignals(std::function<void()> handler, QObject* parent = nullptr);

private:
    UniqueFd m_signals;
    QSocketNotifier* m_notifier = nullptr;
};

}  // namespace quillo
