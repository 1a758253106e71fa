// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QSet>
#include <QUuid>

namespace quillo {

/// Which clips of a list are selected, by their identifiers, so that a list that changes keeps
/// them. One of them is the current one: it has the focus, and keys start from it.
class ClipSelection final {
public:
    [[nodiscard]] const QUuid& current() const { return m_current; }
    [[nodiscard]] bool isEmpty() const { return m_clips.isEmpty(); }
    [[nodiscard]] qsizetype size() const { return m_clips.size(); }
    [[nodiscard]] bool contains(const QUuid& clip) const { return m_clips.contains(clip); }
    [[nodiscard]] const QSet<QUuid>& clips() const { return m_clips; }
    /// In the list's order.
    [[nodiscard]] QList<QUuid> inOrderOf(const QList<QUuid>& list) const;

    void clear();
    /// This one alone; a range starts from it.
    void choose(const QUuid& clip);
    /// Adds or removes one; it becomes the current one, from which a range starts.
    void toggle(const QUuid& clip);
    /// Everything between where the range starts and this clip, and nothing else.
    void extendTo(const QUuid& clip, const QList<QUuid>& list);
    void chooseAll(const QList<QUuid>& list);
    /// One more, or one less; the current one stays.
    void add(const QUuid& clip) { m_clips.insert(clip); }
    void remove(const QUuid& clip) { m_clips.remove(clip); }
    /// Where nothing selected is the current one, the first of the list that is selected becomes
    /// it, and a range starts from it.
    void findCurrent(const QList<QUuid>& list);
    /// The current one is another; what is selected stays.
    void moveTo(const QUuid& clip) { m_current = clip; }

    /// Takes over another state of the list: what is gone is no longer selected; where nothing is
    /// left, the clip behind the current one is.
    void follow(const QList<QUuid>& before, const QList<QUuid>& after);

    friend bool operator==(const ClipSelection&, const ClipSelection&) = default;

private:
    [[nodiscard]] QUuid standIn(const QList<QUuid>& before, const QList<QUuid>& after) const;

    QSet<QUuid> m_clips;
    QUuid m_current;
    QUuid m_rangeStart;
};

}  // namespace quillo
