// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>
#include <functional>

#include "library/groups/group_list.h"
#include "library/groups/panel_tips.h"
#include "library/thumbnails/card_pictures.h"
#include "library/thumbnails/source_names.h"
#include "library/window/clip_detail.h"
#include "library/window/clip_grid.h"
#include "library/window/library_actions.h"
#include "library/window/library_clips.h"
#include "library/window/library_columns.h"
#include "library/window/library_empty_state.h"
#include "library/window/library_search_bar.h"
#include "library/window/library_sections.h"
#include "library/window/library_sidebar.h"
#include "library/window/notice_bar.h"

class QLabel;
class QStackedLayout;

namespace quillo {

/// What the library's content needs; everything must outlive it.
struct LibraryServices {
    PersistenceController& persistence;
    ClipSearch& sharedSearch;
    PasteBack& pasteBack;
    UserDefaults& defaults;
    const ImageCodec& images;
    const RichTextReader& documents;
    ThumbnailService& thumbnails;
    Workspace& workspace;
    const Clock& clock;
    std::function<bool(const QUrl&)> openLink;  ///< In the person's browser; false: none is there.
    std::function<void(const QUrl&)> showFile;  ///< In the person's file manager.
    std::function<QString()> shortcut;          ///< The panel's, in words.
};

/// The content of the library window: sections, the clips of one of them, and the chosen clip in
/// full. Looks as its palette does. Main thread.
class LibraryView final : public QWidget {
    Q_OBJECT

public:
    static constexpr QSize kLeastSize{900, 600};

    explicit LibraryView(LibraryServices services, QWidget* parent = nullptr);
    ~LibraryView() override;

    [[nodiscard]] ClipGrid& grid() { return *m_grid; }
    [[nodiscard]] LibrarySidebar& sidebar() { return *m_sidebar; }
    [[nodiscard]] LibraryClips& clips() { return m_clips; }
    void showSection(const LibrarySection& section);

protected:
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    [[nodiscard]] QWidget* makeContent();
    void connectParts();
    void connectDetail();
    void addShortcuts();
    void keepFocus(const QWidget& column);
    void applyLook();
    void sectionsChanged();
    void listChanged();
    void lendFocus();
    void clearFilters();
    void showEmptyState();
    void undo();
    void copySelected();
    void deleteSelected();
    void deletePinboard(const QUuid& pinboard);
    void openMenu(const QRect& anchor);
    [[nodiscard]] MenuEntry pinboardMenu();
    /// For a new pinboard, or for that one.
    void openEditor(std::optional<QUuid> pinboard = {});
    void openRename(const QUuid& pinboard);
    void takeDrop(const LibrarySection& section, const QUuid& clip);
    [[nodiscard]] std::unique_ptr<QMimeData> dragData(const QList<QUuid>& clips) const;
    [[nodiscard]] QPixmap sourceIcon(const Clip& clip);
    void storeChanged(const ChangeSet& changes);

    LibraryServices m_services;
    SourceNames m_sourceNames;
    GroupList m_groups;
    LibrarySections m_sections;
    LibraryClips m_clips;
    CardPictures m_pictures;
    DetailLoader m_loader;
    LibraryActions m_actions;
    LibraryLook m_look;
    PanelTips* m_tips;
    LibrarySidebar* m_sidebar;
    QLabel* m_title;
    PushButton* m_newPinboard;
    QWidget* m_line;
    LibrarySearchBar* m_searchBar;
    QStackedLayout* m_stack = nullptr;
    ClipGrid* m_grid;
    LibraryEmptyState* m_empty;
    ClipDetail* m_detail;
    LibraryColumns* m_columns;
    NoticeBar* m_notice;
    bool m_isFocusLent = false;  ///< The search field has it while there are no cards.
};

/// What stands in place of an empty grid.
struct LibraryQuestion {
    LibrarySection::Kind section = LibrarySection::Kind::AllClips;
    QString searchText;
    std::optional<FilterType> filter;
    QString shortcut;  ///< The panel's, in words.
};
[[nodiscard]] LibraryEmptyState::Texts libraryEmptyTexts(const LibraryQuestion& question);

}  // namespace quillo
