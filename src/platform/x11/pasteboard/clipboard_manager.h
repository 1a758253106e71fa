// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "platform/x11/pasteboard/selection_server.h"

namespace quillo::x11 {

/// Plays the desktop's clipboard manager where there is none: programs that are about to quit
/// ask it to save what they have copied (freedesktop ClipboardManager). Lives on the
/// pasteboard's thread.
class ClipboardManager final {
public:
    /// What is known of the present copy when a program asks.
    enum class Saving {
        Done,     ///< It is kept, or is not the asking program's to lose.
        Refused,  ///< It is known that nothing is kept.
        Open,     ///< It is still being read; saved() or refuse() will follow.
    };
    using Ask = std::function<Saving()>;

    ClipboardManager(SelectionContext& context, TimeProbe& probe, SelectionServer& server,
                     const PasteboardLimits& limits, Ask ask);

    /// Takes the role if nobody has it.
    void start();
    /// Another program has the role now, or nobody has.
    void ownerChanged(xcb_window_t owner);
    [[nodiscard]] bool isOurs() const { return m_isOurs; }

    void requested(const xcb_selection_request_event_t& event);
    /// Answers every program that waits.
    void answerAll(bool isSaved);

    [[nodiscard]] std::optional<TimePoint> deadline() const;
    void expire();

private:
    struct Waiting {
        xcb_selection_request_event_t request{};
        TimePoint deadline;
    };

    void take(xcb_timestamp_t time);
    void announce(xcb_timestamp_t time);
    void answer(const xcb_selection_request_event_t& request, bool isSaved);
    void answerTargets(const xcb_selection_request_event_t& request);

    SelectionContext& m_context;
    TimeProbe& m_probe;
    SelectionServer& m_server;
    const PasteboardLimits m_limits;
    Ask m_ask;
    bool m_isOurs = false;
    std::vector<Waiting> m_waiting;
};

}  // namespace quillo::x11
