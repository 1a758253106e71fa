// SPDX-License-Identifier: MIT
#pragma once

#include "platform/image_codec.h"
#include "platform/rich_text.h"

namespace quillo::testing {

/// Converters that convert nothing: documents are their own text, an image is known by its first
/// bytes only. Made to be inherited by those that a test needs.
class PlainConverters : public RichTextReader, public ImageCodec {
public:
    [[nodiscard]] Result<StyledText> readRtf(const QByteArray& document) const override {
        return StyledText{QString::fromUtf8(document), {}};
    }
    [[nodiscard]] Result<StyledText> readHtml(const QByteArray& document) const override {
        return StyledText{QString::fromUtf8(document), {}};
    }
    [[nodiscard]] Result<QImage> decode(const QByteArray&) const override { return none(); }
    [[nodiscard]] Result<QSize> size(const QByteArray&) const override { return none(); }
    [[nodiscard]] Result<QImage> decodeScaled(const QByteArray&, QSize) const override {
        return none();
    }
    [[nodiscard]] Result<QByteArray> encodePng(const QImage&) const override { return none(); }
    [[nodiscard]] Result<QByteArray> encodeJpeg(const QImage&, double) const override {
        return none();
    }
    [[nodiscard]] QString mimeType(const QByteArray& bytes) const override {
        return bytes.startsWith("\x89PNG")    ? QStringLiteral("image/png")
               : bytes.startsWith("\xff\xd8") ? QStringLiteral("image/jpeg")
               : bytes.startsWith("GIF8")     ? QStringLiteral("image/gif")
                                              : QString();
    }

protected:
    static std::unexpected<Error> none() {
        return failure(ErrorKind::Unsupported, QStringLiteral("nothing is converted"));
    }
};

}  // namespace quillo::testing
