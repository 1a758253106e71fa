// SPDX-License-Identifier: MIT
#include "fuzz_support.h"
#include "platform/images/qt_image_codec.h"

// The AV1 decoder does not free the headers of a stream that it gives up.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the leak checker looks for this name.
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libdav1d";
}

// Decodes what is announced as small enough to stay quick; encodes what came out and compares.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quillo::fuzzing;
    constexpr qint64 kMostPixels = 512 * 512;
    startQt();
    const quillo::QtImageCodec codec;
    const QByteArray bytes = inputBytes(data, size);
    const auto announced = codec.size(bytes);
    if (!announced || qint64{announced->width()} * announced->height() > kMostPixels) {
        return 0;
    }
    if (const auto image = codec.decode(bytes); image.has_value()) {
        const auto png = codec.encodePng(*image);
        require(png.has_value() && codec.size(*png).value_or(QSize()) == image->size());
        const auto small = codec.decodeScaled(*png, QSize(16, 16));
        require(small.has_value() && small->width() <= 16 && small->height() <= 16);
    }
    return 0;
}
