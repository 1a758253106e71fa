// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include "library/list/clip_list_view.h"
#include "library/list/listed_clips.h"

namespace quillo {

/// The library window's content: every clip, newest first, or those that are found. A double click
/// or Return copies one.
class LibraryListView final : public QWidget {
    Q_OBJECT

public:
    explicit LibraryListView(const ClipListServices& services, QWidget* parent = nullptr);

private:
    ListedClips m_clips;
};

}  // namespace quillo
