// SPDX-License-Identifier: MIT
#pragma once

#include <QLayout>
#include <QList>

namespace quillo {

/// Where boxes of these sizes go, one behind the other, in lines no wider than `width`; a box that
/// is wider has a line of its own. The origin is the upper left corner.
struct FlowPlaces {
    QList<QRect> boxes;
    int height = 0;
};
[[nodiscard]] FlowPlaces flowPlaces(const QList<QSize>& sizes, int width, int spacing);

/// Lays widgets out that way, each in the size that it wants.
class FlowLayout final : public QLayout {
    Q_OBJECT

public:
    explicit FlowLayout(int spacing, QWidget* parent = nullptr);
    ~FlowLayout() override;

    void addItem(QLayoutItem* item) override { m_items.append(item); }
    [[nodiscard]] int count() const override { return int(m_items.size()); }
    [[nodiscard]] QLayoutItem* itemAt(int index) const override { return m_items.value(index); }
    [[nodiscard]] QLayoutItem* takeAt(int index) override;
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] QSize minimumSize() const override;
    [[nodiscard]] QSize sizeHint() const override { return minimumSize(); }
    [[nodiscard]] Qt::Orientations expandingDirections() const override { return {}; }
    void setGeometry(const QRect& area) override;

private:
    /// What is hidden takes no place.
    [[nodiscard]] QList<QLayoutItem*> shownItems() const;
    [[nodiscard]] QList<QSize> sizes() const;

    QList<QLayoutItem*> m_items;
};

}  // namespace quillo
