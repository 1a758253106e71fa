// SPDX-License-Identifier: MIT
#pragma once

#include <QDateTime>
#include <QHash>
#include <optional>

#include "platform/application_index.h"
#include "platform/freedesktop/desktop_entry.h"

namespace quillo {

/// The desktop entries of some folders as they were at one moment. A value; looking up costs a
/// few hash look-ups.
class DesktopEntryCatalogue final {
public:
    /// Reads the folders ("…/applications"), the first of which wins where two have an entry of
    /// the same id. Bounded: entries of up to 256 KiB, 20,000 files, eight folders deep.
    [[nodiscard]] static DesktopEntryCatalogue scan(const QStringList& folders,
                                                    const QList<QByteArray>& locales);

    [[nodiscard]] std::optional<InstalledApplication> application(const QString& identifier) const;

    /// In this order: an entry whose StartupWMClass is the instance or the class; one named after
    /// the class or the instance, or whose last dotted component is the class; one named like the
    /// GTK application id. Case counts nowhere.
    [[nodiscard]] std::optional<InstalledApplication> applicationOfWindow(
        const ProgramTraces& traces) const;

    /// The entry whose Exec starts that program (a file name).
    [[nodiscard]] std::optional<InstalledApplication> applicationOfProgram(
        const QString& program) const;

    /// Whether a folder that was read has changed since.
    [[nodiscard]] bool isOutdated() const;

    [[nodiscard]] qsizetype size() const { return m_entries.size(); }

private:
    void scanFolder(const QString& folder, const QString& idPrefix, int depth);
    void readEntry(const QString& path, const QString& identifier);
    void buildLookups();
    [[nodiscard]] std::optional<InstalledApplication> found(const QHash<QString, QString>& lookup,
                                                            const QString& key) const;

    QList<QByteArray> m_locales;
    int m_filesSeen = 0;
    QHash<QString, DesktopEntry> m_entries;  ///< By id.
    QHash<QString, QDateTime> m_folders;     ///< Time of change; invalid when missing.
    QHash<QString, QString> m_byWmClass;     ///< Lower case to id, as are the next three.
    QHash<QString, QString> m_byIdentifier;
    QHash<QString, QString> m_byLastComponent;
    QHash<QString, QString> m_byProgram;
};

}  // namespace quillo
