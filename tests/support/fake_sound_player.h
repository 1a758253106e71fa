// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <utility>

#include "platform/sound_player.h"

namespace quillo::testing {

/// Notes what would be heard.
class FakeSoundPlayer final : public SoundPlayer {
public:
    void play(const QString& name, float volume) override { m_played.append({name, volume}); }

    [[nodiscard]] const QList<std::pair<QString, float>>& played() const { return m_played; }

private:
    QList<std::pair<QString, float>> m_played;
};

}  // namespace quillo::testing
