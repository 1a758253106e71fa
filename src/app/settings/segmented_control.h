// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QWidget>

class QButtonGroup;
class QHBoxLayout;

namespace quillo {

class Segment;

/// A row of choices of which one holds. Tab passes over the row as one stop.
class SegmentedControl final : public QWidget {
    Q_OBJECT

public:
    enum class Arrows {
        Choose,    ///< The arrow keys move the choice.
        MoveOnly,  ///< They move the focus and Space or Return chooses: passing by does harm.
    };

    /// The name is for screen readers.
    explicit SegmentedControl(const QString& name, QWidget* parent = nullptr)
        : SegmentedControl(name, Arrows::Choose, parent) {}
    SegmentedControl(const QString& name, Arrows arrows, QWidget* parent = nullptr);

    /// A symbol stands before the text; none when empty.
    void addSegment(const QString& text, const QString& symbol = {});

    /// Negative when none holds. Sends no signal.
    void setCurrentIndex(int index);
    [[nodiscard]] int currentIndex() const;

Q_SIGNALS:
    /// The person chose.
    void chosen(int index);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QButtonGroup* m_group;
    QHBoxLayout* m_row;
    Arrows m_arrows;
};

/// The Tab key passes over an exclusive group as one stop: at the checked button, or the first.
void keepOneTabStop(const QButtonGroup& group);

}  // namespace quillo
