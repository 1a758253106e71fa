// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include "appearance/palette.h"
#include "overlay/bar_layout.h"
#include "overlay/type_badges.h"

class QLabel;

namespace quillo {

class BarButton;
class ChipRow;
class SearchField;

/// The line above the cards: the program's name, the counts, the search field, the chips and the
/// buttons. Its parts give way as it narrows (bar_layout).
class OverlayBar final : public QWidget {
    Q_OBJECT

public:
    static constexpr int kHeight = 40;

    explicit OverlayBar(QWidget* parent = nullptr);

    [[nodiscard]] SearchField& search() { return *m_search; }
    [[nodiscard]] ChipRow& chips() { return *m_chips; }
    /// The chips and buttons in the order of the Tab key.
    [[nodiscard]] QList<QWidget*> controls() const;

    void setCounts(qsizetype total, const QList<ClipTypeCount>& counts);
    void setLocked(bool isLocked);
    void setColors(const Palette& colors, TypeBadges::KindColor kindColor);
    /// Whether there is a window for them to open.
    void setLibraryAvailable(bool isAvailable);
    void setSettingsAvailable(bool isAvailable);

Q_SIGNALS:
    void lockToggled();
    void libraryRequested();
    void settingsRequested();
    void closeRequested();

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool event(QEvent* event) override;

private:
    [[nodiscard]] BarButton* addButton(const QString& symbol, const QString& name,
                                       const QString& tip);
    [[nodiscard]] BarParts parts() const;
    void layOut();

    QLabel* m_name;
    TypeBadges* m_badges;
    QLabel* m_total;
    SearchField* m_search;
    ChipRow* m_chips;
    BarButton* m_lock;
    BarButton* m_library;
    BarButton* m_settings;
    BarButton* m_close;
};

}  // namespace quillo
