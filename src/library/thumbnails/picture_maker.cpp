// SPDX-License-Identifier: MIT
#include "library/thumbnails/picture_maker.h"

#include <algorithm>

#include "library/thumbnails/rich_preview.h"

namespace quillo {
namespace {

// Beyond this a small image in a large place is only a blur.
constexpr qreal kMostEnlargement = 2;

// As the screen takes it, so that the first painting converts nothing.
QImage forScreen(const QImage& image) {
    return image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied
                                                         : QImage::Format_RGB32);
}

QImage resized(const QImage& image, const QSize& size) {
    return image.size() == size
               ? image
               : image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

QRect centerOf(const QSize& whole, const QSize& part) {
    return {(whole.width() - part.width()) / 2, (whole.height() - part.height()) / 2, part.width(),
            part.height()};
}

QImage fittedToPlace(const PictureRequest& request, const QImage& image, const QSize& ownSize) {
    switch (request.preview) {
        case CardPreview::Image:
            return filling(image, ownSize, request.pixels, request.scale);
        case CardPreview::Link:
            return resized(image, request.pixels);
        default:
            return contained(image, ownSize, request.pixels, request.scale);
    }
}

PictureResult withImage(const PictureMaker& maker, PictureResult result) {
    const PictureRequest& request = result.request;
    QImage image = request.given;
    if (image.isNull()) {
        const QByteArray bytes = maker.loader(request.clip, request.preview == CardPreview::Image
                                                                ? ClipAttribute::ImageData
                                                                : ClipAttribute::LinkImageData);
        if (bytes.isEmpty()) {
            return result;
        }
        result.imageSize = maker.codec.size(bytes).value_or(QSize());
        const int side = 2 * std::max(request.pixels.width(), request.pixels.height());
        image = maker.codec.decodeScaled(bytes, QSize(side, side)).value_or(QImage());
    }
    if (!image.isNull()) {
        const QSize ownSize = result.imageSize.isEmpty() ? image.size() : result.imageSize;
        result.image = forScreen(fittedToPlace(request, image, ownSize));
        result.image.setDevicePixelRatio(request.scale);
    }
    return result;
}

PictureResult withDocument(const PictureMaker& maker, PictureResult result) {
    const PictureRequest& request = result.request;
    const QByteArray bytes = maker.loader(request.clip, ClipAttribute::Attributed);
    if (bytes.isEmpty()) {
        return result;
    }
    const Result<StyledText> text = request.kind == ClipType::Rtf ? maker.documents.readRtf(bytes)
                                                                  : maker.documents.readHtml(bytes);
    if (text && !text->text.trimmed().isEmpty()) {
        result.richText = std::make_shared<const StyledText>(cutForCard(*text));
    }
    return result;
}

}  // namespace

QImage contained(const QImage& image, const QSize& ownSize, const QSize& place, qreal scale) {
    const QSizeF own = QSizeF(ownSize) * scale;
    const qreal factor =
        std::min({1.0, place.width() / own.width(), place.height() / own.height()});
    return resized(image, (own * factor).toSize().expandedTo(QSize(1, 1)));
}

QImage filling(const QImage& image, const QSize& ownSize, const QSize& place, qreal scale) {
    const QSizeF own = QSizeF(ownSize) * scale;
    const qreal factor = std::max(place.width() / own.width(), place.height() / own.height());
    if (factor > kMostEnlargement) {
        return contained(image, ownSize, place, scale);
    }
    const QSize part = place.scaled(image.size(), Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
    return resized(image.copy(centerOf(image.size(), part)), place);
}

PictureResult PictureMaker::make(const PictureRequest& request) const {
    PictureResult result{.request = request, .image = {}, .imageSize = {}, .richText = {}};
    return request.preview == CardPreview::RichText ? withDocument(*this, std::move(result))
                                                    : withImage(*this, std::move(result));
}

}  // namespace quillo
