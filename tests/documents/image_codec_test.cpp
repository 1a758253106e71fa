// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QFile>

#include "platform/images/qt_image_codec.h"

namespace quillo::testing {
namespace {

using namespace Qt::StringLiterals;

QByteArray testImage(const char* name) {
    QFile file(QStringLiteral(QUILLO_TEST_DATA "/images/") + QString::fromUtf8(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name;
    return file.readAll();
}

bool isNear(QColor color, QColor wanted) {
    constexpr int kTolerance = 12;
    return std::abs(color.red() - wanted.red()) <= kTolerance &&
           std::abs(color.green() - wanted.green()) <= kTolerance &&
           std::abs(color.blue() - wanted.blue()) <= kTolerance;
}

// What the test images show: a green band above, red to the left and blue to the right below it.
const QColor kGreen(20, 160, 60);
const QColor kRed(200, 30, 40);
const QColor kBlue(30, 60, 200);

struct FormatCase {
    const char* name;
    const char* file;
    const char* mimeType;
    QSize size;
    bool isColored = true;
};

const FormatCase kImageFormatRows[] = {{"Png", "rgb.png", "image/png", {64, 40}},
                                       {"PngIndexed", "indexed.png", "image/png", {64, 40}},
                                       {"PngSixteenBit", "sixteen.png", "image/png", {64, 40}},
                                       {"PngGray", "gray.png", "image/png", {64, 40}, false},
                                       {"PngMono", "mono.png", "image/png", {64, 40}, false},
                                       {"PngAlpha", "alpha.png", "image/png", {64, 40}, false},
                                       {"Jpeg", "plain.jpg", "image/jpeg", {64, 40}},
                                       {"JpegTurned", "rotated.jpg", "image/jpeg", {40, 64}, false},
                                       {"WebP", "plain.webp", "image/webp", {64, 40}, false},
                                       {"Tiff", "plain.tiff", "image/tiff", {64, 40}},
                                       {"Gif", "two_frames.gif", "image/gif", {4, 2}, false},
                                       {"Bmp", "plain.bmp", "image/bmp", {64, 40}},
                                       {"Ico", "plain.ico", "image/vnd.microsoft.icon", {32, 20}},
                                       {"Heic", "plain.heic", "image/heic", {64, 40}, false},
                                       {"Avif", "plain.avif", "image/avif", {64, 40}, false}};

TEST(ImageFormat, IsRecognisedAndDecoded) {
    for (const FormatCase& row : kImageFormatRows) {
        SCOPED_TRACE(row.name);
        const QtImageCodec codec;
        const QByteArray bytes = testImage(row.file);
        EXPECT_EQ(codec.mimeType(bytes).toStdString(), row.mimeType);
        EXPECT_EQ(codec.size(bytes).value_or(QSize()), row.size);
        const auto image = codec.decode(bytes);
        ASSERT_TRUE(image.has_value()) << image.error().text.toStdString();
        EXPECT_EQ(image->size(), row.size);
        if (row.isColored) {
            const int bottom = image->height() * 2 / 5;
            EXPECT_TRUE(isNear(image->pixelColor(image->width() / 2, 1), kGreen));
            EXPECT_TRUE(isNear(image->pixelColor(3, bottom), kRed));
            EXPECT_TRUE(isNear(image->pixelColor(image->width() - 3, bottom), kBlue));
        }
        const auto half = codec.decodeScaled(bytes, QSize(row.size.width() / 2, 1000));
        EXPECT_EQ(half.value_or(QImage()).size(), row.size / 2);
        const auto same = codec.decodeScaled(bytes, row.size * 3);
        EXPECT_EQ(same.value_or(QImage()).size(), row.size) << "never scaled up";
    }
}

// Cut in the middle a file may still show its beginning, but must not upset the decoder.
TEST(ImageFormat, SurvivesTruncationAtEveryLength) {
    for (const FormatCase& row : kImageFormatRows) {
        SCOPED_TRACE(row.name);
        const QtImageCodec codec;
        const QByteArray bytes = testImage(row.file);
        const qsizetype step = std::max<qsizetype>(1, bytes.size() / 60);
        for (qsizetype length = 0; length < bytes.size(); length += step) {
            const auto image = codec.decode(bytes.first(length));
            if (image.has_value()) {
                EXPECT_EQ(image->size(), row.size) << length;
            } else {
                EXPECT_EQ(image.error().kind, ErrorKind::Malformed) << length;
            }
        }
    }
}

TEST(ImageCodec, TurnsAPictureUpright) {
    const QtImageCodec codec;
    const auto image = codec.decode(testImage("rotated.jpg"));
    ASSERT_TRUE(image.has_value());
    EXPECT_TRUE(isNear(image->pixelColor(38, 32), kGreen));
    EXPECT_TRUE(isNear(image->pixelColor(10, 3), kRed));
}

TEST(ImageCodec, TakesTheFirstFrameOfAnAnimation) {
    const auto image = QtImageCodec().decode(testImage("two_frames.gif"));
    ASSERT_TRUE(image.has_value());
    EXPECT_EQ(image->pixelColor(0, 0), QColor(255, 0, 0));
}

TEST(ImageCodec, ShowsTheColorsOfHeifPictures) {
    for (const char* name : {"plain.heic", "plain.avif"}) {
        const auto image = QtImageCodec().decode(testImage(name));
        ASSERT_TRUE(image.has_value()) << name;
        const QColor left = image->pixelColor(8, 28);
        const QColor right = image->pixelColor(56, 28);
        EXPECT_GT(left.red(), left.blue() + 80) << name;
        EXPECT_GT(right.blue(), right.red() + 80) << name;
    }
}

TEST(ImageCodec, RefusesPicturesBeyondTheBounds) {
    const QtImageCodec codec;
    const QByteArray bytes = testImage("huge.png");
    EXPECT_EQ(codec.size(bytes).error().kind, ErrorKind::TooLarge);
    EXPECT_EQ(codec.decode(bytes).error().kind, ErrorKind::TooLarge);
    EXPECT_EQ(codec.decodeScaled(bytes, QSize(10, 10)).error().kind, ErrorKind::TooLarge);
}

// Found by fuzzing: the header announced 4 by 2, the picture came out 33,773 high.
TEST(ImageCodec, RefusesAFrameOnAScreenBeyondTheBounds) {
    const auto image = QtImageCodec().decode(QByteArray::fromBase64(
        "R0lGODlhBO2DAIAAAP8AAAAA/yH5BAQKAAAALAAAAAAEAAIAAAIFBAAAAgVMmDBhUgA7"));
    ASSERT_FALSE(image.has_value());
    EXPECT_EQ(image.error().kind, ErrorKind::TooLarge);
}

// Found by fuzzing: a few hundred bytes announced 64 by 40, and the decoder made room for 16,384
// by 10,240.
TEST(ImageCodec, RefusesAGridBeyondTheAnnouncedSize) {
    constexpr qsizetype kOffsetOfTheGrid = 148;
    QByteArray bytes = testImage("plain.heic");
    bytes[kOffsetOfTheGrid] = 1;
    const auto image = QtImageCodec().decode(bytes);
    ASSERT_FALSE(image.has_value());
    EXPECT_EQ(image.error().kind, ErrorKind::TooLarge);
}

TEST(ImageCodec, KnowsWhatIsNoImage) {
    const QtImageCodec codec;
    for (const QByteArray& bytes :
         {QByteArray(), QByteArray("BM is how this text begins, and it goes on"),
          QByteArray("<svg xmlns='http://www.w3.org/2000/svg'/>"), QByteArray("RIFF....WAVEfmt "),
          QByteArray("\0\0\0\x18"
                     "ftypmp42\0\0\0\0mp42isom",
                     24),
          QByteArray("GIF8")}) {
        EXPECT_EQ(codec.mimeType(bytes), QString()) << bytes.toStdString();
        EXPECT_EQ(codec.decode(bytes).error().kind, ErrorKind::Malformed);
        EXPECT_EQ(codec.size(bytes).error().kind, ErrorKind::Malformed);
    }
}

TEST(ImageCodec, TellsHeifKindsApartByTheirBrands) {
    const auto brands = [](const QByteArray& list) {
        const auto size = static_cast<char>(8 + list.size());
        return QByteArray("\0\0\0", 3) + size + "ftyp" + list + QByteArray(16, '\0');
    };
    const QtImageCodec codec;
    EXPECT_EQ(codec.mimeType(brands("heic....mif1")), u"image/heic"_s);
    EXPECT_EQ(codec.mimeType(brands("mif1....heic")), u"image/heic"_s);
    EXPECT_EQ(codec.mimeType(brands("mif1....avif")), u"image/avif"_s);
    EXPECT_EQ(codec.mimeType(brands("mif1....miaf")), u"image/heif"_s);
    EXPECT_EQ(codec.mimeType(brands("mif1heic....")), u"image/heif"_s);
}

int g_messages = 0;

void countMessage(QtMsgType /*type*/, const QMessageLogContext& /*context*/,
                  const QString& /*text*/) {
    ++g_messages;
}

// The plugins warn about each marker that they do not understand; a hostile picture has thousands.
TEST(ImageCodec, CorruptPicturesLeaveTheLogAlone) {
    const QtImageCodec codec;
    g_messages = 0;
    const QtMessageHandler previous = qInstallMessageHandler(&countMessage);
    for (const char* name : {"rgb.png", "plain.jpg", "plain.webp", "plain.heic"}) {
        QByteArray bytes = testImage(name);
        for (qsizetype i = 300; i < bytes.size(); i += 7) {
            bytes[i] = static_cast<char>(bytes[i] ^ 0x5A);
        }
        static_cast<void>(codec.decode(bytes));
        static_cast<void>(codec.decode(bytes.first(bytes.size() * 2 / 3)));
    }
    qInstallMessageHandler(previous);
    EXPECT_EQ(g_messages, 0);
}

TEST(ImageCodec, JpegFollowsTheQualityAndPutsTransparencyOnWhite) {
    const QtImageCodec codec;
    QImage noise(64, 64, QImage::Format_RGB32);
    for (int i = 0; i < 64 * 64; ++i) {
        noise.setPixel(i % 64, i / 64, qRgb(i * 37 % 256, i * 91 % 256, i * 53 % 256));
    }
    const auto fine = codec.encodeJpeg(noise, 1.0);
    const auto coarse = codec.encodeJpeg(noise, 0.2);
    ASSERT_TRUE(fine.has_value() && coarse.has_value());
    EXPECT_LT(coarse->size() * 2, fine->size());
    QImage clear(8, 8, QImage::Format_ARGB32);
    clear.fill(Qt::transparent);
    const auto flat = codec.encodeJpeg(clear, 0.9);
    ASSERT_TRUE(flat.has_value());
    EXPECT_TRUE(isNear(codec.decode(*flat)->pixelColor(4, 4), Qt::white));
    EXPECT_FALSE(codec.encodeJpeg(QImage(), 0.9).has_value());
}

}  // namespace
}  // namespace quillo::testing
