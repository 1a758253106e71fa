// SPDX-License-Identifier: MIT
#include "platform/x11/pasteboard/selection_reader.h"

#include <algorithm>
#include <utility>

namespace quillo::x11 {

namespace {

// An owner that never ends a transfer that was given up is left alone after that many parts.
constexpr int kMostSwallowedParts = 4096;

}  // namespace

SelectionReader::SelectionReader(SelectionContext& context, const PasteboardLimits& limits)
    : m_context(context), m_limits(limits) {
    for (std::size_t i = 0; i < kRingSize; ++i) {
        m_ring.at(i).property = context.names.ring.at(i);
    }
}

void SelectionReader::read(xcb_atom_t target, xcb_timestamp_t time, Answer answer) {
    if (m_stalls >= m_limits.stallsUntilGivenUp) {
        answer(std::nullopt);
        return;
    }
    start(target, time, m_context.now + m_limits.wholeRead, false, std::move(answer));
}

void SelectionReader::abortAll() {
    m_stalls = 0;
    for (Read& read : m_ring) {
        if (isRunning(read)) {
            giveUp(read);
        }
    }
}

void SelectionReader::answered(const xcb_selection_notify_event_t& event) {
    Read* const read = answeredRead(event);
    if (read == nullptr) {
        return;
    }
    if (read->state == State::SwallowingAnswer) {
        const auto property = m_context.property(m_context.window, read->property, 0, true);
        const bool isLarge = property && property->type == m_context.names.incr;
        read->state = isLarge ? State::SwallowingParts : State::Free;
    } else if (event.property == XCB_ATOM_NONE) {
        refused(*read);
    } else {
        receiveAnswer(*read);
    }
}

void SelectionReader::propertyChanged(const xcb_property_notify_event_t& event) {
    if (event.window != m_context.window || event.state != XCB_PROPERTY_NEW_VALUE) {
        return;
    }
    for (Read& read : m_ring) {
        if (read.property == event.atom && read.state == State::Receiving) {
            receivePart(read);
        } else if (read.property == event.atom && read.state == State::SwallowingParts) {
            swallowPart(read);
        }
    }
}

std::optional<TimePoint> SelectionReader::deadline() const {
    std::optional<TimePoint> first;
    for (const Read& read : m_ring) {
        if (isRunning(read) && (!first || read.next < *first)) {
            first = read.next;
        }
    }
    return first;
}

void SelectionReader::expire() {
    for (Read& read : m_ring) {
        if (isRunning(read) && read.next <= m_context.now) {
            ++m_stalls;
            giveUp(read);
        }
    }
}

/// A place of the ring that nobody waits for, unused ones first, then the one given up longest
/// ago: a late answer to that is the least likely.
SelectionReader::Read* SelectionReader::takeFromRing() {
    for (std::size_t step = 0; step < kRingSize; ++step) {
        Read& read = m_ring.at((m_nextSlot + step) % kRingSize);
        if (read.state == State::Free) {
            m_nextSlot = (m_nextSlot + step + 1) % kRingSize;
            return &read;
        }
    }
    Read* oldest = nullptr;
    for (Read& read : m_ring) {
        if (!isRunning(read) && (oldest == nullptr || read.serial < oldest->serial)) {
            oldest = &read;
        }
    }
    return oldest;
}

void SelectionReader::start(xcb_atom_t target, xcb_timestamp_t time, TimePoint whole,
                            bool isSecondTry, Answer answer) {
    Read* const read = takeFromRing();
    if (read == nullptr) {
        answer(std::nullopt);
        return;
    }
    const xcb_atom_t property = read->property;
    *read = Read{};
    read->state = State::Asked;
    read->property = property;
    read->target = target;
    read->time = time;
    read->serial = ++m_lastSerial;
    read->whole = whole;
    read->next = std::min<TimePoint>(whole, m_context.now + m_limits.firstByte);
    read->isSecondTry = isSecondTry;
    read->answer = std::move(answer);
    xcb_delete_property(m_context.xcb(), m_context.window, property);
    xcb_convert_selection(m_context.xcb(), m_context.window, m_context.names.clipboard, target,
                          property, time);
}

/// A refusal does not name the property: owners answer in order, so it is the oldest question
/// for that target.
SelectionReader::Read* SelectionReader::answeredRead(const xcb_selection_notify_event_t& event) {
    Read* found = nullptr;
    for (Read& read : m_ring) {
        const bool waits = read.state == State::Asked || read.state == State::SwallowingAnswer;
        const bool fits = event.property != XCB_ATOM_NONE ? read.property == event.property : true;
        if (waits && fits && read.target == event.target &&
            (found == nullptr || read.serial < found->serial)) {
            found = &read;
        }
    }
    return found;
}

void SelectionReader::refused(Read& read) {
    if (m_stalls > 0 && !read.isSecondTry) {
        // A program that was stopped refuses its first request after it wakes.
        read.state = State::Free;
        start(read.target, read.time, read.whole, true, std::move(read.answer));
        return;
    }
    complete(read, std::nullopt);
}

void SelectionReader::receiveAnswer(Read& read) {
    auto property = m_context.property(m_context.window, read.property, m_limits.maxBytes, true);
    if (property && property->type == m_context.names.incr) {
        // The announced size is often a lie: what arrives is bounded instead.
        read.state = State::Receiving;
        return;
    }
    if (!property || property->isTooLarge) {
        complete(read, std::nullopt);
        return;
    }
    complete(read, RawReply{m_context.atoms.name(property->type), std::move(property->bytes)});
}

void SelectionReader::receivePart(Read& read) {
    const qsizetype room = m_limits.maxBytes - read.reply.bytes.size();
    const auto part = m_context.property(m_context.window, read.property, room, true);
    if (!part) {
        return;
    }
    if (part->isTooLarge || part->bytes.size() > room) {
        giveUp(read);
        return;
    }
    if (read.reply.type.isEmpty()) {
        read.reply.type = m_context.atoms.name(part->type);
    }
    if (part->bytes.isEmpty()) {
        complete(read, std::move(read.reply));
        return;
    }
    read.reply.bytes += part->bytes;
    read.next = std::min<TimePoint>(read.whole, m_context.now + m_limits.progress);
}

void SelectionReader::swallowPart(Read& read) {
    if (++read.swallowedParts > kMostSwallowedParts) {
        return;
    }
    const auto part = m_context.property(m_context.window, read.property, 0, true);
    if (part && part->bytes.isEmpty() && !part->isTooLarge) {
        read.state = State::Free;
    }
}

void SelectionReader::complete(Read& read, std::optional<RawReply> reply) {
    m_stalls = reply ? 0 : m_stalls;
    finish(read, State::Free, std::move(reply));
}

void SelectionReader::giveUp(Read& read) {
    if (read.state == State::Receiving) {
        // The part that may be there now is swallowed like the later ones.
        xcb_delete_property(m_context.xcb(), m_context.window, read.property);
        finish(read, State::SwallowingParts, std::nullopt);
    } else {
        finish(read, State::SwallowingAnswer, std::nullopt);
    }
}

void SelectionReader::finish(Read& read, State state, std::optional<RawReply> reply) {
    const Answer answer = std::exchange(read.answer, nullptr);
    read.state = state;
    read.reply = {};
    answer(std::move(reply));
}

bool SelectionReader::isRunning(const Read& read) {
    return read.state == State::Asked || read.state == State::Receiving;
}

}  // namespace quillo::x11
