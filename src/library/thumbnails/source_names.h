// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QString>
#include <optional>

#include "platform/workspace.h"

namespace quillo {

/// What a program is called: its desktop entry's name, else the identifier's last part with each
/// word's first letter in upper case; empty for an identifier without parts.
[[nodiscard]] QString sourceNameFor(const QString& bundleIdentifier,
                                    const std::optional<InstalledApplication>& application);

/// The names of the programs that clips come from, each looked up once. Main thread.
class SourceNames {
public:
    /// The workspace must outlive this.
    explicit SourceNames(Workspace& workspace) : m_workspace(workspace) {}

    /// Empty for an empty identifier.
    [[nodiscard]] QString of(const QString& bundleIdentifier);

private:
    Workspace& m_workspace;
    QHash<QString, QString> m_known;
};

}  // namespace quillo
