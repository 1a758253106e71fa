// SPDX-License-Identifier: MIT
#include "library/window/clip_grid_scroller.h"

#include <QScrollBar>
#include <algorithm>

namespace quillo {
namespace {

constexpr int kPullIntervalMs = 16;
constexpr int kEdge = 40;
constexpr int kDepthPerPixel = 3;
constexpr int kFarthestPull = 60;

}  // namespace

ClipGridScroller::ClipGridScroller(QScrollBar& bar) : m_bar(bar) {
    connect(&m_glide, &Glide::moved, &bar, &QScrollBar::setValue);
    connect(&bar, &QScrollBar::sliderPressed, &m_glide, &Glide::stop);
    m_pull.setInterval(kPullIntervalMs);
    connect(&m_pull, &QTimer::timeout, this, [this] { jumpTo(m_bar.value() + m_pullStep); });
}

void ClipGridScroller::jumpTo(int position) {
    m_glide.stop();
    m_bar.setValue(position);
}

void ClipGridScroller::glideBy(int pixels) {
    m_glide.start(m_bar.value(), pixels, m_bar.minimum(), m_bar.maximum());
}

void ClipGridScroller::shiftBy(int pixels) {
    const int left = m_glide.left(m_bar.value());
    jumpTo(m_bar.value() + pixels);
    if (left != 0) {
        glideBy(left);
    }
}

// The farther, the faster.
void ClipGridScroller::pull(int y, int height) {
    const int above = kEdge - y;
    const int below = y - (height - 1 - kEdge);
    const int depth = above > 0 ? -above : std::max(0, below);
    m_pullStep = std::clamp(depth / kDepthPerPixel, -kFarthestPull, kFarthestPull);
    if (m_pullStep == 0) {
        m_pull.stop();
    } else if (!m_pull.isActive()) {
        m_pull.start();
    }
}

void ClipGridScroller::endPull() {
    m_pull.stop();
}

}  // namespace quillo
