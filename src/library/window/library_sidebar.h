// SPDX-License-Identifier: MIT
#pragma once

#include <QScrollArea>

#include "library/groups/popup_menu.h"
#include "library/window/library_sections.h"
#include "library/window/sidebar_row.h"

class QLabel;
class QVBoxLayout;

namespace quillo {

class PushButton;

/// The sections of the library, and below them the pinboards: chosen by a click or the arrow keys,
/// brought into another order by dragging or with Alt and the arrow keys. Clips can be dropped on
/// a pinboard and on the favourites. Colour and order are saved here; everything else is asked
/// for.
class LibrarySidebar final : public QScrollArea {
    Q_OBJECT

public:
    /// The sections must outlive the sidebar.
    explicit LibrarySidebar(const LibrarySections& sections, QWidget* parent = nullptr);

    [[nodiscard]] const LibrarySection& section() const { return m_section; }
    /// Shows it as the chosen one.
    void setSection(const LibrarySection& section);
    void setLook(const LibraryLook& look);
    /// The row of the chosen section takes the keyboard focus.
    void focusSection();

    [[nodiscard]] const QList<SidebarRow*>& rows() const { return m_rows; }
    /// What a row's context menu offers.
    [[nodiscard]] std::vector<MenuEntry> menuOf(const QUuid& pinboard);

Q_SIGNALS:
    void sectionChosen(const LibrarySection& section);
    /// For a new pinboard, or for that one.
    void editorRequested(std::optional<QUuid> pinboard);
    void renameRequested(const QUuid& pinboard);
    void deleteRequested(const QUuid& pinboard);
    /// A letter, which belongs into the search field.
    void typed(const QString& text);
    /// The clip that the drag names; its source may know of more.
    void clipDropped(const LibrarySection& section, const QUuid& clip);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] QList<SidebarRowContent> contents() const;
    void updateRows();
    void makeRows(const QList<SidebarRowContent>& contents);
    [[nodiscard]] SidebarRow* takeRow(const SidebarRowContent& content);
    [[nodiscard]] SidebarRow* makeRow(const SidebarRowContent& content);
    [[nodiscard]] SidebarRow* rowOf(const LibrarySection& section) const;
    [[nodiscard]] LibrarySection sectionAtHand() const;
    void markSection();
    void focusRow(const LibrarySection& section);
    void choose(const LibrarySection& section);
    void chooseBeside(int step);
    void openMenu(const SidebarRow& row, const QRect& anchor);
    [[nodiscard]] MenuEntry colorMenuOf(const QUuid& pinboard);
    [[nodiscard]] int placeAt(const QPoint& contentPoint) const;
    void showPlace(int place);
    void movePinboard(const QUuid& pinboard, int place);
    [[nodiscard]] bool dragOver(const QDropEvent& event);
    void drop(const QDropEvent& event);
    void markDropTarget(const SidebarRow* target);

    const LibrarySections& m_sections;
    LibrarySection m_section;
    LibraryLook m_look;
    QWidget* m_content;
    QVBoxLayout* m_column;
    QLabel* m_libraryHeading;
    QLabel* m_pinboardsHeading;
    PushButton* m_plus;
    QWidget* m_placeLine;  ///< Where a dragged row would go.
    QList<SidebarRow*> m_rows;
};

}  // namespace quillo
