// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

#include "library/list/clip_list_model.h"
#include "model/search/clip_search.h"

namespace quillo {

/// Which clips a list has, newest first: without a search text the newest ones up to a number, and
/// with one every clip whose first text contains it. Follows the store. Main thread.
class ListedClips final : public QObject {
    Q_OBJECT

public:
    /// newestOnly is that number. Everything must outlive the object.
    ListedClips(PersistenceController& persistence, ClipSearch& sharedSearch, const Clock& clock,
                qsizetype newestOnly, QObject* parent = nullptr);

    [[nodiscard]] ClipListModel& model() { return m_model; }
    [[nodiscard]] const QString& searchText() const { return m_searchText; }
    /// White space and line breaks around it are left out. The rows follow a moment later.
    void setSearchText(const QString& text);

Q_SIGNALS:
    /// The rows are about to be other ones, and are.
    void aboutToRefresh();
    void refreshed();

private:
    [[nodiscard]] bool isSearched() const { return !m_searchText.isEmpty(); }
    void refresh();
    void searchAgain();
    void showNewest();
    void show(const QList<QUuid>& ids);

    PersistenceController& m_persistence;
    ClipListModel m_model;
    ClipSearch m_search;
    const qsizetype m_newestOnly;
    QString m_searchText;
    bool m_isNewQuestion = true;  ///< Not only the store has changed.
};

}  // namespace quillo
