// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "app/status/status_bar_icon.h"

namespace quillo {

/// Runs a function once after a delay, on the main thread.
using Scheduler = std::function<void(std::chrono::milliseconds, std::function<void()>)>;

/// The status item's answer to a saved clip: its drawing drops and bounces, in eight steps, turns
/// into a check mark on the way and back. Main thread.
class SaveAnimation final {
public:
    /// show is given each picture; none when the status item's own is to be back.
    using Show = std::function<void(const std::optional<StatusPicture>&)>;

    SaveAnimation(Scheduler after, Show show);

    /// One that comes while another runs is passed over. picture is what is shown at rest.
    void play(const StatusPicture& picture);
    [[nodiscard]] bool isAnimating() const { return m_isAnimating; }

private:
    void showStep(std::chrono::milliseconds elapsed);
    void at(std::chrono::milliseconds delay, std::function<void()> step);

    Scheduler m_after;
    Show m_show;
    StatusPicture m_picture;
    bool m_isAnimating = false;
    std::shared_ptr<int> m_alive = std::make_shared<int>();  ///< Steps outlive nothing.
};

}  // namespace quillo
