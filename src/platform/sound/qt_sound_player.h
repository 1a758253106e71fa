// SPDX-License-Identifier: MIT
#pragma once

#include <QThread>
#include <functional>

#include "platform/sound_player.h"

namespace quillo {

/// Plays the sounds that lie in the program (":/sounds") with Qt Multimedia, whose first contact
/// with the sound server waits. A thread of its own, begun with the first sound, does that; the
/// last sound is heard to its end only while the player lives. At most eight sounds at a time are
/// heard; one more is left out, and so is every one while there is no sound server.
class QtSoundPlayer final : public SoundPlayer {
public:
    /// threadHangs is called by the destructor when the sound server has not answered the thread
    /// for half a second: it cannot be ended then, and static objects of Qt Multimedia must not be
    /// destroyed, so that the call should end the process. If it returns, or is empty, the
    /// destructor waits.
    explicit QtSoundPlayer(std::function<void()> threadHangs = {});
    ~QtSoundPlayer() override;

    void play(const QString& name, float volume) override;

private:
    /// Lives on the thread.
    class Worker;

    std::function<void()> m_threadHangs;
    Worker* m_worker = nullptr;  ///< Dies with the thread.
    QThread m_thread;
};

}  // namespace quillo
