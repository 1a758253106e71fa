// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>
#include <QKeySequence>
#include <QList>
#include <QObject>
#include <QRect>
#include <QString>
#include <QVariant>
#include <functional>
#include <optional>

namespace quillo {

/// One line of the status item's menu; one without a title is a separator.
struct StatusMenuItem {
    enum class Mark { None, Unchecked, Checked };

    QString title = {};
    std::function<void(const StatusMenuItem&)> action = {};  ///< None for what cannot be done.
    QKeySequence key = {};
    QIcon icon = {};
    Mark mark = Mark::None;           ///< Checked or Unchecked for one of several choices.
    QVariant representedObject = {};  ///< What the item stands for; for its action.
    QList<StatusMenuItem> submenu = {};
};

/// The program's icon among those of the desktop's panel. What is set is kept while there is no
/// panel for it, and shown when one comes. Main thread; no call waits for another program.
class StatusItem : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// In several sizes: the panel takes what fits.
    virtual void setImage(const QIcon& image) = 0;
    virtual void setToolTip(const QString& text) = 0;
    /// Replaces the menu. Actions are run from the event loop, so that they may replace it too.
    virtual void setMenu(const QList<StatusMenuItem>& items) = 0;

    /// Whether the icon is shown somewhere.
    [[nodiscard]] virtual bool isAvailable() const = 0;
    /// Where the icon is on the screen, in logical pixels; none where the panel does not say.
    [[nodiscard]] virtual std::optional<QRect> iconRect() const = 0;

Q_SIGNALS:
    /// The primary click; the secondary one opens the menu without being told here.
    void activated();
    void availabilityChanged();
};

}  // namespace quillo
