// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include "library/list/clip_list_view.h"
#include "library/list/listed_clips.h"

namespace quillo {

/// The popover's content: the newest clips, or those that are found. A click or Return copies one
/// and asks for the popover to close.
class QuickClipView final : public QWidget {
    Q_OBJECT

public:
    static constexpr qsizetype kNewest = 20;
    static constexpr int kListHeight = 400;

    explicit QuickClipView(const ClipListServices& services, QWidget* parent = nullptr);

Q_SIGNALS:
    void closeRequested();

private:
    ListedClips m_clips;
};

}  // namespace quillo
