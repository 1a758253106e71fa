// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QLabel>
#include <QWidget>
#include <optional>

#include "library/groups/group_list.h"
#include "library/groups/panel_button.h"
#include "library/window/library_look.h"
#include "model/clip.h"

namespace quillo {

/// The uppermost part of the detail pane: a tile with the symbol of the kind, a headline, a quiet
/// line below it and, for what is pinned, a mark.
class DetailHeader final : public QWidget {
    Q_OBJECT

public:
    struct Content {
        QString symbol;
        QColor tile;
        QString headline;
        QString line;
        bool isPinned = false;
    };

    explicit DetailHeader(QWidget* parent = nullptr);

    void setContent(const Content& content);
    void setLook(const LibraryLook& look);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Content m_content;
    LibraryLook m_look;
};

/// A picture scaled to fit, at most 300 high; a symbol until it is there, or where there is none.
class DetailImageView final : public QWidget {
    Q_OBJECT

public:
    static constexpr int kMostHeight = 300;

    explicit DetailImageView(QWidget* parent = nullptr);

    /// size is the picture's own, in its pixels: a small one is not enlarged. A null image shows
    /// the symbol.
    void setImage(const QImage& image, const QSize& size, const QString& symbol);
    void setLook(const LibraryLook& look);

    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QImage m_image;
    QSize m_size;
    QString m_symbol;
    LibraryLook m_look;
};

/// A group as a chip that says whether a clip is a member, and changes it when it is pressed.
class MembershipChip final : public PanelButton {
    Q_OBJECT

public:
    static constexpr int kHeight = 26;

    MembershipChip(const GroupItem& item, QWidget* parent);

    [[nodiscard]] const QUuid& group() const { return m_item.id; }
    void setLook(const LibraryLook& look);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] QString shownTitle() const;

    GroupItem m_item;
    LibraryLook m_look;
};

/// As wide as its text and symbol need with little beside them, so that three stand in one line.
void setTightWidth(QWidget& button);

/// A heading between the parts of the pane.
[[nodiscard]] QLabel* detailHeading(const QString& text);

/// "22 November 2026 at 10:42", and "22 Nov 2026, 10:42:07".
[[nodiscard]] QString dateAndTime(Timestamp moment);
[[nodiscard]] QString shortDateAndTime(Timestamp moment);

/// One labelled row of the details.
struct DetailRow {
    QString label;
    QString value;
    bool hasSourceIcon = false;

    friend bool operator==(const DetailRow&, const DetailRow&) = default;
};
/// The rows that a clip has, in their order; source is the display name of its program.
[[nodiscard]] QList<DetailRow> detailRows(const Clip& clip, const QString& source);

}  // namespace quillo
