// SPDX-License-Identifier: MIT
// One card of each kind, and the six that a panel shows, painted into a picture.
#include <benchmark/benchmark.h>

#include <QPainter>

#include "bench_support.h"
#include "library/thumbnails/card_painter.h"

using namespace Qt::StringLiterals;

namespace quillo::bench {
namespace {

constexpr QSize kCard(280, 240);
constexpr int kGap = 12;

struct Face {
    CardContent card;
    CardState state;
};

QPixmap picture(QSize size, qreal scale) {
    QPixmap pixmap = QPixmap::fromImage(photo((QSizeF(size) * scale).toSize()));
    pixmap.setDevicePixelRatio(scale);
    return pixmap;
}

StyledText document() {
    StyledText text{textOf(7, 600), {}};
    for (qsizetype start = 0; start < text.text.size(); start += 50) {
        TextStyle style;
        style.bold = start % 100 == 0;
        style.italic = start % 150 == 0;
        style.foreground = QColor::fromHsv(int(start) % 360, 200, 120);
        text.runs.append({start, 50, style});
    }
    return text;
}

Face faceOf(CardPreview preview, qreal scale) {
    Face face;
    face.card.clip = QUuid::createUuid();
    face.card.preview = preview;
    face.card.kindLabel = u"Rich Text"_s;
    face.card.symbol = icon(FilterType::RichText);
    face.card.body = textOf(1, 700);
    face.card.title = textOf(2, 60);
    face.card.address = u"https://www.example.org/a/long/address"_s;
    face.card.swatch = QColor(Qt::darkCyan);
    face.card.source = u"Text Editor"_s;
    face.card.detail = u"20,000 characters"_s;
    face.card.sizeText = u"842 KB"_s;
    face.card.isPinned = true;
    face.state.index = 3;
    face.state.age = u"12 min"_s;
    face.state.picture.sourceIcon = picture({18, 18}, scale);
    if (preview == CardPreview::Image) {
        face.state.picture.thumbnail = picture({280, 168}, scale);
        face.state.picture.imageSize = kScreen;
    } else if (preview == CardPreview::Link) {
        face.state.picture.thumbnail = picture({280, 112}, scale);
    } else if (preview == CardPreview::File) {
        face.state.picture.thumbnail = picture({150, 110}, scale);
    } else if (preview == CardPreview::RichText) {
        face.state.picture.richText = std::make_shared<StyledText>(document());
    }
    return face;
}

constexpr CardPreview kPreviews[] = {CardPreview::Text, CardPreview::Swatch,
                                     CardPreview::Link, CardPreview::Image,
                                     CardPreview::File, CardPreview::RichText};

/// A row of cards with the canvas that they are painted into.
class Row final {
public:
    Row(std::span<const CardPreview> previews, qreal scale)
        : m_canvas((QSizeF(qreal(previews.size()) * (kCard.width() + kGap), kCard.height()) * scale)
                       .toSize(),
                   QImage::Format_RGB32) {
        m_canvas.setDevicePixelRatio(scale);
        for (const CardPreview preview : previews) {
            m_faces.append(faceOf(preview, scale));
        }
    }

    void paint(const CardPainter& cardPainter) {
        QPainter painter(&m_canvas);
        QRect place(QPoint(), kCard);
        for (const Face& face : m_faces) {
            cardPainter.paint(painter, place, face.card, face.state);
            place.translate(kCard.width() + kGap, 0);
        }
    }

private:
    QImage m_canvas;
    QList<Face> m_faces;
};

void eachKind(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgNames({"kind", "scale"})
        ->ArgsProduct({{0, 1, 2, 3, 4, 5}, {1, 2}})
        ->Unit(benchmark::kMicrosecond);
}

void bothScales(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgName("scale")->Arg(1)->Arg(2)->Unit(benchmark::kMicrosecond);
}

QFont cardFont() {
    return QFont(u"Inter"_s);
}

void repaintOne(benchmark::State& state) {
    startQt();
    Row row({&kPreviews[state.range(0)], 1}, double(state.range(1)));
    const CardPainter painter(PanelLook(), cardFont());
    for (auto _ : state) {
        row.paint(painter);
    }
}
BENCHMARK(repaintOne)->Apply(eachKind);

void repaintSix(benchmark::State& state) {
    startQt();
    Row row(kPreviews, double(state.range(0)));
    const CardPainter painter(PanelLook(), cardFont());
    for (auto _ : state) {
        row.paint(painter);
    }
}
BENCHMARK(repaintSix)->Apply(bothScales);

// With every text laid out anew.
void firstPaintOfSix(benchmark::State& state) {
    startQt();
    Row row(kPreviews, double(state.range(0)));
    for (auto _ : state) {
        row.paint(CardPainter(PanelLook(), cardFont()));
    }
}
BENCHMARK(firstPaintOfSix)->Apply(bothScales);

}  // namespace
}  // namespace quillo::bench

BENCHMARK_MAIN();
