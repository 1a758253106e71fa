// SPDX-License-Identifier: MIT
// What the built sounds are like: short, quiet, without clicks, and no two alike.
#include <gtest/gtest.h>

#include <QFile>
#include <QHash>
#include <QStringList>
#include <QtEndian>
#include <algorithm>
#include <cmath>
#include <vector>

#include "platform/sound/qt_sound_player.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

constexpr int kSampleRate = 44'100;
const QStringList kNames =
    u"Tink Pop Glass Purr Hero Morse Ping Submarine Blow Frog Basso Bottle Funk Sosumi"_s.split(
        u' ');

using Samples = std::vector<double>;

// Follows every sound: players lose what is in their buffers at the end.
constexpr std::size_t kSilenceAfter = kSampleRate * 3 / 10;

/// The samples from -1 to 1; empty for what is no WAV file of 44.1 kHz, one channel, 16 bits.
Samples readFile(const QString& name) {
    QFile file(u":/sounds/"_s + name + u".wav"_s);
    constexpr qsizetype kHeaderBytes = 44;
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    const QByteArray bytes = file.readAll();
    const auto number = [&bytes]<typename T>(qsizetype at, T) {
        return qFromLittleEndian<T>(bytes.constData() + at);
    };
    const bool isRight = bytes.size() > kHeaderBytes && bytes.startsWith("RIFF") &&
                         number(4, quint32()) + 8 == bytes.size() &&
                         bytes.sliced(8, 8) == "WAVEfmt " && number(20, quint16()) == 1 &&
                         number(22, quint16()) == 1 && number(24, quint32()) == kSampleRate &&
                         number(34, quint16()) == 16 && bytes.sliced(36, 4) == "data" &&
                         number(40, quint32()) + kHeaderBytes == bytes.size();
    Samples samples;
    for (qsizetype at = kHeaderBytes; isRight && at + 1 < bytes.size(); at += 2) {
        samples.push_back(number(at, qint16()) / 32'768.0);
    }
    return samples;
}

double loudest(Samples::const_iterator from, Samples::const_iterator to) {
    double peak = 0;
    for (auto sample = from; sample != to; ++sample) {
        peak = std::max(peak, std::abs(*sample));
    }
    return peak;
}

/// What is heard of the file; empty when no silence follows it.
Samples readSound(const QString& name) {
    Samples samples = readFile(name);
    const std::size_t heard = samples.size() - std::min(samples.size(), kSilenceAfter);
    const bool isSilent = loudest(samples.begin() + std::ptrdiff_t(heard), samples.end()) == 0;
    samples.resize(isSilent ? heard : 0);
    return samples;
}

/// How alike two sounds are, from 0 to 1, at the shift within 20 ms that fits best.
double likeness(const Samples& one, const Samples& other) {
    constexpr std::ptrdiff_t kMostShift = kSampleRate / 50;
    const auto energy = [](const Samples& samples) {
        double sum = 0;
        for (const double sample : samples) {
            sum += sample * sample;
        }
        return sum;
    };
    double best = 0;
    for (std::ptrdiff_t shift = -kMostShift; shift <= kMostShift; shift += 16) {
        double sum = 0;
        for (std::ptrdiff_t i = std::max<std::ptrdiff_t>(0, -shift);
             i < std::ssize(one) && i + shift < std::ssize(other); ++i) {
            sum += one[size_t(i)] * other[size_t(i + shift)];
        }
        best = std::max(best, std::abs(sum));
    }
    return best / std::sqrt(energy(one) * energy(other));
}

class Sounds : public ::testing::Test {
protected:
    void SetUp() override {
        for (const QString& name : kNames) {
            m_sounds.insert(name, readSound(name));
            ASSERT_FALSE(m_sounds[name].empty()) << name.toStdString();
        }
    }

    QtSoundPlayer m_player;  ///< Brings the sounds along.
    QHash<QString, Samples> m_sounds;
};

TEST_F(Sounds, AreShortAndQuietAndBeginAndEndSoftly) {
    constexpr auto kMillisecond = std::ptrdiff_t(kSampleRate / 1'000);
    for (const QString& name : kNames) {
        const Samples& sound = m_sounds[name];
        const double lengthMs = 1'000.0 * double(sound.size()) / kSampleRate;
        EXPECT_GE(lengthMs, 80) << name.toStdString();
        EXPECT_LE(lengthMs, 400) << name.toStdString();
        const double peakDb = 20 * std::log10(loudest(sound.begin(), sound.end()));
        EXPECT_NEAR(peakDb, -12, 0.1) << name.toStdString();
        // Nothing that would be heard as a click: both ends are silent, no two samples far apart.
        EXPECT_LT(loudest(sound.begin(), sound.begin() + kMillisecond / 4), 0.01)
            << name.toStdString();
        EXPECT_LT(loudest(sound.end() - kMillisecond, sound.end()), 0.003) << name.toStdString();
        double mean = 0;
        for (const double sample : sound) {
            mean += sample / double(sound.size());
        }
        EXPECT_LT(std::abs(mean), 0.005) << name.toStdString();
    }
}

TEST_F(Sounds, NoTwoAreAlike) {
    for (qsizetype i = 0; i < kNames.size(); ++i) {
        for (qsizetype j = 0; j < i; ++j) {
            EXPECT_LT(likeness(m_sounds[kNames[i]], m_sounds[kNames[j]]), 0.6)
                << kNames[i].toStdString() << ' ' << kNames[j].toStdString();
        }
    }
}

}  // namespace
}  // namespace quillo
