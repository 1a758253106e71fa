// SPDX-License-Identifier: MIT
#pragma once

#include <QRegion>
#include <functional>
#include <utility>

#include "platform/panel_surface.h"

namespace quillo::testing {

/// Records what the panel asks of its display server.
class FakePanelSurface final : public PanelSurface {
public:
    void prepare(QWindow& /*window*/, quint32 userTime) override { lastUserTime = userTime; }
    void setBlurRegion(QWindow& /*window*/, const QRegion& region) override { blurred = region; }
    void takeFocus(QWindow& /*window*/, quint32 /*userTime*/) override { ++focusRequests; }
    void release(QWindow& /*window*/) override { ++releases; }
    [[nodiscard]] bool isCompositing() const override { return m_isCompositing; }
    void setCompositingListener(std::function<void()> listener) override {
        m_listener = std::move(listener);
    }

    void setCompositing(bool isCompositing) {
        m_isCompositing = isCompositing;
        m_listener();
    }

    quint32 lastUserTime = 0;
    QRegion blurred;
    int focusRequests = 0;
    int releases = 0;

private:
    bool m_isCompositing = false;
    std::function<void()> m_listener;
};

}  // namespace quillo::testing
