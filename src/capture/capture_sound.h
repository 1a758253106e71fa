// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>
#include <optional>

#include "base/all_cases.h"
#include "platform/notification_center.h"
#include "platform/sound_player.h"
#include "platform/user_defaults.h"

namespace quillo {

/// The sounds that can confirm a saved clip, in the order in which they are offered.
enum class CaptureSound {
    None,
    Tink,
    Pop,
    Glass,
    Purr,
    Hero,
    Morse,
    Ping,
    Submarine,
    Blow,
    Frog,
    Basso,
    Bottle,
    Funk,
    Sosumi,
};

template <>
[[nodiscard]] std::span<const CaptureSound> allCases<CaptureSound>();

/// What the settings hold, which is also the sound's name ("Frog"); "none" for None.
[[nodiscard]] QString rawValue(CaptureSound sound);

/// The case with exactly that raw value; none for any other text.
[[nodiscard]] std::optional<CaptureSound> captureSoundFromRaw(const QString& raw);

/// Confirms each saved clip with the sound and the volume of the settings ("captureSound",
/// "captureSoundVolume"), read anew each time; a clip that only moves to the front is not
/// confirmed. Main thread.
class CaptureSounds final : public QObject {
    Q_OBJECT

public:
    /// Everything must outlive the object.
    CaptureSounds(const UserDefaults& defaults, SoundPlayer& player,
                  NotificationCenter& notifications, QObject* parent = nullptr);

    /// Plays one sound at the volume of the settings, also to try it out; nothing for None.
    void play(CaptureSound sound);

private:
    void clipWasSaved();

    const UserDefaults& m_defaults;
    SoundPlayer& m_player;
};

}  // namespace quillo
