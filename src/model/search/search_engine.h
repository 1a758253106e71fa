// SPDX-License-Identifier: MIT
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <thread>

#include "model/search/search_index.h"
#include "model/search/search_request.h"
#include "model/search/searchable_clip.h"

namespace quillo {

/// The thread that owns the index: takes what changed in the store, in order, and answers
/// requests. Of several requests of a client the newest is answered, a running one is interrupted.
/// It sleeps while there is nothing to do. Any thread may call it; destruction ends it without
/// finishing.
class SearchEngine final {
public:
    /// Called on the engine's thread.
    struct Reports {
        /// Programs whose names are wanted before the next answer.
        std::function<void(const QStringList& identifiers)> sourcesFound;
        std::function<void()> contentsChanged;
        std::function<void(const SearchPage& page)> firstFound;
        std::function<void(const SearchResult& result)> finished;
    };
    /// Reads clips from the store and hands them to the reply on any thread; a clip that is gone
    /// or cannot be read is left out. Returns at once.
    using Reply = std::function<void(QList<SearchableClip>)>;
    using ReadClips = std::function<void(const QList<QUuid>& ids, Reply reply)>;

    SearchEngine(CaseFolding folding, Reports reports, ReadClips readClips);
    ~SearchEngine();
    SearchEngine(const SearchEngine&) = delete;
    SearchEngine& operator=(const SearchEngine&) = delete;

    /// Ends the thread; no report comes after it. What is called later has no effect.
    void stop();

    /// Forgets everything. Requests wait until loaded().
    void reload();
    /// taken is called on the engine's thread once they are in the index.
    void put(QList<SearchableClip> clips, std::function<void()> taken);
    /// Everything was put.
    void loaded();
    /// What became of these clips: present ones are replaced, the others removed.
    void update(const QList<QUuid>& ids, QList<SearchableClip> present);
    void nameSources(const QHash<QString, QString>& names);

    /// Each of those who ask has one request at a time. Returns its number, which no other
    /// request has.
    using Client = const void*;
    quint64 request(Client client, const ClipCriteria& criteria);
    /// Drops a request that is pending or running.
    void cancel(Client client);

private:
    using Command = std::move_only_function<void()>;
    struct Request {
        Client client = nullptr;
        quint64 number = 0;
        ClipCriteria criteria;
    };
    /// The latest complete answer; what a longer search text can only narrow.
    struct Answered {
        SearchIndex::Criteria criteria;
        std::optional<QList<QUuid>> group;
        std::vector<SearchIndex::Slot> slots;
    };

    void post(Command command);
    void index(QList<SearchableClip> clips);
    void loop();
    [[nodiscard]] bool canAnswer() const;
    void contentsChanged();
    void answer(const Request& request);
    [[nodiscard]] bool isSuperseded(const Request& request);
    /// Empty when the request was superseded meanwhile.
    [[nodiscard]] QList<SearchableClip> readAndWait(const QList<QUuid>& ids,
                                                    const Request& request);

    const CaseFolding m_folding;
    const Reports m_reports;
    const ReadClips m_readClips;

    // Of the engine's thread.
    std::stop_token m_stop;
    SearchIndex m_index;
    std::optional<Answered> m_answered;
    bool m_isLoaded = false;
    bool m_areNamesAsked = false;

    std::mutex m_mutex;
    std::condition_variable_any m_wake;
    std::deque<Command> m_commands;
    std::deque<Request> m_requests;      ///< At most one of each client.
    std::map<Client, quint64> m_newest;  ///< None for a client that cancelled.
    quint64 m_lastNumber = 0;
    std::jthread m_thread;  // Last: it uses everything above.
};

}  // namespace quillo
