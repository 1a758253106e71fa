// SPDX-License-Identifier: MIT
#include "capture/capture_sound.h"

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

constexpr double kDefaultVolume = 0.4;

constexpr std::array<std::pair<CaptureSound, QLatin1StringView>, 15> kRawValues = {{
    {CaptureSound::None, "none"_L1},
    {CaptureSound::Tink, "Tink"_L1},
    {CaptureSound::Pop, "Pop"_L1},
    {CaptureSound::Glass, "Glass"_L1},
    {CaptureSound::Purr, "Purr"_L1},
    {CaptureSound::Hero, "Hero"_L1},
    {CaptureSound::Morse, "Morse"_L1},
    {CaptureSound::Ping, "Ping"_L1},
    {CaptureSound::Submarine, "Submarine"_L1},
    {CaptureSound::Blow, "Blow"_L1},
    {CaptureSound::Frog, "Frog"_L1},
    {CaptureSound::Basso, "Basso"_L1},
    {CaptureSound::Bottle, "Bottle"_L1},
    {CaptureSound::Funk, "Funk"_L1},
    {CaptureSound::Sosumi, "Sosumi"_L1},
}};

constexpr auto kCases = [] {
    std::array<CaptureSound, kRawValues.size()> cases{};
    std::ranges::transform(kRawValues, cases.begin(), [](const auto& row) { return row.first; });
    return cases;
}();

}  // namespace

template <>
std::span<const CaptureSound> allCases<CaptureSound>() {
    return kCases;
}

QString rawValue(CaptureSound sound) {
    return kRawValues[size_t(std::to_underlying(sound))].second;
}

std::optional<CaptureSound> captureSoundFromRaw(const QString& raw) {
    const auto* found =
        std::ranges::find_if(kRawValues, [&raw](const auto& row) { return row.second == raw; });
    return found == kRawValues.end() ? std::nullopt : std::optional(found->first);
}

CaptureSounds::CaptureSounds(const UserDefaults& defaults, SoundPlayer& player,
                             NotificationCenter& notifications, QObject* parent)
    : QObject(parent), m_defaults(defaults), m_player(player) {
    notifications.observe(kClipSavedNotification, this, [this] { clipWasSaved(); });
}

void CaptureSounds::play(CaptureSound sound) {
    if (sound == CaptureSound::None) {
        return;
    }
    const double volume = m_defaults.real(u"captureSoundVolume"_s).value_or(kDefaultVolume);
    m_player.play(rawValue(sound), float(std::clamp(volume, 0.0, 1.0)));
}

void CaptureSounds::clipWasSaved() {
    const QString chosen =
        m_defaults.string(u"captureSound"_s).value_or(rawValue(CaptureSound::Frog));
    if (const auto sound = captureSoundFromRaw(chosen)) {
        play(*sound);
    }
}

}  // namespace quillo
