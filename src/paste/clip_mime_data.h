// SPDX-License-Identifier: MIT
#pragma once

#include <QMimeData>
#include <memory>

#include "platform/pasteboard.h"
#include "platform/pasteboard_formats.h"

namespace quillo {

/// Contents as a drag carries them, under the types that a copy of them has but without the
/// pasteboard's own names. Nothing is converted before the program that it is dropped on asks for
/// it. What the converters need must outlive the data.
[[nodiscard]] std::unique_ptr<QMimeData> mimeDataFor(const PasteboardContents& contents,
                                                     const PasteboardConverters& converters);

}  // namespace quillo
