// SPDX-License-Identifier: MIT
// Rich documents and images, in the sizes that a capture meets. Synthetic data.
#include <benchmark/benchmark.h>

#include "bench_support.h"
#include "platform/images/qt_image_codec.h"
#include "platform/text/document_reader.h"

namespace quillo::bench {
namespace {

QByteArray rtfOfSize(qsizetype bytes) {
    QByteArray rtf =
        "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0\\fcharset0 Sans;}{\\f1\\fcharset204 Serif;}}";
    while (rtf.size() < bytes) {
        rtf +=
            "\\pard\\plain\\fs24 An ordinary line with {\\b bold} and {\\i italic} text, "
            "\\u8211\\'96 caf\\'e9 and {\\f1\\'cf\\'f0\\'e8}.\\par\r\n";
    }
    return rtf + "}";
}

QByteArray htmlOfSize(qsizetype bytes) {
    QByteArray html = "<html><body>";
    while (html.size() < bytes) {
        html +=
            "<p style=\"color: rgb(34, 34, 34); font-size: medium; white-space: normal\">An "
            "ordinary <b>line</b> with <a href=\"https://example.com/?a=1&amp;b=2\">a link</a> "
            "&ndash; and text that fills it up to a usual width.</p>\n<ul><li>item</li></ul>\n";
    }
    return html + "</body></html>";
}

void readRtf(benchmark::State& state) {
    const QByteArray rtf = rtfOfSize(state.range(0));
    for (auto _ : state) {
        benchmark::DoNotOptimize(DocumentReader().readRtf(rtf));
    }
}
BENCHMARK(readRtf)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

void readHtml(benchmark::State& state) {
    startQt();
    const QByteArray html = htmlOfSize(state.range(0));
    for (auto _ : state) {
        benchmark::DoNotOptimize(DocumentReader().readHtml(html));
    }
}
BENCHMARK(readHtml)->Arg(100'000)->Unit(benchmark::kMillisecond);

// The whole way of a picture through a capture: decoded, and encoded anew.
void normalisePng(benchmark::State& state) {
    startQt();
    const QtImageCodec codec;
    const QByteArray png = *codec.encodePng(state.range(0) == 0 ? screenshot() : photo(kScreen));
    for (auto _ : state) {
        benchmark::DoNotOptimize(codec.encodePng(*codec.decode(png)));
    }
    state.counters["kB"] = static_cast<double>(png.size()) / 1000;
}
BENCHMARK(normalisePng)
    ->ArgName("photo")
    ->Arg(0)
    ->Arg(1)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

void decodePng(benchmark::State& state) {
    startQt();
    const QtImageCodec codec;
    const QByteArray png = *codec.encodePng(state.range(0) == 0 ? screenshot() : photo(kScreen));
    for (auto _ : state) {
        benchmark::DoNotOptimize(codec.decode(png));
    }
}
BENCHMARK(decodePng)
    ->ArgName("photo")
    ->Arg(0)
    ->Arg(1)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

void decodeJpegToThumbnail(benchmark::State& state) {
    startQt();
    const QtImageCodec codec;
    const QByteArray jpeg = *codec.encodeJpeg(photo(QSize(4000, 3000)), 0.85);
    for (auto _ : state) {
        benchmark::DoNotOptimize(codec.decodeScaled(jpeg, QSize(560, 480)));
    }
}
BENCHMARK(decodeJpegToThumbnail)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
}  // namespace quillo::bench

BENCHMARK_MAIN();
