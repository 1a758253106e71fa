// SPDX-License-Identifier: MIT
#pragma once

#include <QUuid>

namespace quillo {

/// One entry of the sidebar: what the grid shows.
struct LibrarySection {
    enum class Kind : quint8 { AllClips, Favorites, Pinboard };

    Kind kind = Kind::AllClips;
    QUuid pinboard = {};  ///< Null for the other kinds.

    [[nodiscard]] static LibrarySection ofPinboard(const QUuid& id) { return {Kind::Pinboard, id}; }

    friend bool operator==(const LibrarySection&, const LibrarySection&) = default;
};

}  // namespace quillo
