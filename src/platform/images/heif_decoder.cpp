// SPDX-License-Identifier: MIT
#include "platform/images/heif_decoder.h"

#include "platform/images/image_bounds.h"

#include <libheif/heif.h>

#include <algorithm>
#include <cstring>
#include <exception>
#include <memory>

namespace quillo {
namespace {

using namespace Qt::StringLiterals;

template <auto Release>
struct Releaser {
    template <typename T>
    void operator()(T* object) const {
        Release(object);
    }
};

using Context = std::unique_ptr<heif_context, Releaser<heif_context_free>>;
using Handle = std::unique_ptr<heif_image_handle, Releaser<heif_image_handle_release>>;
using Image = std::unique_ptr<heif_image, Releaser<heif_image_release>>;
using Options = std::unique_ptr<heif_decoding_options, Releaser<heif_decoding_options_free>>;

constexpr int kDecodingThreads = 2;

// The longest panoramas of cameras.
constexpr int kMaxHeifSidePx = 16'384;
// No tile of a real picture has a longer side.
constexpr int kMaxTileSidePx = 4096;

std::unexpected<Error> heifFailure(const heif_error& error) {
    if (error.subcode == heif_suberror_Security_limit_exceeded) {
        return failure(ErrorKind::TooLarge, u"HEIF picture beyond the decoder's limits"_s);
    }
    const bool unsupported = error.code == heif_error_Unsupported_feature ||
                             error.code == heif_error_Unsupported_filetype;
    return failure(unsupported ? ErrorKind::Unsupported : ErrorKind::Malformed,
                   u"HEIF error %1.%2"_s.arg(error.code).arg(error.subcode));
}

/// The file and its primary picture. The bytes are not copied and must outlive it.
struct OpenFile {
    Context context;
    Handle picture;
};

QSize sizeOf(const OpenFile& file) {
    return {heif_image_handle_get_width(file.picture.get()),
            heif_image_handle_get_height(file.picture.get())};
}

/// As stored, before it is cropped and turned.
QSize storedSizeOf(const OpenFile& file) {
    return {heif_image_handle_get_ispe_width(file.picture.get()),
            heif_image_handle_get_ispe_height(file.picture.get())};
}

bool isWithinHeifBounds(QSize size) {
    return isWithinImageBounds(size) && std::max(size.width(), size.height()) <= kMaxHeifSidePx;
}

/// A grid of tiles names a size of its own, which need not be the announced one and is not known
/// before the decoder makes room for it.
void limitDecodingTo(const OpenFile& file) {
    const QSize size = storedSizeOf(file);
    heif_context_set_maximum_image_size_limit(
        file.context.get(), std::max({size.width(), size.height(), kMaxTileSidePx}));
}

Result<OpenFile> openFile(const QByteArray& bytes) {
    OpenFile file{Context(heif_context_alloc()), nullptr};
    if (!file.context) {
        return failure(ErrorKind::Failed, u"no memory for an HEIF picture"_s);
    }
    heif_context_set_maximum_image_size_limit(file.context.get(), kMaxHeifSidePx);
    heif_context_set_max_decoding_threads(file.context.get(), kDecodingThreads);
    heif_error error = heif_context_read_from_memory_without_copy(
        file.context.get(), bytes.constData(), static_cast<size_t>(bytes.size()), nullptr);
    if (error.code != heif_error_Ok) {
        return heifFailure(error);
    }
    heif_image_handle* handle = nullptr;
    error = heif_context_get_primary_image_handle(file.context.get(), &handle);
    file.picture.reset(handle);
    if (error.code != heif_error_Ok) {
        return heifFailure(error);
    }
    if (sizeOf(file).isEmpty()) {
        return failure(ErrorKind::Malformed, u"HEIF picture without a size"_s);
    }
    if (!isWithinHeifBounds(sizeOf(file)) || !isWithinHeifBounds(storedSizeOf(file))) {
        return failure(ErrorKind::TooLarge, u"HEIF picture beyond the bounds"_s);
    }
    limitDecodingTo(file);
    return file;
}

Result<QImage> copyPixels(const heif_image* image, bool hasAlpha) {
    const QSize size(heif_image_get_width(image, heif_channel_interleaved),
                     heif_image_get_height(image, heif_channel_interleaved));
    int stride = 0;
    const uint8_t* const plane =
        heif_image_get_plane_readonly(image, heif_channel_interleaved, &stride);
    if (plane == nullptr || size.isEmpty() || !isWithinImageBounds(size)) {
        return failure(ErrorKind::Malformed, u"HEIF picture without pixels"_s);
    }
    QImage copy(size, hasAlpha ? QImage::Format_RGBA8888 : QImage::Format_RGB888);
    const int rowBytes = size.width() * (hasAlpha ? 4 : 3);
    if (copy.isNull() || stride < rowBytes) {
        return failure(ErrorKind::Failed, u"no memory for an HEIF picture"_s);
    }
    for (int y = 0; y < size.height(); ++y) {
        std::memcpy(copy.scanLine(y), plane + qsizetype{y} * stride, static_cast<size_t>(rowBytes));
    }
    return copy;
}

Result<QImage> decodePrimary(const QByteArray& bytes) {
    auto file = openFile(bytes);
    if (!file) {
        return std::unexpected(file.error());
    }
    const Options options(heif_decoding_options_alloc());
    if (options) {
        options->convert_hdr_to_8bit = 1;
    }
    const bool hasAlpha = heif_image_handle_has_alpha_channel(file->picture.get()) != 0;
    heif_image* decoded = nullptr;
    const heif_error error = heif_decode_image(
        file->picture.get(), &decoded, heif_colorspace_RGB,
        hasAlpha ? heif_chroma_interleaved_RGBA : heif_chroma_interleaved_RGB, options.get());
    const Image image(decoded);
    if (error.code != heif_error_Ok) {
        return heifFailure(error);
    }
    return copyPixels(image.get(), hasAlpha);
}

// The library is C++ behind its C functions and may throw when memory runs out.
template <typename T>
Result<T> guarded(Result<T> (*read)(const QByteArray&), const QByteArray& bytes) {
    try {
        return read(bytes);
    } catch (const std::exception&) {
        return failure(ErrorKind::Failed, u"the HEIF decoder gave up"_s);
    }
}

}  // namespace

Result<QSize> heifSize(const QByteArray& bytes) {
    return guarded<QSize>(
        [](const QByteArray& content) -> Result<QSize> {
            const auto file = openFile(content);
            if (!file) {
                return std::unexpected(file.error());
            }
            return sizeOf(*file);
        },
        bytes);
}

Result<QImage> decodeHeif(const QByteArray& bytes) {
    return guarded<QImage>(&decodePrimary, bytes);
}

}  // namespace quillo
