// SPDX-License-Identifier: MIT
#include "library/window/clip_selection.h"

#include <algorithm>
#include <iterator>

namespace quillo {

QList<QUuid> ClipSelection::inOrderOf(const QList<QUuid>& list) const {
    if (m_clips.size() == 1) {
        return {*m_clips.cbegin()};
    }
    QList<QUuid> ordered;
    for (const QUuid& clip : list) {
        if (m_clips.contains(clip)) {
            ordered.append(clip);
        }
    }
    return ordered;
}

void ClipSelection::clear() {
    *this = {};
}

void ClipSelection::choose(const QUuid& clip) {
    m_clips = {clip};
    m_current = clip;
    m_rangeStart = clip;
}

void ClipSelection::toggle(const QUuid& clip) {
    if (!m_clips.remove(clip)) {
        m_clips.insert(clip);
    }
    m_current = clip;
    m_rangeStart = clip;
}

void ClipSelection::extendTo(const QUuid& clip, const QList<QUuid>& list) {
    const qsizetype to = list.indexOf(clip);
    const qsizetype start = list.indexOf(m_rangeStart);
    if (to < 0 || start < 0) {
        choose(clip);
        return;
    }
    const qsizetype first = std::min(start, to);
    const auto begin = list.cbegin() + first;
    m_clips = QSet<QUuid>(begin, begin + (std::max(start, to) - first + 1));
    m_current = clip;
}

void ClipSelection::chooseAll(const QList<QUuid>& list) {
    m_clips = QSet<QUuid>(list.begin(), list.end());
    if (!m_clips.contains(m_current)) {
        m_current = list.value(0);
        m_rangeStart = m_current;
    }
}

void ClipSelection::findCurrent(const QList<QUuid>& list) {
    const auto first =
        std::ranges::find_if(list, [this](const QUuid& clip) { return m_clips.contains(clip); });
    if (first != list.end() && !m_clips.contains(m_current)) {
        m_current = *first;
        m_rangeStart = *first;
    }
}

// The next clip that is left, the one before where there is none.
QUuid ClipSelection::standIn(const QList<QUuid>& before, const QList<QUuid>& after) const {
    const auto place = std::ranges::find(before, m_current);
    if (place == before.end()) {
        return {};
    }
    const QSet<QUuid> left(after.begin(), after.end());
    const auto isLeft = [&left](const QUuid& clip) { return left.contains(clip); };
    const auto next = std::find_if(place, before.end(), isLeft);
    if (next != before.end()) {
        return *next;
    }
    const auto previous = std::find_if(std::reverse_iterator(place), before.rend(), isLeft);
    return previous != before.rend() ? *previous : QUuid();
}

void ClipSelection::follow(const QList<QUuid>& before, const QList<QUuid>& after) {
    if (m_clips.isEmpty() && m_current.isNull()) {
        return;
    }
    QSet<QUuid> left;
    bool isCurrentThere = false;
    for (const QUuid& clip : after) {
        if (m_clips.contains(clip)) {
            left.insert(clip);
        }
        isCurrentThere = isCurrentThere || clip == m_current;
    }
    const bool wasSelected = !m_clips.isEmpty();
    m_clips = left;
    if (!isCurrentThere) {
        m_current = standIn(before, after);
        m_rangeStart = m_current;
    }
    if (m_clips.isEmpty() && wasSelected && !m_current.isNull()) {
        m_clips = {m_current};
    }
}

}  // namespace quillo
