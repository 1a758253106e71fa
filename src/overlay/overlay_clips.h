// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QList>
#include <QObject>
#include <memory>

#include "library/thumbnails/card_content.h"
#include "model/clip.h"
#include "model/persistence_controller.h"
#include "platform/workspace.h"

namespace quillo {

/// The clips that the panel shows: the newest fifty, and how many there are in all. Follows the
/// view context's change sets, bumps included, while the panel is shown and while it is hidden.
/// Main thread.
class OverlayClips final : public QObject {
    Q_OBJECT

public:
    static constexpr int kMaxVisibleClips = 50;

    /// Both must outlive this.
    OverlayClips(PersistenceController& persistence, Workspace& workspace,
                 QObject* parent = nullptr);

    [[nodiscard]] const QList<std::shared_ptr<Clip>>& clips() const { return m_clips; }
    /// One for each clip, in the same order.
    [[nodiscard]] const QList<CardContent>& cards() const { return m_cards; }
    [[nodiscard]] qsizetype total() const { return m_total; }

    void refresh();

Q_SIGNALS:
    void refreshed();

private:
    [[nodiscard]] QString sourceName(const Clip& clip);

    PersistenceController& m_persistence;
    Workspace& m_workspace;
    QList<std::shared_ptr<Clip>> m_clips;
    QList<CardContent> m_cards;
    QHash<QString, QString> m_sourceNames;
    qsizetype m_total = 0;
};

/// What a program is called: its desktop entry's name, else the identifier's last part with each
/// word's first letter in upper case; empty for an identifier without parts.
[[nodiscard]] QString sourceNameFor(const QString& bundleIdentifier,
                                    const std::optional<InstalledApplication>& application);

}  // namespace quillo
