// SPDX-License-Identifier: MIT
#include "app/status/save_animation.h"

namespace quillo {
namespace {

using std::chrono::milliseconds;

constexpr int kSteps = 8;
constexpr milliseconds kCheckMarkAt{250};
constexpr milliseconds kBackAt{550};
constexpr milliseconds kOverAt{600};

}  // namespace

SaveAnimation::SaveAnimation(Scheduler after, Show show)
    : m_after(std::move(after)), m_show(std::move(show)) {}

void SaveAnimation::play(const StatusPicture& picture) {
    if (m_isAnimating) {
        return;
    }
    m_isAnimating = true;
    m_picture = picture;
    for (int step = 1; step <= kSteps; ++step) {
        const milliseconds elapsed = kBounceDuration * step / kSteps;
        at(elapsed, [this, elapsed] { showStep(elapsed); });
    }
    at(kBackAt, [this] { m_show(std::nullopt); });
    at(kOverAt, [this] { m_isAnimating = false; });
}

void SaveAnimation::showStep(milliseconds elapsed) {
    m_picture.frame = dropBounceAt(elapsed);
    if (elapsed >= kCheckMarkAt) {
        m_picture.symbol = QStringLiteral("checkmark.circle.fill");
    }
    m_show(m_picture);
}

void SaveAnimation::at(milliseconds delay, std::function<void()> step) {
    m_after(delay, [alive = std::weak_ptr(m_alive), step = std::move(step)] {
        if (!alive.expired()) {
            step();
        }
    });
}

}  // namespace quillo
