// SPDX-License-Identifier: MIT
#include "whole_program/quillo_process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <algorithm>
#include <array>
#include <csignal>
#include <ctime>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace quillo::bench {
namespace {

constexpr const char* kStarted = "applicationDidFinishLaunching completed";

/// The number behind a word at the start of a line of a file in /proc.
qint64 numberIn(const QString& path, const QByteArray& word) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return 0;
    }
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (line.startsWith(word)) {
            return line.sliced(word.size()).simplified().split(' ').constFirst().toLongLong();
        }
    }
    return 0;
}

pid_t startProgram(const QByteArray& path, int errors) {
    posix_spawn_file_actions_t actions{};
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, errors, STDERR_FILENO);
    QByteArray name = path;
    std::array<char*, 2> arguments = {name.data(), nullptr};
    pid_t process = 0;
    if (posix_spawn(&process, path.constData(), &actions, nullptr, arguments.data(), environ) !=
        0) {
        qFatal("Cannot start %s", path.constData());
    }
    posix_spawn_file_actions_destroy(&actions);
    return process;
}

}  // namespace

QuilloProcess::QuilloProcess(const QString& program) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        qFatal("No pipe");
    }
    m_log = UniqueFd(ends[0]);
    const UniqueFd errors(ends[1]);
    const Moment begin = std::chrono::steady_clock::now();
    m_process = startProgram(QFile::encodeName(program), errors.get());
    m_reader = std::jthread([this] { readLog(); });
    const auto started = logged(kStarted, begin);
    if (!started) {
        qFatal("The program did not start");
    }
    m_startMs = millisecondsBetween(begin, *started);
}

QuilloProcess::~QuilloProcess() {
    kill(m_process, SIGTERM);
    waitpid(m_process, nullptr, 0);
}

// Ends when the program has closed its end.
void QuilloProcess::readLog() {
    std::array<char, 4096> buffer{};
    QByteArray rest;
    ssize_t count = 0;
    while ((count = read(m_log.get(), buffer.data(), buffer.size())) > 0) {
        const Moment now = std::chrono::steady_clock::now();
        rest.append(buffer.data(), count);
        const std::lock_guard lock(m_mutex);
        for (qsizetype end = 0; (end = rest.indexOf('\n')) >= 0; rest.remove(0, end + 1)) {
            m_lines.push_back({now, rest.first(end)});
        }
        m_changed.notify_all();
    }
}

std::optional<Moment> QuilloProcess::logged(const QByteArray& text, Moment after) {
    std::unique_lock lock(m_mutex);
    std::optional<Moment> found;
    (void)m_changed.wait_for(lock, 10s, [&] {
        const auto line = std::ranges::find_if(m_lines, [&](const Line& one) {
            return one.arrived > after && one.text.contains(text);
        });
        if (line != m_lines.end()) {
            found = line->arrived;
        }
        return found.has_value();
    });
    return found;
}

double QuilloProcess::residentMegabytes() const {
    return double(numberIn(u"/proc/%1/status"_s.arg(m_process), "VmRSS:")) * 1024 / 1e6;
}

double QuilloProcess::cpuSeconds() const {
    clockid_t clock{};
    timespec used{};
    if (clock_getcpuclockid(m_process, &clock) != 0 || clock_gettime(clock, &used) != 0) {
        qFatal("The program's processor time cannot be read");
    }
    return double(used.tv_sec) + double(used.tv_nsec) / 1e9;
}

QHash<QString, qint64> QuilloProcess::wakeUps() const {
    const QString tasks = u"/proc/%1/task"_s.arg(m_process);
    QHash<QString, qint64> counts;
    for (const QString& thread : QDir(tasks).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        counts[thread] = numberIn(tasks + u'/' + thread + u"/status"_s, "voluntary_ctxt_switches:");
    }
    return counts;
}

}  // namespace quillo::bench
