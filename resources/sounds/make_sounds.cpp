// SPDX-License-Identifier: MIT
// Writes the capture sounds as WAV files into the folder that is its argument.
#include <array>
#include <bit>
#include <cstdio>
#include <exception>
#include <fstream>
#include <string>

#include "synthesizer.h"

namespace {

using quillo::sounds::kSampleRate;

static_assert(std::endian::native == std::endian::little);

constexpr std::uint32_t kSampleBytes = 2;

template <typename Number>
void append(std::string& bytes, Number number) {
    const auto raw = std::bit_cast<std::array<char, sizeof(number)>>(number);
    bytes.append(raw.data(), raw.size());
}

// A player that stops when it has handed the last sample over loses what is still on its way to the
// ear: a tenth of a second and more. What it loses is silence.
constexpr std::size_t kSilenceAfter = kSampleRate * 3 / 10;

// RIFF WAVE, uncompressed, one channel.
std::string waveFile(const std::vector<std::int16_t>& samples) {
    constexpr std::uint32_t kHeaderBytes = 36;
    const auto dataBytes = std::uint32_t(samples.size()) * kSampleBytes;
    std::string bytes = "RIFF";
    append(bytes, kHeaderBytes + dataBytes);
    bytes += "WAVEfmt ";
    append(bytes, std::uint32_t{16});
    append(bytes, std::uint16_t{1});
    append(bytes, std::uint16_t{1});
    append(bytes, std::uint32_t{kSampleRate});
    append(bytes, std::uint32_t{kSampleRate} * kSampleBytes);
    append(bytes, std::uint16_t{kSampleBytes});
    append(bytes, std::uint16_t{8 * kSampleBytes});
    bytes += "data";
    append(bytes, dataBytes);
    for (const std::int16_t sample : samples) {
        append(bytes, sample);
    }
    return bytes;
}

bool writeAll(const std::string& folder) {
    for (const quillo::sounds::Sound& sound : quillo::sounds::captureSounds()) {
        std::ofstream file(folder + '/' + sound.name + ".wav", std::ios::binary);
        std::vector<std::int16_t> samples = quillo::sounds::render(sound);
        samples.resize(samples.size() + kSilenceAfter);
        file << waveFile(samples);
        if (!file.flush()) {
            std::fprintf(stderr, "%s cannot be written\n", sound.name.c_str());
            return false;
        }
    }
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: make_sounds FOLDER\n", stderr);
        return 2;
    }
    try {
        return writeAll(argv[1]) ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
