// SPDX-License-Identifier: MIT
// Pictures as they are made for their places.
#include <gtest/gtest.h>

#include "library/thumbnails/picture_maker.h"
#include "library/thumbnails/rich_preview.h"
#include "platform/images/qt_image_codec.h"
#include "platform/text/document_reader.h"
#include "support/plain_converters.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

QImage plain(QSize size) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::darkGreen);
    return image;
}

TEST(PictureMaker, FillsAPlaceWithoutMakingABlurOfIt) {
    const QSize place(280, 168);
    const struct {
        const char* name;
        QSize image;
        qreal scale;
        QSize made;
    } rows[] = {
        {"wide enough", {1920, 1080}, 1, {280, 168}},  {"tall", {300, 5000}, 1, {280, 168}},
        {"half as large", {140, 90}, 1, {280, 168}},   {"an icon", {16, 16}, 1, {16, 16}},
        {"a line", {1000, 20}, 1, {280, 6}},           {"one pixel", {1, 1}, 1, {1, 1}},
        {"an icon at scale 2", {16, 16}, 2, {32, 32}}, {"a hair", {30000, 1}, 1, {280, 1}},
    };
    for (const auto& row : rows) {
        const QImage made = filling(plain(row.image), row.image, place * row.scale, row.scale);
        EXPECT_EQ(made.size(), row.made) << row.name;
    }
}

/// Pictures of one size; notes the bounds that a decode was asked for.
class NotingCodec final : public testing::PlainConverters {
public:
    Result<QSize> size(const QByteArray&) const override {
        return hasSizes ? Result<QSize>(kSize) : none();
    }
    Result<QImage> decodeScaled(const QByteArray&, QSize bounds) const override {
        asked = bounds;
        return plain(kSize.scaled(bounds, Qt::KeepAspectRatio));
    }

    static constexpr QSize kSize{4000, 3000};
    bool hasSizes = true;
    mutable QSize asked;
};

TEST(PictureMaker, DecodesNoMoreThanTwiceThePlaceAndKnowsTheTrueSize) {
    NotingCodec codec;
    const PictureMaker maker{codec, codec,
                             [](const QUuid&, ClipAttribute) { return QByteArray("picture"); }};
    PictureRequest request;
    request.pixels = QSize(200, 150);
    const PictureResult made = maker.make(request);
    EXPECT_EQ(codec.asked, QSize(400, 400));
    EXPECT_EQ(made.imageSize, NotingCodec::kSize);
    EXPECT_EQ(made.image.size(), QSize(200, 150));
    codec.hasSizes = false;
    const PictureResult unsized = maker.make(request);
    EXPECT_TRUE(unsized.imageSize.isEmpty());
    EXPECT_FALSE(unsized.image.isNull());
}

TEST(PictureMaker, GivesNothingForWhatCannotBeRead) {
    const QtImageCodec codec;
    const DocumentReader documents;
    for (const QByteArray& bytes :
         {QByteArray(), QByteArray("\x89PNG\r\n\x1a\n garbage"), QByteArray(100, '\xff')}) {
        const PictureMaker maker{codec, documents,
                                 [&](const QUuid&, ClipAttribute) { return bytes; }};
        for (const CardPreview preview :
             {CardPreview::Image, CardPreview::Link, CardPreview::RichText}) {
            PictureRequest request;
            request.preview = preview;
            request.kind = ClipType::Rtf;
            request.pixels = QSize(280, 112);
            const PictureResult made = maker.make(request);
            EXPECT_TRUE(made.image.isNull());
            EXPECT_FALSE(made.richText);
        }
    }
}

QColor foregroundAt(const StyledText& text, const QString& word, const Ground& ground,
                    const QColor& ink) {
    const qsizetype at = text.text.indexOf(word);
    QColor found = ink;
    for (const QTextLayout::FormatRange& range : cardFormats(text, ink, ground)) {
        if (at >= range.start && at < range.start + range.length &&
            range.format.hasProperty(QTextFormat::ForegroundBrush)) {
            found = range.format.foreground().color();
        }
    }
    return found;
}

TEST(RichPreview, EveryColourCanBeReadOnEveryCard) {
    const QByteArray html =
        "<body style='background:#ffffff;color:#000000'><p>ink <span style='color:#c00'>red</span> "
        "<span style='color:#00f'>blue</span> <span style='color:#ffff00'>yellow</span> <span "
        "style='background:#ff0;color:#fff'>marked</span></p></body>";
    const StyledText text = cutForCard(*DocumentReader().readHtml(html));
    for (const QColor& card : {QColor(0x3b, 0x46, 0x57), QColor(0xe3, 0xee, 0xff)}) {
        const QColor ink = luminance(card) < 0.2 ? Qt::white : Qt::black;
        for (const QString& word : {u"ink"_s, u"red"_s, u"blue"_s, u"yellow"_s}) {
            EXPECT_GE(contrastRatio(foregroundAt(text, word, {card}, ink), card), kTextContrast)
                << word.toStdString();
        }
        EXPECT_EQ(foregroundAt(text, u"ink"_s, {card}, ink), ink);
        EXPECT_NE(foregroundAt(text, u"red"_s, {card}, ink), ink);
        EXPECT_GE(contrastRatio(foregroundAt(text, u"marked"_s, {card}, ink), QColor(255, 255, 0)),
                  kTextContrast);
    }
}

TEST(RichPreview, PaperIsLeftOutAndMarkersStay) {
    const QColor dark(0x1e, 0x1e, 0x1e);
    const QColor yellow(0xff, 0xff, 0);
    const struct {
        const char* name;
        std::optional<QColor> first;
        std::optional<QColor> second;
        std::optional<QColor> kept;
    } rows[] = {
        {"one background under everything", dark, dark, std::nullopt},
        {"white behind one word", std::nullopt, Qt::white, std::nullopt},
        {"a marker", std::nullopt, yellow, yellow},
        {"a marker on paper", Qt::white, yellow, yellow},
    };
    for (const auto& row : rows) {
        StyledText text{u"one two"_s, {{0, 4, {}}, {4, 3, {}}}};
        text.runs[0].style.background = row.first;
        text.runs[1].style.background = row.second;
        const StyledText cut = cutForCard(text);
        EXPECT_EQ(cut.runs.at(0).style.background, std::nullopt) << row.name;
        EXPECT_EQ(cut.runs.at(1).style.background, row.kept) << row.name;
    }
}

TEST(RichPreview, IsCutToWhatACardShows) {
    StyledText text{u"\n \n  first"_s + QString(100'000, u'x'), {}};
    text.runs = {{0, 4, {}}, {4, text.text.size() - 4, {}}};
    text.runs[1].style.bold = true;
    const StyledText cut = cutForCard(text);
    EXPECT_TRUE(cut.text.startsWith(u"  first"_s));
    EXPECT_LT(cut.text.size(), 1000);
    ASSERT_EQ(cut.runs.size(), 2);
    EXPECT_EQ(cut.runs.at(1).start + cut.runs.at(1).length, cut.text.size());
}

}  // namespace
}  // namespace quillo
