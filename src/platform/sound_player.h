// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace quillo {

/// Plays the short sounds that come with the program. Main thread; no call waits.
class SoundPlayer {
public:
    virtual ~SoundPlayer() = default;

    /// Starts the sound of that name at a volume from 0 (silent) to 1; sounds that are still
    /// playing play on. A name that is no sound, and a machine that cannot play, are silent.
    virtual void play(const QString& name, float volume) = 0;
};

}  // namespace quillo
