// SPDX-License-Identifier: MIT
#include "model/search/clip_search.h"

#include <algorithm>
#include <atomic>

#include "base/logging.h"
#include "model/search/search_engine.h"

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcSearch, "ClipSearch")

// A few milliseconds of the store's thread at a time, so that a capture never waits for long.
constexpr qsizetype kClipsAtOnce = 1000;
constexpr qsizetype kManyChanges = 5000;

QList<QUuid> changedClips(const ChangeSet& changes) {
    QList<QUuid> ids;
    const auto add = [&ids](const ObjectId& id) {
        if (id.entity == Entity::Clip) {
            ids.append(id.key);
        }
    };
    std::ranges::for_each(changes.inserted, add);
    for (const ChangeSet::Update& update : changes.updated) {
        if (!update.attributes.isEmpty()) {
            add(update.id);
        }
    }
    return ids;
}

QList<QUuid> deletedClips(const ChangeSet& changes) {
    QList<QUuid> ids;
    for (const ObjectId& id : changes.deleted) {
        if (id.entity == Entity::Clip) {
            ids.append(id.key);
        }
    }
    return ids;
}

// Reads the store into the engine, each piece in a job of its own.
class Loading final {
public:
    Loading(PersistenceController& persistence, std::weak_ptr<SearchEngine> engine,
            std::shared_ptr<std::atomic<quint64>> newest)
        : m_persistence(persistence),
          m_engine(std::move(engine)),
          m_newest(std::move(newest)),
          m_number(++*m_newest) {}

    void readFrom(qint64 place) const {
        m_persistence.perform([self = *this, place](ObjectContext& context) {
            const std::shared_ptr<SearchEngine> engine = self.m_engine.lock();
            if (engine == nullptr || *self.m_newest != self.m_number) {
                return;
            }
            auto piece = readSearchableClips(context, place, kClipsAtOnce);
            if (!piece) {
                qCCritical(lcSearch, "Cannot read the clips to search: %s",
                           qUtf8Printable(piece.error().text));
            }
            if (!piece || !piece->end) {
                engine->loaded();
                return;
            }
            // One after the other: pieces that wait would fill the memory.
            engine->put(std::move(piece->clips), [self, end = *piece->end] { self.readFrom(end); });
        });
    }

private:
    PersistenceController& m_persistence;
    std::weak_ptr<SearchEngine> m_engine;
    std::shared_ptr<std::atomic<quint64>> m_newest;
    quint64 m_number;
};

}  // namespace

ClipSearch::ClipSearch(PersistenceController& persistence, Options options, QObject* parent)
    : QObject(parent),
      m_persistence(persistence),
      m_options(std::move(options)),
      m_newestLoad(std::make_shared<std::atomic<quint64>>(0)) {
    const auto onMainThread = [this](auto work) {
        QMetaObject::invokeMethod(this, std::move(work), Qt::QueuedConnection);
    };
    m_engine = std::make_shared<SearchEngine>(
        m_options.folding,
        SearchEngine::Reports{
            .sourcesFound =
                [=, this](const QStringList& identifiers) {
                    onMainThread([=, this] { nameSources(identifiers); });
                },
            .contentsChanged = [=, this] { onMainThread([this] { Q_EMIT contentsChanged(); }); },
            .firstFound =
                [=, this](const SearchPage& page) {
                    onMainThread([=, this] { Q_EMIT pageFound(page); });
                },
            .finished =
                [=, this](const SearchResult& result) {
                    onMainThread([=, this] { Q_EMIT resultFound(result); });
                }},
        [&store = m_persistence](const QList<QUuid>& ids, SearchEngine::Reply reply) {
            store.perform([ids, reply = std::move(reply)](ObjectContext& context) {
                reply(readSearchableClips(context, ids).value_or(QList<SearchableClip>()));
            });
        });
    listenTo(*this);
    connect(&m_persistence.viewContext(), &ObjectContext::changed, this, &ClipSearch::follow);
    load();
}

ClipSearch::ClipSearch(ClipSearch& shared, QObject* parent)
    : QObject(parent),
      m_persistence(shared.m_persistence),
      m_isShared(true),
      m_engine(shared.m_engine) {
    listenTo(shared);
    connect(&shared, &ClipSearch::contentsChanged, this, &ClipSearch::contentsChanged);
}

ClipSearch::~ClipSearch() {
    if (m_isShared) {
        m_engine->cancel(this);
    } else {
        m_engine->stop();
    }
}

void ClipSearch::listenTo(ClipSearch& answers) {
    connect(&answers, &ClipSearch::pageFound, this, [this](const SearchPage& page) {
        if (page.number == m_number) {
            Q_EMIT firstFound(page);
        }
    });
    connect(&answers, &ClipSearch::resultFound, this, [this](const SearchResult& result) {
        if (result.number == m_number) {
            Q_EMIT finished(result);
        }
    });
}

void ClipSearch::load() {
    Loading(m_persistence, m_engine, m_newestLoad).readFrom(0);
}

quint64 ClipSearch::request(const ClipCriteria& criteria) {
    m_number = m_engine->request(this, criteria);
    return *m_number;
}

void ClipSearch::cancel() {
    m_engine->cancel(this);
    m_number.reset();
}

void ClipSearch::follow(const ChangeSet& changes) {
    const QList<QUuid> present = changedClips(changes);
    if (changes.everything || present.size() > kManyChanges) {
        m_engine->reload();
        load();
        return;
    }
    const QList<QUuid> ids = present + deletedClips(changes);
    if (ids.isEmpty()) {
        return;
    }
    m_persistence.perform([engine = std::weak_ptr(m_engine), ids, present](ObjectContext& context) {
        if (const std::shared_ptr<SearchEngine> target = engine.lock()) {
            auto clips = readSearchableClips(context, present);
            if (!clips) {
                qCCritical(lcSearch, "Cannot read changed clips: %s",
                           qUtf8Printable(clips.error().text));
            }
            target->update(ids, std::move(clips).value_or(QList<SearchableClip>()));
        }
    });
}

void ClipSearch::nameSources(const QStringList& identifiers) {
    QHash<QString, QString> names;
    for (const QString& identifier : identifiers) {
        names.insert(identifier,
                     m_options.sourceName ? m_options.sourceName(identifier) : QString());
    }
    m_engine->nameSources(names);
}

}  // namespace quillo
