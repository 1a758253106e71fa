// SPDX-License-Identifier: MIT
#include "platform/images/png_encoder.h"

#include <gtest/gtest.h>

#include <QColorSpace>

namespace quillo::testing {
namespace {

using namespace Qt::StringLiterals;

enum class Content { Drawn, Photo, Clear };

struct PictureCase {
    const char* name;
    QImage::Format format;
    QSize size;
    Content content;
    QImage::Format readBack;
};

QRgb pixelOf(Content content, int x, int y) {
    const auto noise = static_cast<quint32>(x * 2654435761U ^ y * 40503U) >> 7;
    switch (content) {
        case Content::Drawn:
            return x / 9 % 2 == y / 5 % 2 ? qRgb(250, 250, 250) : qRgb(20, 60, 120);
        case Content::Photo:
            return qRgb(int(noise % 200), int(noise / 200 % 200), int(noise / 40000 % 200));
        case Content::Clear:
            return qRgba(x % 256, y % 256, 77, (x + y) % 256);
    }
    return 0;
}

QImage picture(const PictureCase& row) {
    QImage image(row.size, QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            image.setPixel(x, y, pixelOf(row.content, x, y));
        }
    }
    return image.convertToFormat(row.format);
}

const PictureCase kPngPictureRows[] = {
    {"Drawn", QImage::Format_RGB32, {301, 77}, Content::Drawn, QImage::Format_RGB32},
    {"DrawnInStrips", QImage::Format_RGB32, {801, 1500}, Content::Drawn, QImage::Format_RGB32},
    {"PhotoInStrips", QImage::Format_RGB888, {801, 1500}, Content::Photo, QImage::Format_RGB32},
    {"OnePixel", QImage::Format_RGB32, {1, 1}, Content::Photo, QImage::Format_RGB32},
    {"OneColumn", QImage::Format_RGB32, {1, 999}, Content::Photo, QImage::Format_RGB32},
    {"Alpha", QImage::Format_ARGB32, {300, 200}, Content::Clear, QImage::Format_ARGB32},
    {"OpaqueAlphaIsLeftOut",
     QImage::Format_ARGB32_Premultiplied,
     {300, 200},
     Content::Drawn,
     QImage::Format_RGB32},
    {"Gray", QImage::Format_Grayscale8, {300, 200}, Content::Photo, QImage::Format_Grayscale8},
    {"Palette", QImage::Format_Indexed8, {300, 200}, Content::Drawn, QImage::Format_Indexed8}};

TEST(PngPicture, ComesBackAsItWas) {
    for (const PictureCase& row : kPngPictureRows) {
        SCOPED_TRACE(row.name);
        const QImage image = picture(row);
        const auto png = encodePngQuickly(image);
        ASSERT_TRUE(png.has_value());
        const QImage read = QImage::fromData(*png, "PNG");
        ASSERT_FALSE(read.isNull());
        EXPECT_EQ(read.format(), row.readBack);
        EXPECT_EQ(read.convertToFormat(QImage::Format_ARGB32),
                  image.convertToFormat(QImage::Format_ARGB32));
        EXPECT_EQ(encodePngQuickly(image).value_or(QByteArray()), *png);
    }
}

TEST(PngEncoder, LeavesMetadataOut) {
    QImage image(20, 20, QImage::Format_RGB32);
    image.fill(Qt::red);
    const auto plain = encodePngQuickly(image);
    image.setText(u"Comment"_s, u"taken at home"_s);
    image.setDotsPerMeterX(1234);
    ASSERT_TRUE(plain.has_value());
    EXPECT_EQ(encodePngQuickly(image).value_or(QByteArray()), *plain);
}

TEST(PngEncoder, TurnsAWideGamutIntoTheStandardOne) {
    QImage image(4, 4, QImage::Format_RGB32);
    image.fill(qRgb(200, 100, 50));
    image.setColorSpace(QColorSpace(QColorSpace::DisplayP3));
    const QImage wanted = image.convertedToColorSpace(QColorSpace(QColorSpace::SRgb));
    ASSERT_NE(wanted.pixel(1, 1), image.pixel(1, 1));
    const auto png = encodePngQuickly(image);
    ASSERT_TRUE(png.has_value());
    EXPECT_EQ(QImage::fromData(*png, "PNG").pixel(1, 1), wanted.pixel(1, 1));
}

// Guards against dark values that move when a program names sRGB by primaries and gamma alone.
TEST(PngEncoder, KeepsTheValuesOfStandardPrimariesWithTheUsualGamma) {
    const auto encoded = [](float gamma) {
        QImage image(4, 4, QImage::Format_RGB32);
        image.fill(qRgb(58, 123, 213));
        image.setColorSpace(QColorSpace({0.3127, 0.329}, {0.64, 0.33}, {0.3, 0.6}, {0.15, 0.06},
                                        QColorSpace::TransferFunction::Gamma, gamma));
        return QImage::fromData(encodePngQuickly(image).value_or(QByteArray()), "PNG").pixel(1, 1);
    };
    EXPECT_EQ(encoded(2.2F), qRgb(58, 123, 213));
    EXPECT_NE(encoded(1.0F), qRgb(58, 123, 213));
}

}  // namespace
}  // namespace quillo::testing
