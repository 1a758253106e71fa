// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <memory>
#include <optional>

#include "platform/pasteboard.h"

namespace quillo {

/// The representations that the program understands, whatever their names on the wire.
enum class PasteboardType { Marker, String, Rtf, Html, Png, Tiff, Jpeg, Url, UrlName };

/// The name of the marker type that every write of ours carries first.
inline constexpr const char* kMarkerTarget = "com.quillohq.Quillo.marker";
inline constexpr const char* kMarkerValue = "marker";

/// One read of the pasteboard: maps the target names of real programs onto PasteboardType and
/// normalises charsets, escapes and trailing NULs, here and nowhere else. Each target is asked
/// for at most once, and only when it is offered. Blocking, like the source beneath it.
class PasteboardReading final {
public:
    explicit PasteboardReading(std::unique_ptr<PasteboardSource> source);
    ~PasteboardReading();

    [[nodiscard]] qint64 changeCount() const;

    /// True when the owner marks the contents as secret (`x-kde-passwordManagerHint`): nothing
    /// but the hint itself may then be read.
    [[nodiscard]] bool isConcealed();

    /// The offered names in the owner's order, their parameters cut off (some programs put file
    /// names there), for the log.
    [[nodiscard]] QStringList types();

    /// The bytes of a representation: RTF and images as they came without trailing NULs after
    /// RTF, HTML as UTF-8. None when absent. An image beside RTF and a text that is not empty
    /// is a rendering of the text: it is neither asked for nor given.
    [[nodiscard]] std::optional<QByteArray> data(PasteboardType type);

    /// The text of a representation, for Marker, String, Url and UrlName.
    [[nodiscard]] std::optional<QString> string(PasteboardType type);

    /// The `file:` lines of the copied list, normalised; empty when there is none.
    [[nodiscard]] QList<QUrl> fileUrls();

    /// An image of any other type that the owner offers (BMP, GIF, WebP, ICO and so on).
    [[nodiscard]] std::optional<QByteArray> anyImage();

    /// True when a newer copy cut the reading short.
    [[nodiscard]] bool wasSuperseded() const;

    /// Everything that was read so far, for Pasteboard::settle.
    [[nodiscard]] KeptContents kept() const;

private:
    const QList<QByteArray>& targets();
    std::optional<RawReply> fetch(const QByteArray& target);
    std::optional<RawReply> firstOf(const QList<QByteArray>& targets);
    bool offers(const QByteArray& target);
    bool offersAnyOf(const QList<QByteArray>& targets);
    bool imageIsRendering();
    QList<QByteArray> otherImageTargets();
    std::optional<QString> plainText();
    QStringList mozUrlLines();
    QStringList uriLines();

    std::unique_ptr<PasteboardSource> m_source;
    std::optional<QList<QByteArray>> m_targets;
    QHash<QByteArray, std::optional<RawReply>> m_replies;
    std::optional<std::optional<QString>> m_text;
};

}  // namespace quillo
