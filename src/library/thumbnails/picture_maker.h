// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QSize>
#include <QUuid>
#include <memory>

#include "library/thumbnails/card_content.h"
#include "library/thumbnails/clip_bytes.h"
#include "platform/image_codec.h"
#include "platform/rich_text.h"

namespace quillo {

/// One picture to make.
struct PictureRequest {
    QUuid clip;
    CardPreview preview = CardPreview::Image;
    ClipType kind = ClipType::Image;
    QSize pixels;     ///< Of its place, in device pixels; nothing for a document.
    qreal scale = 1;  ///< Device pixels to a logical one.
    QImage given;     ///< A file's thumbnail; the others are loaded.
    quint64 serial = 0;
};

/// What came of a request; image and text are none where there is nothing to show.
struct PictureResult {
    PictureRequest request;
    QImage image;
    QSize imageSize;
    std::shared_ptr<const StyledText> richText;
};

/// What pictures are made with. All of it is called on the worker.
struct PictureMaker {
    const ImageCodec& codec;
    const RichTextReader& documents;
    ClipBytesLoader loader;

    /// Loads, decodes and brings into the size of its place. May take long; any thread.
    [[nodiscard]] PictureResult make(const PictureRequest& request) const;
};

/// An image for a place that it fills: covering it, its edges cut off, or where that would enlarge
/// it too much, whole and at its own size within the place. ownSize is what the image had before it
/// was decoded smaller; empty when that is unknown.
[[nodiscard]] QImage filling(const QImage& image, const QSize& ownSize, const QSize& place,
                             qreal scale);

/// The whole image within a place, no larger than its own size in logical pixels.
[[nodiscard]] QImage contained(const QImage& image, const QSize& ownSize, const QSize& place,
                               qreal scale);

}  // namespace quillo
