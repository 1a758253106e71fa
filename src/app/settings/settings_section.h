// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include "library/groups/form_label.h"

class QHBoxLayout;
class QVBoxLayout;

namespace quillo {

/// One line of a section: a symbol, a title with a caption below it, and controls at the right.
class SettingsRow final : public QWidget {
    Q_OBJECT

public:
    struct Texts {
        QString title;
        QString caption = {};
        QString symbol = {};  ///< No room is kept for it when empty.
    };

    static constexpr int kSymbolColumn = 32;  ///< The symbol and what is right of it.

    explicit SettingsRow(const Texts& texts, QWidget* parent = nullptr);

    /// At the left end.
    void addInFront(QWidget* widget);

    /// In the order of calling, from left to right; a caption of the row wraps beside them.
    void addControl(QWidget* control);
    /// Beside the title ("Enabled").
    void addBesideTitle(QWidget* widget);
    /// Below the caption, from top to bottom, as wide as the row's text; or as wide as the row,
    /// below everything.
    void addBelow(QWidget* widget);
    void addFullWidth(QWidget* widget);

    void setCaption(const QString& caption);
    /// Another one; for rows that were made with a symbol.
    void setSymbol(const QString& symbol);
    [[nodiscard]] FormLabel& caption() { return *m_caption; }
    [[nodiscard]] FormLabel& title() { return *m_title; }

    /// For one of several short rows: the title is not strong, and stands closer to the next.
    void setPlain();
    /// Symbol and title in the colour of what destroys.
    void setDestructive();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_symbol;
    bool m_isDestructive = false;
    FormLabel* m_title;
    FormLabel* m_caption;
    QHBoxLayout* m_line;
    QHBoxLayout* m_titleLine;
    QVBoxLayout* m_texts;
    QVBoxLayout* m_column;
};

/// A rounded ground with rows divided by lines, below a heading where there is one.
class SettingsSection final : public QWidget {
    Q_OBJECT

public:
    explicit SettingsSection(const QString& heading = {}, QWidget* parent = nullptr);

    /// Takes the row over; any widget can be one, SettingsRow or not.
    void addRow(QWidget* row);

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

private:
    FormLabel* m_heading = nullptr;
    QWidget* m_box;
    QVBoxLayout* m_rows;
};

}  // namespace quillo
