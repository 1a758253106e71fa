// SPDX-License-Identifier: MIT
#pragma once

#include <QScrollArea>

class QVBoxLayout;

namespace quillo {

/// A column of sections that scrolls; what gets the keyboard focus is scrolled into view.
class SettingsPage : public QScrollArea {
    Q_OBJECT

public:
    /// The name is for screen readers.
    explicit SettingsPage(const QString& name, QWidget* parent = nullptr);

    /// Takes the widget over.
    void addSection(QWidget* section);

protected:
    bool focusNextPrevChild(bool next) override;

private:
    QVBoxLayout* m_column;
};

}  // namespace quillo
