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
/// A clip is found when the search text, folded as foldedText() does, is contained in its
/// plaintext, urlString, fileName or the name of its source program.
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

private:
    void load();
    void follow(const ChangeSet& changes);
    void nameSources(const QStringList& identifiers);
    template <typename Answer>
    void deliver(const Answer& answer, void (ClipSearch::*report)(const Answer&));

    PersistenceController& m_persistence;
    const Options m_options;
    quint64 m_number = 0;
    bool m_isCancelled = true;
    std::shared_ptr<std::atomic<quint64>> m_newestLoad;  ///< Of several loads the newest counts.
    std::shared_ptr<SearchEngine> m_engine;
};

}  // namespace quillo
