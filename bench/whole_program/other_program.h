// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>

#include "platform/x11/xcb_support.h"
#include "whole_program/samples.h"

namespace quillo::bench {

/// A well-behaved program with a window: it copies, answers every request at once, and notes when
/// it was asked and when the paste key reached it. Has a thread of its own; members may be used
/// from any thread.
class OtherProgram final {
public:
    OtherProgram();
    ~OtherProgram();
    OtherProgram(const OtherProgram&) = delete;
    OtherProgram& operator=(const OtherProgram&) = delete;

    /// Takes CLIPBOARD with one target; texts are offered under the usual two names.
    Moment copyText(const QByteArray& text);
    Moment copyPng(const QByteArray& png);

    /// Of the latest copy.
    [[nodiscard]] std::optional<Moment> firstRequest();
    [[nodiscard]] int requestCount();
    /// Where Control-V arrived after that moment; waits at most a second.
    [[nodiscard]] std::optional<Moment> pasteKeyAfter(Moment moment);

private:
    Moment copy(QList<QByteArray> targets, const QByteArray& bytes);
    void makeWindow();
    void run(const std::stop_token& stop);
    void handle(const xcb_generic_event_t& event);
    void answer(const xcb_selection_request_event_t& request);

    x11::Connection m_connection;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    x11::AtomTable m_atoms;
    xcb_window_t m_window = 0;
    QList<QByteArray> m_targets;
    QByteArray m_bytes;
    std::optional<Moment> m_firstRequest;
    int m_requests = 0;
    Moment m_pasteKey;
    std::jthread m_thread;  // Last: it uses everything above.
};

}  // namespace quillo::bench
