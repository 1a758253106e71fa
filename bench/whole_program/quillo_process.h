// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <QByteArray>
#include <QHash>
#include <QString>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "base/unique_fd.h"
#include "whole_program/samples.h"

namespace quillo::bench {

/// The program under measurement, as a person's session starts it, with the moments at which the
/// lines of its log arrive. What it uses is read from /proc (proc(5)).
class QuilloProcess final {
public:
    /// Starts it and waits until its hotkey is registered and its watcher runs.
    explicit QuilloProcess(const QString& program);
    /// Ends it in order and waits for that.
    ~QuilloProcess();
    QuilloProcess(const QuilloProcess&) = delete;
    QuilloProcess& operator=(const QuilloProcess&) = delete;

    [[nodiscard]] double startMs() const { return m_startMs; }

    /// When the first log line with that text arrived after the moment; waits at most ten seconds.
    [[nodiscard]] std::optional<Moment> logged(const QByteArray& text, Moment after);

    [[nodiscard]] double residentMegabytes() const;
    /// Of all its threads since the start.
    [[nodiscard]] double cpuSeconds() const;
    /// How often each of its living threads has been woken, by the thread's number.
    [[nodiscard]] QHash<QString, qint64> wakeUps() const;

private:
    struct Line {
        Moment arrived;
        QByteArray text;
    };

    void readLog();

    UniqueFd m_log;
    pid_t m_process = 0;
    double m_startMs = 0;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<Line> m_lines;
    std::jthread m_reader;  // Last: it uses everything above.
};

}  // namespace quillo::bench
