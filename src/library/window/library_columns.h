// SPDX-License-Identifier: MIT
#pragma once

#include <QSplitter>
#include <QTimer>

#include "library/window/library_look.h"
#include "platform/user_defaults.h"

namespace quillo {

/// How wide the two outer columns are, and whether they are shown.
struct ColumnWidths {
    int sidebar = 194;
    int detail = 298;
    bool isSidebarShown = true;
    bool isDetailShown = true;

    friend bool operator==(const ColumnWidths&, const ColumnWidths&) = default;
};

/// What is stored of them, within the bounds; anything unreadable reads as what they start with.
[[nodiscard]] ColumnWidths storedColumnWidths(const UserDefaults& defaults);
void storeColumnWidths(UserDefaults& defaults, const ColumnWidths& widths);

/// Sidebar, content and detail side by side. The lines between them can be dragged, the outer two
/// hidden; what the person chose is kept. The content takes what the others leave.
class LibraryColumns final : public QSplitter {
    Q_OBJECT

public:
    /// The widgets are taken over; defaults must outlive this.
    LibraryColumns(UserDefaults& defaults, QWidget* sidebar, QWidget* content, QWidget* detail,
                   QWidget* parent = nullptr);
    ~LibraryColumns() override;

    [[nodiscard]] const ColumnWidths& columnWidths() const { return m_widths; }
    void showSidebar(bool isShown);
    void showDetail(bool isShown);
    void setLook(const LibraryLook& look);

protected:
    void resizeEvent(QResizeEvent* event) override;
    QSplitterHandle* createHandle() override;

private:
    void apply();
    void moved();

    UserDefaults& m_defaults;
    ColumnWidths m_widths;
    QTimer m_storeSoon;
};

}  // namespace quillo
