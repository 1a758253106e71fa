// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <functional>

#include "base/unique_fd.h"

class QSocketNotifier;

namespace quillo {

/// Turns SIGTERM, SIGINT and SIGHUP into a call on the main thread, so that the program ends in
/// order. Make it before any other thread: threads inherit the blocked signals.
class TerminationSignals final : public QObject {
    Q_OBJECT

public:
    explicit TerminationSignals(std::function<void()> handler, QObject* parent = nullptr);

private:
    UniqueFd m_signals;
    QSocketNotifier* m_notifier = nullptr;
};

}  // namespace quillo
