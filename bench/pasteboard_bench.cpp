// SPDX-License-Identifier: MIT
// What other programs get: the offers of a write, and their bytes when they are asked for.
#include <benchmark/benchmark.h>

#include "bench_support.h"
#include "platform/images/qt_image_codec.h"
#include "platform/pasteboard_formats.h"
#include "platform/text/document_reader.h"

namespace quillo::bench {
namespace {

using namespace Qt::StringLiterals;

enum Kind { Text, Rtf, Html, Image, File };

PasteboardContents contentsOf(int64_t kind) {
    const QString text = textOf(1, kLongText);
    switch (kind) {
        case Rtf:
            return {.rtf = "{\\rtf1\\ansi " + text.toLatin1() + "}"};
        case Html:
            return {.html = "<p>" + text.toUtf8() + "</p>"};
        case Image:
            return {.image = *QtImageCodec().encodeJpeg(photo(), 0.85)};
        case File:
            return {.fileUrls = {QUrl(u"file:///home/person/report.pdf"_s)}};
        default:
            return {.text = text};
    }
}

void everyKind(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgName("kind")->DenseRange(Text, File)->Unit(benchmark::kMicrosecond);
}

void offer(benchmark::State& state) {
    startQt();
    const DocumentReader documents;
    const QtImageCodec codec;
    const PasteboardContents contents = contentsOf(state.range(0));
    for (auto _ : state) {
        benchmark::DoNotOptimize(offersFor(contents, {documents, codec}));
    }
}
BENCHMARK(offer)->Apply(everyKind);

void offerAndGiveAll(benchmark::State& state) {
    startQt();
    const DocumentReader documents;
    const QtImageCodec codec;
    const PasteboardContents contents = contentsOf(state.range(0));
    for (auto _ : state) {
        for (const PasteboardOffer& one : offersFor(contents, {documents, codec})) {
            benchmark::DoNotOptimize(one.reply->get());
        }
    }
}
BENCHMARK(offerAndGiveAll)->Apply(everyKind)->UseRealTime();

}  // namespace
}  // namespace quillo::bench

BENCHMARK_MAIN();
