// SPDX-License-Identifier: MIT
#include "platform/images/png_encoder.h"

#include <zlib.h>

#include <QColorSpace>
#include <QColorTransform>
#include <QtEndian>
#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <span>
#include <thread>
#include <vector>

namespace quillo {
namespace {

using namespace Qt::StringLiterals;

constexpr qsizetype kStripBytes = 1024 * 1024;
constexpr unsigned kMaxThreads = 4;
constexpr int kPaletteEntries = 256;

enum class ColorType : char { Gray = 0, Rgb = 2, Palette = 3, Rgba = 6 };
enum class Filter : char { None = 0, Up = 2 };

/// The picture in the layout that goes into the file.
struct Raster {
    QImage image;
    ColorType colorType = ColorType::Rgb;
    int bytesPerPixel = 3;

    [[nodiscard]] qsizetype rowBytes() const { return qsizetype{image.width()} * bytesPerPixel; }
};

struct Method {
    Filter filter = Filter::None;
    int strategy = Z_DEFAULT_STRATEGY;
};

struct Strip {
    int firstRow = 0;
    int rowCount = 0;
    bool isLast = false;
    QByteArray compressed;
    uLong checksum = 1;
    uLong length = 0;
    bool failed = false;
};

bool isOpaque(const QImage& rgba) {
    for (int y = 0; y < rgba.height(); ++y) {
        const auto* pixel = reinterpret_cast<const quint32*>(rgba.constScanLine(y));
        quint32 all = ~0U;
        for (int x = 0; x < rgba.width(); ++x) {
            all &= pixel[x];
        }
        if (qFromBigEndian(all) % 256 != 255) {
            return false;
        }
    }
    return true;
}

bool isNear(QRgb one, QRgb other) {
    // The files give the primaries with five digits; near zero that is a few steps.
    constexpr int kSteps = 8;
    return std::abs(qRed(one) - qRed(other)) <= kSteps &&
           std::abs(qGreen(one) - qGreen(other)) <= kSteps &&
           std::abs(qBlue(one) - qBlue(other)) <= kSteps;
}

/// True for sRGB under another name: many programs write its primaries and a gamma of 1/2.2,
/// and a conversion would change every dark value for nothing that can be seen.
bool isStandardSpace(const QColorSpace& space) {
    if (!space.isValid() || space.primaries() == QColorSpace::Primaries::SRgb) {
        return true;
    }
    const QColorSpace standard(QColorSpace::SRgb);
    const QColorTransform there = space.transformationToColorSpace(standard);
    const QColorTransform back = standard.transformationToColorSpace(space);
    constexpr std::array<QRgb, 3> kCorners = {0xffff0000, 0xff00ff00, 0xff0000ff};
    return std::abs(space.gamma() - 2.2F) < 0.05F &&
           std::all_of(
               kCorners.cbegin(), kCorners.cend(),
               [&](QRgb corner) {
                   return isNear(there.map(corner), corner) && isNear(back.map(corner), corner);
               });
}

QImage inStandardGamut(const QImage& image) {
    if (isStandardSpace(image.colorSpace())) {
        return image;
    }
    QImage converted = image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32
                                                                     : QImage::Format_RGB32);
    converted.convertToColorSpace(QColorSpace(QColorSpace::SRgb));
    return converted;
}

Raster rasterOf(const QImage& source) {
    const QImage image = inStandardGamut(source);
    switch (image.format()) {
        case QImage::Format_Grayscale8:
            return {image, ColorType::Gray, 1};
        case QImage::Format_Grayscale16:
            return {image.convertToFormat(QImage::Format_Grayscale8), ColorType::Gray, 1};
        case QImage::Format_Mono:
        case QImage::Format_MonoLSB:
            return {image.convertToFormat(QImage::Format_Indexed8), ColorType::Palette, 1};
        case QImage::Format_Indexed8:
            return {image, ColorType::Palette, 1};
        default:
            break;
    }
    if (image.hasAlphaChannel()) {
        const QImage rgba = image.convertToFormat(QImage::Format_RGBA8888);
        if (!isOpaque(rgba)) {
            return {rgba, ColorType::Rgba, 4};
        }
    }
    return {image.convertToFormat(QImage::Format_RGB888), ColorType::Rgb, 3};
}

// Drawn pictures repeat bytes, and matching them is what makes them small and quick. Photographs
// do not: there the differences to the row above are coded, without a search for matches.
Method methodFor(const Raster& raster) {
    constexpr int kSampledRows = 48;
    const int step = std::max(1, raster.image.height() / kSampledRows);
    const qsizetype pixelBytes = raster.bytesPerPixel;
    qsizetype pixels = 0;
    qsizetype repeated = 0;
    for (int y = 0; y < raster.image.height(); y += step) {
        const uchar* const row = raster.image.constScanLine(y);
        for (qsizetype i = pixelBytes; i < raster.rowBytes(); i += pixelBytes) {
            ++pixels;
            repeated += std::memcmp(row + i, row + i - pixelBytes, pixelBytes) == 0 ? 1 : 0;
        }
    }
    const bool isDrawn = raster.colorType == ColorType::Palette || repeated * 4 >= pixels;
    return isDrawn ? Method{} : Method{Filter::Up, Z_RLE};
}

void filterRow(const Raster& raster, Filter filter, int y, std::span<uchar> out) {
    const uchar* const row = raster.image.constScanLine(y);
    out[0] = static_cast<uchar>(filter);
    const auto pixels = out.subspan(1);
    if (filter == Filter::None || y == 0) {
        std::memcpy(pixels.data(), row, pixels.size());
        return;
    }
    const uchar* const above = raster.image.constScanLine(y - 1);
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        pixels[i] = static_cast<uchar>(row[i] - above[i]);
    }
}

/// zlib's compressor with its state released at the end.
class Deflater final {
public:
    explicit Deflater(int strategy)
        : m_ok(deflateInit2(&m_stream, 1, Z_DEFLATED, -MAX_WBITS, 9, strategy) == Z_OK) {}
    ~Deflater() { deflateEnd(&m_stream); }
    Deflater(const Deflater&) = delete;
    Deflater& operator=(const Deflater&) = delete;

    [[nodiscard]] bool append(std::span<uchar> input, int flush, QByteArray& output) {
        m_stream.next_in = input.data();
        m_stream.avail_in = static_cast<uInt>(input.size());
        int status = Z_OK;
        do {
            m_stream.next_out = m_buffer.data();
            m_stream.avail_out = static_cast<uInt>(m_buffer.size());
            status = m_ok ? deflate(&m_stream, flush) : Z_STREAM_ERROR;
            if (status == Z_STREAM_ERROR) {
                return false;
            }
            output.append(reinterpret_cast<const char*>(m_buffer.data()),
                          static_cast<qsizetype>(m_buffer.size() - m_stream.avail_out));
        } while (m_stream.avail_out == 0 && status != Z_STREAM_END);
        return true;
    }

private:
    z_stream m_stream{};
    std::array<uchar, 64 * 1024> m_buffer{};
    bool m_ok = false;
};

void compress(const Raster& raster, Method method, Strip& strip) {
    Deflater deflater(method.strategy);
    std::vector<uchar> row(static_cast<std::size_t>(raster.rowBytes()) + 1);
    strip.checksum = adler32(0, nullptr, 0);
    for (int i = 0; i < strip.rowCount && !strip.failed; ++i) {
        filterRow(raster, method.filter, strip.firstRow + i, row);
        strip.checksum = adler32(strip.checksum, row.data(), static_cast<uInt>(row.size()));
        strip.length += row.size();
        strip.failed = !deflater.append(row, Z_NO_FLUSH, strip.compressed);
    }
    // A full flush ends on a byte, so that the next strip can follow directly.
    strip.failed = strip.failed ||
                   !deflater.append({}, strip.isLast ? Z_FINISH : Z_FULL_FLUSH, strip.compressed);
}

std::vector<Strip> stripsOf(const Raster& raster) {
    const int height = raster.image.height();
    const auto rows =
        static_cast<int>(std::clamp<qsizetype>(kStripBytes / raster.rowBytes(), 1, height));
    std::vector<Strip> strips;
    for (int y = 0; y < height; y += rows) {
        strips.push_back({.firstRow = y,
                          .rowCount = std::min(rows, height - y),
                          .isLast = y + rows >= height,
                          .compressed = {}});
    }
    return strips;
}

void compressAll(const Raster& raster, std::vector<Strip>& strips) {
    const Method method = methodFor(raster);
    std::atomic<std::size_t> next = 0;
    const auto work = [&] {
        for (std::size_t i = next++; i < strips.size(); i = next++) {
            compress(raster, method, strips[i]);
        }
    };
    const auto helpers = std::min<std::size_t>(
        {strips.size(), kMaxThreads, std::max(1U, std::thread::hardware_concurrency())});
    std::vector<std::jthread> threads;
    for (std::size_t i = 1; i < helpers; ++i) {
        threads.emplace_back(work);
    }
    work();
}

void appendNumber(QByteArray& out, quint32 value) {
    const quint32 bigEndian = qToBigEndian(value);
    out.append(reinterpret_cast<const char*>(&bigEndian), sizeof bigEndian);
}

void appendChunk(QByteArray& out, QByteArrayView type, QByteArrayView data) {
    appendNumber(out, static_cast<quint32>(data.size()));
    const qsizetype start = out.size();
    out.append(type).append(data);
    const uLong sum = crc32(0, reinterpret_cast<const Bytef*>(out.constData() + start),
                            static_cast<uInt>(out.size() - start));
    appendNumber(out, static_cast<quint32>(sum));
}

void appendHeader(QByteArray& out, const Raster& raster) {
    QByteArray header;
    appendNumber(header, static_cast<quint32>(raster.image.width()));
    appendNumber(header, static_cast<quint32>(raster.image.height()));
    header.append('\x08').append(static_cast<char>(raster.colorType)).append(3, '\0');
    appendChunk(out, "IHDR", header);
}

void appendPalette(QByteArray& out, const Raster& raster) {
    QList<QRgb> colors = raster.image.colorTable();
    colors.resize(kPaletteEntries);
    QByteArray palette;
    QByteArray alphas;
    for (const QRgb color : colors) {
        palette.append(static_cast<char>(qRed(color))).append(static_cast<char>(qGreen(color)));
        palette.append(static_cast<char>(qBlue(color)));
        alphas.append(static_cast<char>(qAlpha(color)));
    }
    appendChunk(out, "PLTE", palette);
    if (raster.image.hasAlphaChannel()) {
        appendChunk(out, "tRNS", alphas);
    }
}

QByteArray joined(const std::vector<Strip>& strips) {
    QByteArray data("\x78\x01", 2);
    uLong checksum = adler32(0, nullptr, 0);
    for (const Strip& strip : strips) {
        data.append(strip.compressed);
        checksum = adler32_combine(checksum, strip.checksum, static_cast<z_off_t>(strip.length));
    }
    appendNumber(data, static_cast<quint32>(checksum));
    return data;
}

}  // namespace

Result<QByteArray> encodePngQuickly(const QImage& image) {
    const Raster raster = image.isNull() ? Raster{} : rasterOf(image);
    if (raster.image.isNull()) {
        return failure(ErrorKind::Failed, u"no picture to encode"_s);
    }
    std::vector<Strip> strips = stripsOf(raster);
    compressAll(raster, strips);
    if (std::ranges::any_of(strips, &Strip::failed)) {
        return failure(ErrorKind::Failed, u"the PNG compressor failed"_s);
    }
    QByteArray png("\x89PNG\r\n\x1A\n", 8);
    appendHeader(png, raster);
    if (raster.colorType == ColorType::Palette) {
        appendPalette(png, raster);
    }
    appendChunk(png, "IDAT", joined(strips));
    appendChunk(png, "IEND", {});
    return png;
}

}  // namespace quillo
