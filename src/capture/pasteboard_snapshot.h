// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QUrl>
#include <optional>

#include "platform/image_codec.h"
#include "platform/pasteboard_reading.h"
#include "platform/user_defaults.h"

namespace quillo {

/// One read of the pasteboard: everything that a capture may be made from.
struct PasteboardSnapshot {
    std::optional<QByteArray> imageData;
    std::optional<QString> imageFileName;
    std::optional<QByteArray> rtfData;
    std::optional<QByteArray> htmlData;
    std::optional<QList<QUrl>> fileUrls;  ///< Never present and empty.
    std::optional<QString> urlString;
    std::optional<QString> plainText;
    bool isUnwanted = false;  ///< Of a kind that is switched off; nothing else was read then.
};

/// The kinds of captures that the person can do without.
struct CaptureSwitches {
    bool images = true;
    bool files = true;
};

/// What the settings say now ("captureImages", "captureFiles"). Any thread.
[[nodiscard]] CaptureSwitches captureSwitches(const UserDefaults& defaults);

/// What a capture is stored as.
enum class CaptureKind { Image, Files, Rtf, Html, Url, Text, Nothing, Unwanted };

/// Unwanted for such a snapshot, else the first representation present, in the order of
/// CaptureKind.
[[nodiscard]] CaptureKind captureKind(const PasteboardSnapshot& snapshot);

/// Fills a snapshot from a reading of the pasteboard. Images are brought to their stored form:
/// at most 1920 pixels a side; PNG, or JPEG where they came as such, or the unchanged bytes of a
/// small compressed image file. Blocking; worker thread only.
///
/// A switch concerns what would be stored: with images off a copied picture is nothing, whatever
/// text comes with it, and it is not decoded; a copied image file is then a file. With files off a
/// copied file is nothing, but for an image file that is stored as a picture.
class PasteboardSnapshotReader final {
public:
    PasteboardSnapshotReader(PasteboardReading& reading, const ImageCodec& codec,
                             CaptureSwitches switches = {});

    [[nodiscard]] PasteboardSnapshot readSnapshot();

private:
    struct NamedImage {
        std::optional<QByteArray> data;
        std::optional<QString> fileName;
    };

    [[nodiscard]] std::optional<QList<QUrl>> readFileUrls();
    [[nodiscard]] bool isSwitchedOff(const PasteboardSnapshot& snapshot);
    [[nodiscard]] bool holdsPicture();
    [[nodiscard]] NamedImage readImage(const std::optional<QList<QUrl>>& fileUrls);
    [[nodiscard]] std::optional<QByteArray> readPasteboardImage();
    [[nodiscard]] std::optional<QByteArray> imageFromFileUrl(const QUrl& url) const;
    [[nodiscard]] std::optional<QByteArray> pngFrom(const std::optional<QByteArray>& bytes) const;
    [[nodiscard]] QByteArray storedJpeg(const QByteArray& bytes) const;
    [[nodiscard]] std::optional<QString> readUrlString();

    PasteboardReading& m_reading;
    const ImageCodec& m_codec;
    CaptureSwitches m_switches;
};

}  // namespace quillo
