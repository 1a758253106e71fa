// SPDX-License-Identifier: MIT
// The strip of cards, painted into a picture: the work of the program without a display server.
#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QWheelEvent>

#include "bench_support.h"
#include "library/thumbnails/card_pictures.h"
#include "overlay/clip_strip.h"
#include "overlay/overlay_clips.h"
#include "platform/images/qt_image_codec.h"
#include "platform/text/document_reader.h"
#include "support/fake_thumbnail_service.h"
#include "support/fake_workspace.h"

namespace quillo::bench {
namespace {

constexpr qsizetype kClips = 1'000;

/// The strip on a kept store, with every picture of its cards at hand.
class Strip final {
public:
    explicit Strip(int width)
        : m_persistence(m_copy.options()),
          m_clips(m_persistence, m_workspace),
          m_pictures(
              {m_codec, m_documents, m_files, m_workspace, storedBytesLoader(m_persistence)}),
          m_strip(m_clips, m_pictures, m_clock),
          m_canvas(width, StripLayout::kHeight, QImage::Format_RGB32) {
        m_strip.resize(width, StripLayout::kHeight);
        m_clips.refresh();
        for (int card = 0; card < OverlayClips::kMaxVisibleClips; ++card) {
            m_strip.selectCard(card);
            paint();
            waitForPictures();
        }
        m_strip.reset();
    }

    void paint() { m_strip.render(&m_canvas); }

    /// A card further to the right, from the end back to the start.
    void scroll() {
        const int before = m_strip.scrollPosition();
        turnWheel(-StripLayout::kCardWidth);
        if (m_strip.scrollPosition() == before) {
            m_strip.reset();
        }
    }

    void refresh() { m_clips.refresh(); }

private:
    void turnWheel(int pixels) {
        QWheelEvent event(QPointF(), QPointF(), QPoint(pixels, 0), QPoint(), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&m_strip, &event);
    }

    void waitForPictures() { QCoreApplication::processEvents(QEventLoop::AllEvents, 5); }

    StoreCopy m_copy{kClips};
    SystemClock m_clock;
    testing::FakeWorkspace m_workspace;
    QtImageCodec m_codec;
    DocumentReader m_documents;
    testing::FakeThumbnailService m_files;
    PersistenceController m_persistence;
    OverlayClips m_clips;
    CardPictures m_pictures;
    ClipStrip m_strip;
    QImage m_canvas;
};

void bothWidths(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgName("width")->Arg(1440)->Arg(2560)->Unit(benchmark::kMillisecond);
}

// Lists the clips, lays the cards out and paints them.
void firstPaint(benchmark::State& state) {
    startQt();
    Strip strip(int(state.range(0)));
    for (auto _ : state) {
        strip.refresh();
        strip.paint();
    }
}
BENCHMARK(firstPaint)->Apply(bothWidths);

void repaint(benchmark::State& state) {
    startQt();
    Strip strip(int(state.range(0)));
    for (auto _ : state) {
        strip.paint();
    }
}
BENCHMARK(repaint)->Apply(bothWidths);

void scrollStep(benchmark::State& state) {
    startQt();
    Strip strip(int(state.range(0)));
    double longest = 0;
    for (auto _ : state) {
        const auto begin = std::chrono::steady_clock::now();
        strip.scroll();
        strip.paint();
        const std::chrono::duration<double, std::milli> took =
            std::chrono::steady_clock::now() - begin;
        longest = std::max(longest, took.count());
    }
    state.counters["longest_ms"] = longest;
}
BENCHMARK(scrollStep)->Apply(bothWidths);

// A picture for a card, at the size that the strip asks for.
void decodeThumbnail(benchmark::State& state) {
    startQt();
    const QtImageCodec codec;
    const QByteArray png = *codec.encodePng(state.range(0) == 0 ? screenshot() : photo());
    for (auto _ : state) {
        benchmark::DoNotOptimize(codec.decodeScaled(png, QSize(560, 560)));
    }
}
BENCHMARK(decodeThumbnail)->ArgName("photo")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quillo::bench

BENCHMARK_MAIN();
