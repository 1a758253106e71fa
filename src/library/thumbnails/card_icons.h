// SPDX-License-Identifier: MIT
#pragma once

#include <QCache>
#include <QObject>
#include <QPixmap>
#include <QQueue>
#include <QTimer>
#include <functional>

#include "library/thumbnails/card_content.h"
#include "platform/workspace.h"

namespace quillo {

/// The icons of programs and of kinds of files, from the desktop's icon theme. A theme is looked
/// through on the main thread and takes its time, so an icon is looked up when the event loop has
/// nothing better to do, one at a time, and kept. Main thread.
class CardIcons final : public QObject {
    Q_OBJECT

public:
    static constexpr int kSourceSide = 18;
    static constexpr int kFileSide = 64;

    /// workspace must outlive the icons.
    explicit CardIcons(Workspace& workspace, QObject* parent = nullptr);

    // What made() names an icon by; empty for a card that asks for none.
    [[nodiscard]] static QString sourceKey(const CardContent& card);
    [[nodiscard]] static QString fileKey(const CardContent& card);

    /// The icon of the program or the kind of file that a card names; null where there is none, or
    /// where it was not looked up yet: made() follows then.
    [[nodiscard]] QPixmap source(const CardContent& card, qreal scale);
    [[nodiscard]] QPixmap file(const CardContent& card, qreal scale);

Q_SIGNALS:
    void made(const QString& key);

private:
    struct Kept {
        QPixmap pixmap;
        qreal scale = 1;
    };
    struct Wish {
        QString key;
        qreal scale = 1;
        std::function<QPixmap()> find;
    };

    [[nodiscard]] QPixmap icon(const Wish& wish);
    void makeNext();

    Workspace& m_workspace;
    QCache<QString, Kept> m_icons;
    QQueue<Wish> m_wishes;
    QTimer m_turn;
};

}  // namespace quillo
