// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <atomic>
#include <functional>
#include <memory>

#include "model/persistence_controller.h"
#include "model/search/search_request.h"
#include "model/search/text_folding.h"

namespace quillo {

class SearchEngine;

/// Finds and filters clips at any size of history. Reads everything once, in small pieces on the
/// store's thread, then follows the view context's change sets; requests made before that wait.
/// Answers come as identifiers in display order, never as records. The main thread only hands
/// over requests and takes answers.
///
/// By SearchRule::AnyText a clip is found when the search text, folded as foldedText() does, is
/// contained in its plaintext, urlString, fileName or the name of its source program.
class ClipSearch final : public QObject {
    Q_OBJECT

public:
    struct Options {
        CaseFolding folding = CaseFolding::Default;
        /// What a program is called for people; asked once for each identifier, on the main thread.
        std::function<QString(const QString& identifier)> sourceName;
    };

    /// persistence must outlive this.
    ClipSearch(PersistenceController& persistence, Options options, QObject* parent = nullptr);
    /// Asks what another one has read, with requests of its own. The other must outlive this.
    explicit ClipSearch(ClipSearch& shared, QObject* parent = nullptr);
    ~ClipSearch() override;

    /// Replaces the request before. The answer to request n is one firstFound and then one
    /// finished with that number, for the whole history the latter alone; a replaced request gets
    /// neither any more.
    quint64 request(const ClipCriteria& criteria);
    void cancel();

Q_SIGNALS:
    void firstFound(const SearchPage& page);
    void finished(const SearchResult& result);
    /// Clips came, changed or went: an answer given before may be out of date.
    void contentsChanged();

    /// Answers to the requests of all that share what was read.
    void pageFound(const SearchPage& page);
    void resultFound(const SearchResult& result);

private:
    void listenTo(ClipSearch& answers);
    void load();
    void follow(const ChangeSet& changes);
    void nameSources(const QStringList& identifiers);

    PersistenceController& m_persistence;
    const Options m_options;
    std::optional<quint64> m_number;                     ///< Of the request that is not cancelled.
    std::shared_ptr<std::atomic<quint64>> m_newestLoad;  ///< Of several loads the newest counts.
    const bool m_isShared = false;  ///< Another one reads and follows the store.
    std::shared_ptr<SearchEngine> m_engine;
};

}  // namespace quillo
