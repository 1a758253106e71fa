// SPDX-License-Identifier: MIT
#include "platform/freedesktop/desktop_entry_catalogue.h"

#include <QDir>
#include <QFileInfo>
#include <algorithm>

namespace quillo {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kLargestEntry = 256 * 1024;
constexpr int kMostFiles = 20'000;
constexpr int kDeepestFolder = 8;
constexpr QLatin1StringView kSuffix{".desktop"};

QDateTime changeTime(const QString& folder) {
    return QFileInfo(folder).lastModified();
}

void insertFirst(QHash<QString, QString>& lookup, const QString& key, const QString& identifier) {
    const QString lowered = key.toLower();
    if (!lowered.isEmpty() && !lookup.contains(lowered)) {
        lookup.insert(lowered, identifier);
    }
}

}  // namespace

DesktopEntryCatalogue DesktopEntryCatalogue::scan(const QStringList& folders,
                                                  const QList<QByteArray>& locales) {
    DesktopEntryCatalogue catalogue;
    catalogue.m_locales = locales;
    for (const QString& folder : folders) {
        catalogue.scanFolder(folder, QString(), 0);
    }
    catalogue.buildLookups();
    return catalogue;
}

void DesktopEntryCatalogue::scanFolder(const QString& folder, const QString& idPrefix, int depth) {
    // Noted before reading, so that a change while reading shows.
    m_folders.insert(folder, changeTime(folder));
    const QFileInfoList children =
        QDir(folder).entryInfoList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QFileInfo& child : children) {
        if (++m_filesSeen > kMostFiles) {
            return;
        }
        const QString name = child.fileName();
        if (child.isDir()) {
            if (depth < kDeepestFolder) {
                scanFolder(child.filePath(), idPrefix + name + u'-', depth + 1);
            }
        } else if (child.isFile() && name.endsWith(kSuffix)) {
            readEntry(child.filePath(), idPrefix + name.chopped(kSuffix.size()));
        }
    }
}

void DesktopEntryCatalogue::readEntry(const QString& path, const QString& identifier) {
    QFile file(path);
    if (m_entries.contains(identifier) || !file.open(QIODevice::ReadOnly)) {
        return;
    }
    const QByteArray bytes = file.read(kLargestEntry + 1);
    if (bytes.size() > kLargestEntry) {
        return;
    }
    if (const std::optional<DesktopEntry> entry = parseDesktopEntry(bytes, m_locales)) {
        m_entries.insert(identifier, *entry);
    }
}

void DesktopEntryCatalogue::buildLookups() {
    // A hidden entry has masked those of its id in later folders by now.
    m_entries.removeIf([](const auto& item) { return item.value().isHidden; });
    // Where several entries fit, one that menus show comes first, then the shortest id: a
    // program's own entry before those of its documents and actions.
    QStringList identifiers = m_entries.keys();
    std::ranges::sort(identifiers, [this](const QString& left, const QString& right) {
        const auto rank = [this](const QString& identifier) {
            return std::tuple(!m_entries.constFind(identifier)->isVisible, identifier.size());
        };
        return std::tuple(rank(left), left) < std::tuple(rank(right), right);
    });
    for (const QString& identifier : std::as_const(identifiers)) {
        const DesktopEntry& entry = *m_entries.constFind(identifier);
        insertFirst(m_byWmClass, entry.startupWmClass, identifier);
        insertFirst(m_byIdentifier, identifier, identifier);
        insertFirst(m_byLastComponent, identifier.section(u'.', -1), identifier);
        insertFirst(m_byProgram, entry.program, identifier);
    }
}

std::optional<InstalledApplication> DesktopEntryCatalogue::application(
    const QString& identifier) const {
    const auto entry = m_entries.constFind(identifier);
    if (entry == m_entries.cend()) {
        return std::nullopt;
    }
    return InstalledApplication{identifier, entry->name.isEmpty() ? identifier : entry->name,
                                entry->iconName, entry->categories};
}

std::optional<InstalledApplication> DesktopEntryCatalogue::found(
    const QHash<QString, QString>& lookup, const QString& key) const {
    const auto identifier = key.isEmpty() ? lookup.cend() : lookup.constFind(key.toLower());
    return identifier == lookup.cend() ? std::nullopt : application(*identifier);
}

std::optional<InstalledApplication> DesktopEntryCatalogue::applicationOfWindow(
    const ProgramTraces& traces) const {
    // The instance first: a web page installed as a program has its own instance and shares the
    // class of its browser.
    const std::pair<const QHash<QString, QString>&, const QString&> steps[] = {
        {m_byWmClass, traces.windowInstance},    {m_byWmClass, traces.windowClass},
        {m_byIdentifier, traces.windowClass},    {m_byLastComponent, traces.windowClass},
        {m_byIdentifier, traces.windowInstance}, {m_byIdentifier, traces.gtkApplicationId},
    };
    for (const auto& [lookup, key] : steps) {
        if (auto application = found(lookup, key)) {
            return application;
        }
    }
    return std::nullopt;
}

std::optional<InstalledApplication> DesktopEntryCatalogue::applicationOfProgram(
    const QString& program) const {
    return found(m_byProgram, program);
}

bool DesktopEntryCatalogue::isOutdated() const {
    for (auto it = m_folders.cbegin(); it != m_folders.cend(); ++it) {
        if (changeTime(it.key()) != it.value()) {
            return true;
        }
    }
    return false;
}

}  // namespace quillo
