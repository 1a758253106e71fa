// SPDX-License-Identifier: MIT
#include "overlay/overlay_clips.h"

#include <algorithm>

#include "base/logging.h"

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcOverlay, "SimpleOverlayView")

FetchRequest newestFirst() {
    FetchRequest request;
    request.sort = {{int(ClipAttribute::CreatedAt), Qt::DescendingOrder}};
    request.limit = OverlayClips::kMaxVisibleClips;
    return request;
}

bool concernsClips(const ChangeSet& changes) {
    const auto isClip = [](const ObjectId& id) { return id.entity == Entity::Clip; };
    return changes.everything ||
           std::any_of(changes.inserted.begin(), changes.inserted.end(), isClip) ||
           std::any_of(changes.deleted.begin(), changes.deleted.end(), isClip) ||
           std::any_of(changes.updated.begin(), changes.updated.end(),
                       [&](const ChangeSet::Update& update) { return isClip(update.id); });
}

QString capitalized(const QString& text) {
    QString result = text.toLower();
    bool startsWord = true;
    for (QChar& c : result) {
        c = startsWord ? c.toUpper() : c;
        startsWord = !c.isLetterOrNumber() && c != u'\'';
    }
    return result;
}

}  // namespace

OverlayClips::OverlayClips(PersistenceController& persistence, Workspace& workspace,
                           QObject* parent)
    : QObject(parent), m_persistence(persistence), m_workspace(workspace) {
    connect(&m_persistence.viewContext(), &ObjectContext::changed, this,
            [this](const ChangeSet& changes) {
                if (concernsClips(changes)) {
                    refresh();
                }
            });
}

void OverlayClips::refresh() {
    ObjectContext& context = m_persistence.viewContext();
    Result<QList<std::shared_ptr<Clip>>> clips = context.fetch<Clip>(newestFirst());
    const Result<qsizetype> total = context.count(FetchRequest{});
    if (!clips || !total) {
        const Error& error = clips ? total.error() : clips.error();
        qCCritical(lcOverlay, "Error fetching clips: %s", qUtf8Printable(error.text));
        return;
    }
    m_clips = std::move(*clips);
    m_total = *total;
    m_cards.clear();
    for (const std::shared_ptr<Clip>& clip : m_clips) {
        m_cards.append(cardContentFor(*clip, sourceName(*clip)));
    }
    Q_EMIT refreshed();
}

QString OverlayClips::sourceName(const Clip& clip) {
    const QString identifier = clip.sourceBundleId().value_or(QString());
    if (identifier.isEmpty()) {
        return {};
    }
    const auto known = m_sourceNames.constFind(identifier);
    if (known != m_sourceNames.cend()) {
        return *known;
    }
    const QString name = sourceNameFor(identifier, m_workspace.installedApplication(identifier));
    m_sourceNames.insert(identifier, name);
    return name;
}

QString sourceNameFor(const QString& bundleIdentifier,
                      const std::optional<InstalledApplication>& application) {
    if (application && !application->name.isEmpty()) {
        return application->name;
    }
    const QStringList parts = bundleIdentifier.split(u'.', Qt::SkipEmptyParts);
    return parts.isEmpty() ? QString() : capitalized(parts.constLast());
}

}  // namespace quillo
