// SPDX-License-Identifier: MIT
#pragma once

#include <QPixmap>
#include <QSize>
#include <memory>

#include "platform/rich_text.h"

namespace quillo {

/// The pictures of one card that are at hand. Whatever is null or empty has not come, or does not
/// exist; the card then shows what stands for it.
struct CardPicture {
    QPixmap thumbnail;  ///< The image, a link's image or a file's thumbnail, made for its place.
    QSize imageSize;    ///< Of an image itself, in its own pixels; empty without readable size.
    QPixmap fileIcon;   ///< For a file without a thumbnail.
    QPixmap sourceIcon;
    std::shared_ptr<const StyledText> richText;  ///< Cut to what a card can show.
};

}  // namespace quillo
