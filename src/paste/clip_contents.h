// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>

#include "model/clip.h"
#include "platform/image_codec.h"
#include "platform/pasteboard.h"
#include "platform/rich_text.h"

namespace quillo {

/// Tells whether stored bytes are what their clip says they are, from their beginnings alone.
struct ContentReaders {
    const RichTextReader& richText;
    const ImageCodec& images;
};

/// What choosing a card in the overlay copies, by the clip's kind. Missing or undecodable content
/// gives contents without any representation: only the marker is then written.
[[nodiscard]] PasteboardContents contentsByKind(const Clip& clip, const ContentReaders& readers);

/// What the copy action of a library card and a row of the quick list copy: the image, else the
/// text, else the address.
[[nodiscard]] PasteboardContents contentsForQuickCopy(const Clip& clip);

/// What the detail view's copy button copies: the stored document as it is, and its text.
[[nodiscard]] PasteboardContents contentsForDetailCopy(const Clip& clip);

/// What several clips copy together: files where all of them are files; else their texts and
/// addresses, one below the other, and one that has neither is left out.
struct ContentsTogether {
    PasteboardContents contents;
    qsizetype count = 0;  ///< Of the clips that are in it.
};
[[nodiscard]] ContentsTogether contentsTogether(const QList<std::shared_ptr<Clip>>& clips,
                                                const RichTextReader& reader);

/// The text that a transformation is applied to: the clip's text, else its address; none when it
/// has neither.
[[nodiscard]] std::optional<QString> transformableText(const Clip& clip);

}  // namespace quillo
