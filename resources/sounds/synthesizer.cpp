// SPDX-License-Identifier: MIT
#include "synthesizer.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <random>

namespace quillo::sounds {
namespace {

constexpr double kPeak = 0.251;  // -12 dB
constexpr double kFullScale = 32'767;
constexpr double kReleaseMs = 18;
constexpr double kTurn = 2 * std::numbers::pi;

double secondsOf(double milliseconds) {
    return milliseconds / 1'000;
}

std::size_t samplesOf(double milliseconds) {
    return static_cast<std::size_t>(secondsOf(milliseconds) * kSampleRate);
}

// Half a cosine from 0 to 1: a slope without corners, so that nothing clicks.
double slope(double elapsed, double length) {
    return elapsed >= length ? 1 : (1 - std::cos(std::numbers::pi * elapsed / length)) / 2;
}

double loudness(const Voice& voice, double time) {
    const double left = secondsOf(voice.lengthMs) - time;
    const double tremble =
        1 - voice.trembleDepth * (1 + std::cos(kTurn * voice.trembleHz * time)) / 2;
    return voice.level * tremble * std::exp(-time / secondsOf(voice.fadeMs)) *
           slope(time, secondsOf(voice.attackMs)) * slope(left, secondsOf(kReleaseMs));
}

double frequency(const Voice& voice, double time) {
    const double share = time / secondsOf(voice.lengthMs);
    const double to = voice.toHz > 0 ? voice.toHz : voice.fromHz;
    const double glide = voice.fromHz * std::pow(to / voice.fromHz, share);
    return glide * (1 + voice.vibratoDepth * std::sin(kTurn * voice.vibratoHz * time));
}

double toneAt(Wave wave, double phase) {
    if (wave == Wave::Reed) {
        return std::sin(phase) + std::sin(3 * phase) / 9 + std::sin(5 * phase) / 25;
    }
    return std::sin(phase);
}

/// Noise through a resonance that follows a frequency (a two-pole filter).
class Breath final {
public:
    double next(double hz) {
        constexpr double kSharpness = 0.985;
        const double input = double(m_random()) / double(std::minstd_rand::max()) - 0.5;
        const double turn = 2 * kSharpness * std::cos(kTurn * hz / kSampleRate);
        const double output = input + turn * m_last - kSharpness * kSharpness * m_beforeLast;
        m_beforeLast = m_last;
        m_last = output;
        return output * (1 - kSharpness) * 4;
    }

private:
    std::minstd_rand m_random{1};  // NOLINT: the sound is the same every time
    double m_last = 0;
    double m_beforeLast = 0;
};

void add(const Voice& voice, std::vector<double>& mix) {
    const std::size_t start = samplesOf(voice.startMs);
    const std::size_t count = samplesOf(voice.lengthMs);
    mix.resize(std::max(mix.size(), start + count));
    Breath breath;
    double phase = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const double time = double(i) / kSampleRate;
        const double hz = frequency(voice, time);
        phase += kTurn * hz / kSampleRate;
        const double wave =
            voice.wave == Wave::Breath ? breath.next(hz) : toneAt(voice.wave, phase);
        mix[start + i] += wave * loudness(voice, time);
    }
}

}  // namespace

std::vector<std::int16_t> render(const Sound& sound) {
    std::vector<double> mix;
    for (const Voice& voice : sound.voices) {
        add(voice, mix);
    }
    double peak = 0;
    for (const double sample : mix) {
        peak = std::max(peak, std::abs(sample));
    }
    std::vector<std::int16_t> samples(mix.size());
    std::transform(mix.begin(), mix.end(), samples.begin(), [peak](double sample) {
        return static_cast<std::int16_t>(std::lround(sample / peak * kPeak * kFullScale));
    });
    return samples;
}

}  // namespace quillo::sounds
