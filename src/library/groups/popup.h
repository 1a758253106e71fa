// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>
#include <QWidget>

#include "library/groups/popup_geometry.h"
#include "library/groups/popup_look.h"

class QScrollArea;

namespace quillo {

/// A floating ground inside the panel: a child widget of it, so that it works where a window can
/// have no popups. Stays within the panel, scrolls what is too long, takes the keyboard focus and
/// gives it back. Escape, a click outside (which does nothing else), the panel's hiding and
/// QWidget::close() close it. Keys that nobody inside wants end here, but for those with Control
/// and Escape, so that the panel can be hidden.
///
/// One at a time: opening another closes it, unless the other is opened from inside it. Whoever
/// looks at keys before the widgets do asks openIn() and lets them through.
class Popup : public QWidget {
    Q_OBJECT

public:
    static constexpr int kRadius = 10;
    /// Around the ground, for the shadow; part of the widget.
    static constexpr int kShadow = 24;

    explicit Popup(QWidget* panel, const Palette& colors = paletteFor(ColorScheme::Light));
    ~Popup() override;

    /// The uppermost open popup of the panel that a widget lies in; none is null.
    [[nodiscard]] static Popup* openIn(const QWidget* panel);
    /// Closes all popups of the panel.
    static void closeAll(const QWidget* panel);

    [[nodiscard]] bool isOpen() const { return m_isOpen; }
    [[nodiscard]] QWidget* panel() const { return parentWidget(); }
    /// The ground in the panel's coordinates.
    [[nodiscard]] QRect ground() const;
    [[nodiscard]] const PopupLook& look() const { return m_look; }
    [[nodiscard]] const Palette& panelColors() const { return m_colors; }

    /// Takes the widget over.
    void setContent(QWidget* content);
    [[nodiscard]] QWidget* content() const { return m_content; }

    /// The colours of the panel, from PanelLook::palette().
    void setColors(const Palette& colors);

    /// The anchor is in the panel's coordinates; an empty rectangle is a point. Opening an open
    /// one moves it.
    void openAt(const QRect& anchor, PopupSide side = PopupSide::Below);

    /// Where a widget of the panel lies in the panel's coordinates.
    [[nodiscard]] static QRect anchorOf(const QWidget& widget);

Q_SIGNALS:
    void opened();
    /// After the focus is back.
    void closed();

protected:
    /// The colours are others, or are set for the first time.
    virtual void lookChanged() {}
    /// What gets the focus when the popup opens; by default the first that wants it.
    [[nodiscard]] virtual QWidget* initialFocus() const;
    void setGap(int gap) { m_gap = gap; }
    void setAlignment(PopupAlignment alignment) { m_alignment = alignment; }
    void setBelow(Popup* popup) { m_below = popup; }
    /// Scrolls so far that a widget of the content is seen.
    void showWidget(QWidget& widget);
    /// Places it anew, for content that changed its size.
    void place();

    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] static QList<Popup*> openPopups(const QWidget* panel);
    [[nodiscard]] static Popup* around(const QWidget* widget);
    [[nodiscard]] bool isUnder(const Popup* other) const;
    [[nodiscard]] QSize wantedSize() const;
    [[nodiscard]] QList<QWidget*> focusStops() const;
    [[nodiscard]] bool isOfPanel(const QObject* watched) const;
    [[nodiscard]] bool pressedOutside(const QPoint& position);
    void focusMoved(const QWidget* now);
    void closeOthers();
    void finishClosing();
    void giveFocusBack();
    void styleScrollBar();

    Palette m_colors;
    PopupLook m_look;
    QScrollArea* m_scroll;
    QWidget* m_content = nullptr;
    QPointer<Popup> m_below;  ///< From inside which it was opened.
    QPointer<QWidget> m_focusBefore;
    QRect m_anchor;
    PopupSide m_side = PopupSide::Below;
    PopupAlignment m_alignment = PopupAlignment::Leading;
    int m_gap = 4;
    bool m_isOpen = false;
};

}  // namespace quillo
