// SPDX-License-Identifier: MIT
#include "model/search/search_engine.h"

#include <algorithm>

#include "model/filter_mask.h"
#include "model/search/search_run.h"

namespace quillo {
namespace {

SearchIndex::Criteria indexCriteria(const ClipCriteria& criteria, CaseFolding folding) {
    const quint32 mask = criteria.typeFilter ? filterBit(*criteria.typeFilter) : 0;
    return {.needle = foldedText(criteria.searchText.trimmed(), folding),
            .filterMask = quint16(mask),
            .rule = criteria.rule,
            .isOnlyPinned = criteria.isOnlyPinned};
}

}  // namespace

SearchEngine::SearchEngine(CaseFolding folding, Reports reports, ReadClips readClips)
    : m_folding(folding), m_reports(std::move(reports)), m_readClips(std::move(readClips)) {
    m_index.beginLoading();
    m_thread = std::jthread([this](std::stop_token stop) {
        m_stop = std::move(stop);
        loop();
    });
}

SearchEngine::~SearchEngine() {
    stop();
}

void SearchEngine::stop() {
    m_thread.request_stop();
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

void SearchEngine::reload() {
    post([this] {
        m_index.clear();
        m_index.beginLoading();
        m_isLoaded = false;
    });
}

void SearchEngine::index(QList<SearchableClip> clips) {
    for (SearchableClip& clip : clips) {
        clip.indexed.text = foldedFields(clip, m_folding);
        m_index.put(clip.indexed);
    }
}

void SearchEngine::put(QList<SearchableClip> clips, std::function<void()> taken) {
    post([this, clips = std::move(clips), taken = std::move(taken)]() mutable {
        index(std::move(clips));
        taken();
    });
}

void SearchEngine::loaded() {
    post([this] {
        m_index.finishLoading();
        m_isLoaded = true;
    });
}

void SearchEngine::update(const QList<QUuid>& ids, QList<SearchableClip> present) {
    post([this, ids, clips = std::move(present)]() mutable {
        m_index.remove(ids);
        index(std::move(clips));
    });
}

void SearchEngine::nameSources(const QHash<QString, QString>& names) {
    post([this, names] {
        for (const auto& [identifier, name] : names.asKeyValueRange()) {
            m_index.setSourceName(identifier, foldedText(name, m_folding));
        }
        m_areNamesAsked = false;
    });
}

quint64 SearchEngine::request(Client client, const ClipCriteria& criteria) {
    const std::scoped_lock lock(m_mutex);
    std::erase_if(m_requests, [&](const Request& other) { return other.client == client; });
    m_requests.push_back({client, ++m_lastNumber, criteria});
    m_newest[client] = m_lastNumber;
    m_wake.notify_all();
    return m_lastNumber;
}

void SearchEngine::cancel(Client client) {
    const std::scoped_lock lock(m_mutex);
    std::erase_if(m_requests, [&](const Request& other) { return other.client == client; });
    m_newest.erase(client);
    m_wake.notify_all();
}

void SearchEngine::post(Command command) {
    const std::scoped_lock lock(m_mutex);
    m_commands.push_back(std::move(command));
    m_wake.notify_all();
}

bool SearchEngine::canAnswer() const {
    return !m_requests.empty() && m_isLoaded && !m_areNamesAsked;
}

void SearchEngine::loop() {
    std::unique_lock lock(m_mutex);
    while (m_wake.wait(lock, m_stop, [this] { return !m_commands.empty() || canAnswer(); })) {
        if (m_commands.empty()) {
            const Request request = std::move(m_requests.front());
            m_requests.pop_front();
            lock.unlock();
            answer(request);
        } else {
            Command command = std::move(m_commands.front());
            m_commands.pop_front();
            const bool isLatest = m_commands.empty();
            lock.unlock();
            command();
            if (isLatest) {
                contentsChanged();
            }
        }
        lock.lock();
        if (m_stop.stop_requested()) {
            return;
        }
    }
}

void SearchEngine::contentsChanged() {
    m_answered.reset();
    if (!m_isLoaded || m_areNamesAsked) {
        return;
    }
    if (const QStringList unnamed = m_index.sourcesWithoutName(); !unnamed.isEmpty()) {
        m_areNamesAsked = true;
        m_reports.sourcesFound(unnamed);
        return;
    }
    m_reports.contentsChanged();
}

bool SearchEngine::isSuperseded(const Request& request) {
    const std::scoped_lock lock(m_mutex);
    const auto newest = m_newest.find(request.client);
    return newest == m_newest.end() || newest->second != request.number || m_stop.stop_requested();
}

void SearchEngine::answer(const Request& request) {
    if (!request.criteria.isNarrow()) {
        SearchResult everything{.number = request.number, .ids = {}, .total = m_index.size()};
        std::copy_n(m_index.kindCounts().begin(), everything.kindCounts.size(),
                    everything.kindCounts.begin());
        m_reports.finished(everything);
        return;
    }
    SearchRun run(
        m_index, indexCriteria(request.criteria, m_folding),
        {.isInterrupted = [&] { return isSuperseded(request); },
         .readFields =
             [&](const QList<QUuid>& ids) {
                 QHash<QUuid, QByteArray> fields;
                 const QList<SearchableClip> clips = readAndWait(ids, request);
                 for (const SearchableClip& clip : clips) {
                     fields.insert(clip.indexed.id, foldedFields(clip, m_folding));
                 }
                 return fields;
             },
         .firstFound =
             [&](const QList<QUuid>& ids) { m_reports.firstFound({request.number, ids}); }});
    // Clip by clip costs several times what a scan of everything costs for each clip.
    constexpr size_t kCostOfOne = 8;
    const bool isWorthwhile =
        m_answered && m_answered->slots.size() * kCostOfOne < size_t(m_index.size());
    const bool canNarrow = isWorthwhile && m_answered->group == request.criteria.group &&
                           m_answered->criteria.filterMask == run.criteria().filterMask &&
                           m_answered->criteria.rule == run.criteria().rule &&
                           m_answered->criteria.isOnlyPinned == run.criteria().isOnlyPinned &&
                           run.criteria().needle.contains(m_answered->criteria.needle);
    const bool isComplete = canNarrow ? run.over(m_answered->slots)
                            : request.criteria.group
                                ? run.over(m_index.slotsOf(*request.criteria.group))
                                : run.overEverything();
    if (isComplete) {
        SearchResult result = run.result();
        result.number = request.number;
        m_answered = Answered{run.criteria(), request.criteria.group, run.slotsFound()};
        m_reports.finished(result);
    }
}

QList<SearchableClip> SearchEngine::readAndWait(const QList<QUuid>& ids, const Request& request) {
    // Outlives this call when the request is superseded before the reply comes.
    struct Mailbox {
        std::mutex mutex;
        std::condition_variable arrived;
        std::optional<QList<SearchableClip>> clips;
    };
    const auto mailbox = std::make_shared<Mailbox>();
    m_readClips(ids, [mailbox](QList<SearchableClip> clips) {
        const std::scoped_lock lock(mailbox->mutex);
        mailbox->clips = std::move(clips);
        mailbox->arrived.notify_all();
    });
    std::unique_lock lock(mailbox->mutex);
    while (!mailbox->clips) {
        // The store may be busy with a capture; a newer request need not wait for that.
        mailbox->arrived.wait_for(lock, std::chrono::milliseconds(20));
        if (!mailbox->clips && isSuperseded(request)) {
            return {};
        }
    }
    return std::move(*mailbox->clips);
}

}  // namespace quillo
