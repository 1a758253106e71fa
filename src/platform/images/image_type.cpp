// SPDX-License-Identifier: MIT
#include "platform/images/image_type.h"

#include <algorithm>
#include <array>

namespace quillo {
namespace {

using namespace Qt::StringLiterals;

struct Signature {
    QByteArrayView bytes;
    QLatin1StringView mimeType;
};

const std::array kSignatures{
    Signature{QByteArrayView("\x89PNG\r\n\x1A\n", 8), "image/png"_L1},
    Signature{QByteArrayView("\xFF\xD8\xFF", 3), "image/jpeg"_L1},
    Signature{QByteArrayView("GIF87a", 6), "image/gif"_L1},
    Signature{QByteArrayView("GIF89a", 6), "image/gif"_L1},
    Signature{QByteArrayView("II*\0", 4), "image/tiff"_L1},
    Signature{QByteArrayView("MM\0*", 4), "image/tiff"_L1},
    Signature{QByteArrayView("II+\0", 4), "image/tiff"_L1},
    Signature{QByteArrayView("MM\0+", 4), "image/tiff"_L1},
};

constexpr std::array kHeicBrands{"heic", "heix", "heim", "heis", "hevc", "hevx"};
constexpr std::array kHeifBrands{"mif1", "msf1"};
constexpr std::array kAvifBrands{"avif", "avis"};

bool contains(const auto& brands, QByteArrayView brand) {
    return std::ranges::any_of(brands, [&](const char* known) { return brand == known; });
}

quint32 bigEndian(QByteArrayView bytes) {
    quint32 value = 0;
    for (const char byte : bytes.first(4)) {
        value = value << 8 | static_cast<unsigned char>(byte);
    }
    return value;
}

// ISO/IEC 14496-12: the first box is "ftyp" with a major brand, a version and further brands. A
// general major brand is narrowed down by the others.
QString typeByBrand(QByteArrayView bytes) {
    if (bytes.size() < 16 || bytes.sliced(4, 4) != "ftyp") {
        return {};
    }
    const auto end = std::min<qsizetype>(bigEndian(bytes), std::min<qsizetype>(bytes.size(), 256));
    bool general = false;
    for (qsizetype i = 8; i + 4 <= end; i += i == 8 ? 8 : 4) {
        const QByteArrayView brand = bytes.sliced(i, 4);
        if (contains(kHeicBrands, brand)) {
            return u"image/heic"_s;
        }
        if (contains(kAvifBrands, brand)) {
            return u"image/avif"_s;
        }
        general = general || contains(kHeifBrands, brand);
    }
    return general ? u"image/heif"_s : QString();
}

bool isBitmap(QByteArrayView bytes) {
    // The size of the header that follows tells a bitmap from text that begins with "BM".
    return bytes.size() >= 26 && bytes.startsWith("BM") && bytes[15] == 0 && bytes[16] == 0 &&
           bytes[17] == 0 && static_cast<unsigned char>(bytes[14]) >= 12;
}

bool isIcon(QByteArrayView bytes) {
    return bytes.size() >= 22 && bytes.startsWith(QByteArrayView("\0\0\1\0", 4)) &&
           (bytes[4] != 0 || bytes[5] != 0) && bytes[9] == 0;
}

}  // namespace

QString imageMimeType(QByteArrayView bytes) {
    for (const Signature& signature : kSignatures) {
        if (bytes.startsWith(signature.bytes)) {
            return signature.mimeType;
        }
    }
    if (bytes.size() >= 12 && bytes.startsWith("RIFF") && bytes.sliced(8, 4) == "WEBP") {
        return u"image/webp"_s;
    }
    if (isBitmap(bytes)) {
        return u"image/bmp"_s;
    }
    return isIcon(bytes) ? u"image/vnd.microsoft.icon"_s : typeByBrand(bytes);
}

}  // namespace quillo
