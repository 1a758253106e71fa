// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>
#include <optional>

#include "library/groups/panel_button.h"
#include "library/groups/popup_menu.h"
#include "library/list/glass_field.h"
#include "library/window/library_look.h"
#include "model/filter_type.h"

namespace quillo {

/// The library's search field.
class LibrarySearchField final : public GlassField {
    Q_OBJECT

public:
    explicit LibrarySearchField(QWidget* parent = nullptr);

    void setLook(const LibraryLook& look);

Q_SIGNALS:
    /// The person is done with the field: Escape where it is empty, Return or Down.
    void left();

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool event(QEvent* event) override;

private:
    LibraryLook m_look;
};

/// Says which kind of clips is shown, and opens the menu of kinds.
class TypePicker final : public PanelButton {
    Q_OBJECT

public:
    explicit TypePicker(QWidget* parent = nullptr);

    void setFilter(std::optional<FilterType> filter);
    void setLook(const LibraryLook& look);
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] std::vector<MenuEntry> entries();

Q_SIGNALS:
    void chosen(std::optional<FilterType> filter);

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void open();

    std::optional<FilterType> m_filter;
    LibraryLook m_look;
};

/// Both beside each other.
/// Whether the key is a letter that begins a search when it is pressed outside the field.
[[nodiscard]] bool isSearchText(const QKeyEvent& event);

class LibrarySearchBar final : public QWidget {
    Q_OBJECT

public:
    explicit LibrarySearchBar(QWidget* parent = nullptr);

    [[nodiscard]] LibrarySearchField& field() { return *m_field; }
    [[nodiscard]] TypePicker& types() { return *m_types; }
    /// The field takes the focus, its text selected.
    void focusField();
    /// Behind its text, as if it had been typed.
    void typeText(const QString& text);
    void setLook(const LibraryLook& look);

private:
    LibrarySearchField* m_field;
    TypePicker* m_types;
};

}  // namespace quillo
