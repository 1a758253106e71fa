// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QString>
#include <optional>

#include "model/store/object_context.h"

namespace quillo {

/// The stored kind of a clip; the raw value is what the store holds.
enum class ClipType : qint16 { Text = 0, Rtf = 1, Html = 2, Image = 3, FileUrl = 4 };

/// Every kind in order.
inline constexpr ClipType kClipTypes[] = {ClipType::Text, ClipType::Rtf, ClipType::Html,
                                          ClipType::Image, ClipType::FileUrl};

/// None for a value outside 0 to 4.
[[nodiscard]] std::optional<ClipType> clipTypeFromRaw(qint64 raw);
[[nodiscard]] QString kindName(ClipType type);
[[nodiscard]] QColor defaultColor(ClipType type);

/// One stored item of the history. A link is a text clip with an urlString, a colour a text clip
/// whose text names one. Belongs to its context's thread.
class Clip final : public StoredObject {
public:
    static constexpr Entity kEntity = Entity::Clip;
    using StoredObject::StoredObject;

    /// Inserts a new clip: a fresh id, both dates now, everything else unset.
    [[nodiscard]] static std::shared_ptr<Clip> create(ObjectContext& context, Timestamp now);

    // Stored attributes; an absent one is none.
    [[nodiscard]] std::optional<QByteArray> attributed() const;
    [[nodiscard]] std::optional<Timestamp> createdAt() const;
    [[nodiscard]] std::optional<QString> fileName() const;
    [[nodiscard]] std::optional<QByteArray> fileBookmark() const;
    [[nodiscard]] qint64 fileSize() const;
    [[nodiscard]] std::optional<QString> fileUti() const;
    [[nodiscard]] std::optional<QByteArray> contentHash() const;
    [[nodiscard]] std::optional<QByteArray> imageData() const;
    [[nodiscard]] bool isPinned() const;
    [[nodiscard]] std::optional<QByteArray> linkImageData() const;
    [[nodiscard]] std::optional<QString> linkTitle() const;
    [[nodiscard]] std::optional<Timestamp> modifiedAt() const;
    [[nodiscard]] std::optional<QString> plaintext() const;
    [[nodiscard]] std::optional<QString> sourceBundleId() const;
    /// The raw kind; may lie outside ClipType.
    [[nodiscard]] qint64 rawType() const;
    [[nodiscard]] std::optional<ClipType> type() const;
    [[nodiscard]] std::optional<QString> urlHost() const;
    [[nodiscard]] std::optional<QString> urlString() const;

    void setAttributed(std::optional<QByteArray> bytes);
    void setCreatedAt(std::optional<Timestamp> moment);
    void setFileName(std::optional<QString> name);
    void setFileBookmark(std::optional<QByteArray> bookmark);
    void setFileSize(qint64 bytes);
    void setFileUti(std::optional<QString> identifier);
    void setContentHash(std::optional<QByteArray> digest);
    void setImageData(std::optional<QByteArray> bytes);
    void setPinned(bool pinned);
    void setLinkImageData(std::optional<QByteArray> bytes);
    void setLinkTitle(std::optional<QString> title);
    void setModifiedAt(std::optional<Timestamp> moment);
    void setPlaintext(std::optional<QString> text);
    void setSourceBundleId(std::optional<QString> identifier);
    void setRawType(qint64 raw);
    void setType(ClipType type);
    void setUrlHost(std::optional<QString> host);
    void setUrlString(std::optional<QString> url);

    /// One bit for each filter that the clip matches (filter_mask): the stored one, or computed
    /// from the values when they have unsaved changes.
    [[nodiscard]] quint32 filterMask() const;

    // Derived values, computed when read.

    /// The one line that stands for the clip: its text, else its address, its file name or its
    /// kind in brackets.
    [[nodiscard]] QString displayText() const;
    /// The colour that a text clip names (#RGB, #RRGGBB or #RRGGBBAA, the sign optional).
    [[nodiscard]] std::optional<QColor> detectedColor() const;
    /// What the clip holds, for people ("Word", "Image", "Folder", ...).
    [[nodiscard]] QString fileKindName() const;
    /// The label under a file card ("Word .docx").
    [[nodiscard]] QString fileTypeLabel() const;
    /// The size of a file or image in decimal units ("1.2 MB"); none for other kinds or below 1.
    [[nodiscard]] std::optional<QString> formattedFileSize() const;
};

/// The colour that a text names, by the rule of Clip::detectedColor.
[[nodiscard]] std::optional<QColor> detectColor(const QString& text);

}  // namespace quillo
