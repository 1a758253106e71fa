// SPDX-License-Identifier: MIT
// From what a program offers to the stored clip, without a display server: reading, decoding,
// encoding, the digest and the commit.
#include <benchmark/benchmark.h>

#include <utility>

#include "bench_support.h"
#include "capture/clip_saver.h"
#include "capture/pasteboard_snapshot.h"
#include "platform/images/qt_image_codec.h"
#include "platform/text/document_reader.h"
#include "support/memory_user_defaults.h"

namespace quillo::bench {
namespace {

using testing::MemoryUserDefaults;

/// One target with its bytes, as a program that answers at once.
class OneTarget final : public PasteboardSource {
public:
    OneTarget(QByteArray target, QByteArray bytes)
        : m_target(std::move(target)), m_bytes(std::move(bytes)) {}

    [[nodiscard]] qint64 changeCount() const override { return 1; }
    [[nodiscard]] QList<QByteArray> targets() override { return {m_target}; }
    [[nodiscard]] std::optional<RawReply> fetch(const QByteArray& target) override {
        return target == m_target ? std::optional(RawReply{m_target, m_bytes}) : std::nullopt;
    }
    [[nodiscard]] bool wasSuperseded() const override { return false; }

private:
    QByteArray m_target;
    QByteArray m_bytes;
};

class Capture final {
public:
    explicit Capture(qsizetype clips) : m_copy(clips), m_persistence(m_copy.options()) {}

    /// Returns when it is stored.
    bool store(const QByteArray& target, const QByteArray& bytes) {
        PasteboardReading reading(std::make_unique<OneTarget>(target, bytes));
        const PasteboardSnapshot snapshot =
            PasteboardSnapshotReader(reading, m_codec).readSnapshot();
        if (snapshot.imageData) {
            m_saver.saveImageClip(*snapshot.imageData, {}, {});
        } else if (!snapshot.plainText || !m_saver.saveTextClip(*snapshot.plainText, {})) {
            return false;
        }
        m_persistence.waitUntilIdle();
        return true;
    }

private:
    StoreCopy m_copy;
    SystemClock m_clock;
    MemoryUserDefaults m_defaults;
    NotificationCenter m_notifications;
    DocumentReader m_documents;
    QtImageCodec m_codec;
    PersistenceController m_persistence;
    ClipSaver m_saver{{m_persistence, m_defaults, m_notifications, m_documents, m_clock}};
};

void captureText(benchmark::State& state) {
    startQt();
    Capture capture(10'000);
    qint64 number = 10'000'000;
    for (auto _ : state) {
        state.PauseTiming();
        const QByteArray text = textOf(++number, state.range(0)).toUtf8();
        state.ResumeTiming();
        if (!capture.store("UTF8_STRING", text)) {
            return state.SkipWithError("not stored");
        }
    }
}
BENCHMARK(captureText)
    ->ArgName("characters")
    ->Arg(200)
    ->Arg(1'000'000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

void capturePng(benchmark::State& state) {
    startQt();
    Capture capture(10'000);
    QImage image = state.range(0) == 0 ? screenshot() : photo();
    int number = 0;
    for (auto _ : state) {
        state.PauseTiming();
        // Another picture each time, or it would be a duplicate.
        ++number;
        image.setPixel(number % image.width(), 0, qRgb(number % 256, number / 256 % 256, 7));
        const QByteArray png = QtImageCodec().encodePng(image).value_or(QByteArray());
        state.ResumeTiming();
        if (!capture.store("image/png", png)) {
            return state.SkipWithError("not stored");
        }
    }
}
BENCHMARK(capturePng)
    ->ArgName("photo")
    ->Arg(0)
    ->Arg(1)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

}  // namespace
}  // namespace quillo::bench

BENCHMARK_MAIN();
