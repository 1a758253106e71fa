// SPDX-License-Identifier: MIT
// Rich documents and images, in the sizes that a capture meets. Synthetic data.
#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <cmath>
#include <random>

#include "platform/images/qt_image_codec.h"
#include "platform/text/document_reader.h"

namespace quillo {
namespace {

constexpr QSize kScreen(1920, 1080);

void startQt() {
    static int count = 1;
    static char name[] = "documents_bench";
    static char* arguments[] = {name, nullptr};
    [[maybe_unused]] static const bool isHeadless = qputenv("QT_QPA_PLATFORM", "offscreen");
    static QGuiApplication application(count, arguments);
}

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

QImage screenshot() {
    QImage image(kScreen, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    for (int line = 0; line < 60; ++line) {
        painter.setPen(QColor::fromHsv(line * 6, 200, 120));
        painter.drawText(
            10 + line % 3 * 600, 18 * line + 10,
            QStringLiteral("A line of text such as a window shows, number %1").arg(line));
    }
    QLinearGradient gradient(0, 0, kScreen.width(), 0);
    gradient.setColorAt(0, Qt::blue);
    gradient.setColorAt(1, Qt::red);
    painter.fillRect(QRect(0, 900, kScreen.width(), 180), gradient);
    return image;
}

QImage photo(QSize size) {
    QImage image(size, QImage::Format_RGB32);
    std::mt19937 random(1);
    std::normal_distribution<double> noise(0, 3);
    const auto channel = [&](double value) {
        return static_cast<int>(std::clamp(value + noise(random), 0.0, 255.0));
    };
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const double light =
                128 + 60 * std::sin(x / 97.0) + 40 * std::cos(y / 71.0 + x / 300.0);
            image.setPixel(x, y, qRgb(channel(light), channel(light * 0.8), channel(light * 0.6)));
        }
    }
    return image;
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
}  // namespace quillo

BENCHMARK_MAIN();
