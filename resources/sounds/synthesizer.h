// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace quillo::sounds {

inline constexpr int kSampleRate = 44'100;

enum class Wave {
    Sine,
    Reed,    ///< Odd partials that fall off fast, like a soft clarinet.
    Breath,  ///< Noise around the frequency.
};

/// One thing that is heard within a sound: a tone or a breath that glides, trembles and fades.
struct Voice {
    Wave wave = Wave::Sine;
    double startMs = 0;
    double lengthMs = 0;
    double fromHz = 0;
    double toHz = 0;  ///< 0 stays at fromHz.
    double level = 1;
    double fadeMs = 1'000;  ///< The time in which it falls to a third.
    double attackMs = 4;
    double trembleHz = 0;     ///< How often its loudness goes up and down.
    double trembleDepth = 0;  ///< From 0 to 1.
    double vibratoHz = 0;
    double vibratoDepth = 0;  ///< Share of the frequency.
};

struct Sound {
    std::string name;
    std::vector<Voice> voices;
};

/// The sound as 16-bit samples, its loudest one at -12 dB of full scale. The same on every run.
[[nodiscard]] std::vector<std::int16_t> render(const Sound& sound);

/// The fourteen sounds that can confirm a capture.
[[nodiscard]] std::vector<Sound> captureSounds();

}  // namespace quillo::sounds
