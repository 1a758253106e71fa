// SPDX-License-Identifier: MIT
#pragma once

#include <QScrollArea>
#include <QUrl>
#include <functional>
#include <memory>

#include "library/window/detail_loader.h"
#include "library/window/detail_parts.h"
#include "library/window/library_clips.h"
#include "paste/text_transformation.h"

class QGridLayout;
class QVBoxLayout;

namespace quillo {

class DetailContentBox;
class FlowLayout;
class PushButton;

/// Shows one clip in full, says how many there are of several, or that there is none. Follows the
/// store; asks for what is to be done with the clips that it shows. Main thread.
class ClipDetail final : public QScrollArea {
    Q_OBJECT

public:
    struct Services {
        ObjectContext& context;
        const GroupList& groups;
        DetailLoader& loader;
        LibraryClips::SourceName sourceName;
        /// The icon of the program that a clip came from, 16 × 16; null while there is none.
        std::function<QPixmap(const Clip& clip)> sourceIcon;
    };

    /// Of more clips only their number is shown.
    static constexpr qsizetype kMostFollowed = 200;

    /// What is in the services must outlive the pane.
    explicit ClipDetail(Services services, QWidget* parent = nullptr);

    void setClips(const QList<QUuid>& clips);
    [[nodiscard]] const QList<QUuid>& clips() const { return m_clips; }
    void setLook(const LibraryLook& look);
    /// An icon may have come.
    void showSource();

Q_SIGNALS:
    void copyRequested();
    void transformRequested(TextTransformation transformation);
    void pinRequested(bool isPinned);
    void deleteRequested();
    /// The clips are to be in the group, or no longer.
    void membershipRequested(const QUuid& group, bool isMember);
    void linkOpened(const QUrl& address);
    void fileShown(const QUrl& address);

private:
    void makeParts();
    void makeActions(QVBoxLayout& column);
    void follow(const ChangeSet& changes);
    void showClips();
    void showOne(const Clip& clip);
    void showSeveral();
    void showPlaceholder();
    void showRows(const QList<DetailRow>& rows);
    [[nodiscard]] QString sourceOf(const Clip& clip) const;
    void showChips();
    void makeChips();
    void showPin(bool isPinned);
    void openTransformMenu();
    [[nodiscard]] QSet<QUuid> commonGroups() const;

    Services m_services;
    LibraryLook m_look;
    QList<QUuid> m_clips;
    std::shared_ptr<Clip> m_clip;  ///< Where one alone is shown.
    QWidget* m_parts;
    QWidget* m_placeholder;
    DetailHeader* m_header;
    PushButton* m_copy;
    PushButton* m_transform;
    PushButton* m_pin;
    PushButton* m_delete;
    DetailContentBox* m_content;
    QWidget* m_single;  ///< What is shown of one clip alone.
    QGridLayout* m_rows;
    QLabel* m_sourceIcon = nullptr;  ///< Of the rows that are shown.
    QList<QLabel*> m_headings;
    FlowLayout* m_chips;
    QList<GroupItem> m_shownGroups;
    QList<MembershipChip*> m_chipButtons;
    QList<DetailRow> m_shownRows;
    bool m_isPinned = false;
};

}  // namespace quillo
