// SPDX-License-Identifier: MIT
#include "platform/x11/pasteboard/x11_pasteboard.h"

#include <pthread.h>
#include <xcb/xfixes.h>

#include <future>
#include <utility>

#include "platform/x11/pasteboard/pasteboard_thread.h"

namespace quillo::x11 {

namespace {

/// The first event number of XFixes; none where the extension is missing or too old to tell of
/// owners.
std::optional<std::uint8_t> xfixesEvent(const Connection& connection) {
    const auto* extension = xcb_get_extension_data(connection.get(), &xcb_xfixes_id);
    if (extension == nullptr || extension->present == 0) {
        return std::nullopt;
    }
    const XcbPtr<xcb_xfixes_query_version_reply_t> version(xcb_xfixes_query_version_reply(
        connection.get(), xcb_xfixes_query_version(connection.get(), 1, 0), nullptr));
    if (!version || version->major_version < 1) {
        return std::nullopt;
    }
    return static_cast<std::uint8_t>(extension->first_event + XCB_XFIXES_SELECTION_NOTIFY);
}

/// Puts a question to the pasteboard's thread and waits for its answer; `absent` when the thread
/// has ended.
template <typename T, typename Question>
T ask(PasteboardLink& link, T absent, const Question& question) {
    auto promise = std::make_shared<std::promise<T>>();
    std::future<T> answer = promise->get_future();
    const bool isPosted = link.queue.post([promise, question](PasteboardThread& thread) {
        question(thread, [promise](T value) { promise->set_value(std::move(value)); });
    });
    return isPosted ? answer.get() : std::move(absent);
}

class Source final : public PasteboardSource {
public:
    Source(std::shared_ptr<PasteboardLink> link, SourceKey key)
        : m_link(std::move(link)), m_key(key) {}

    [[nodiscard]] qint64 changeCount() const override { return m_key.changeCount; }

    [[nodiscard]] QList<QByteArray> targets() override {
        if (!m_targets) {
            m_targets = ask<QList<QByteArray>>(
                *m_link, {}, [key = m_key](PasteboardThread& thread, auto answer) {
                    thread.targets(key, std::move(answer));
                });
            noteAbsence(m_targets->isEmpty());
        }
        return *m_targets;
    }

    [[nodiscard]] std::optional<RawReply> fetch(const QByteArray& target) override {
        auto reply = ask<std::optional<RawReply>>(
            *m_link, std::nullopt, [key = m_key, target](PasteboardThread& thread, auto answer) {
                thread.fetch(key, target, std::move(answer));
            });
        noteAbsence(!reply);
        return reply;
    }

    [[nodiscard]] bool wasSuperseded() const override { return m_wasSuperseded; }

private:
    void noteAbsence(bool isAbsent) {
        m_wasSuperseded |= isAbsent && m_key.changeCount < m_link->supersededBelow;
    }

    std::shared_ptr<PasteboardLink> m_link;
    const SourceKey m_key;
    std::optional<QList<QByteArray>> m_targets;
    bool m_wasSuperseded = false;
};

}  // namespace

Result<std::unique_ptr<X11Pasteboard>> X11Pasteboard::create(const PasteboardConverters& converters,
                                                             const QByteArray& displayName) {
    return create(converters, Options{displayName, {}, {}});
}

Result<std::unique_ptr<X11Pasteboard>> X11Pasteboard::create(const PasteboardConverters& converters,
                                                             Options options) {
    auto connection = connectToServer(options.displayName);
    if (!connection) {
        return std::unexpected(connection.error());
    }
    const auto event = xfixesEvent(*connection);
    if (!event) {
        return failure(ErrorKind::Unsupported,
                       QStringLiteral("the X server does not tell of clipboard owners"));
    }
    auto link = std::make_shared<PasteboardLink>();
    auto thread = std::make_unique<PasteboardThread>(
        std::move(*connection), *event, link,
        PasteboardThread::Settings{converters, options.limits, std::move(options.connectionLost)});
    std::unique_ptr<X11Pasteboard> pasteboard(new X11Pasteboard(link, converters));
    pasteboard->m_thread = std::thread([worker = std::move(thread)] {
        pthread_setname_np(pthread_self(), "pasteboard");
        worker->run();
    });
    return pasteboard;
}

X11Pasteboard::X11Pasteboard(std::shared_ptr<PasteboardLink> link,
                             const PasteboardConverters& converters)
    : m_link(std::move(link)), m_converters(converters) {}

X11Pasteboard::~X11Pasteboard() {
    setListener({});
    // Not posted only when the thread has ended already, with its connection.
    [[maybe_unused]] const bool isPosted =
        m_link->queue.post([](PasteboardThread& thread) { thread.stop(); });
    m_thread.join();
}

qint64 X11Pasteboard::changeCount() const {
    return m_link->changeCount;
}

std::unique_ptr<PasteboardSource> X11Pasteboard::open() {
    return std::make_unique<Source>(m_link, SourceKey{m_link->changeCount, m_link->readEpoch});
}

void X11Pasteboard::write(PasteboardContents contents) {
    [[maybe_unused]] const bool isPosted =
        m_link->queue.post([offers = offersFor(contents, m_converters)](PasteboardThread& thread) {
            thread.write(offers);
        });
}

void X11Pasteboard::writePrimary(PasteboardContents contents) {
    PasteboardOffers offers = offersForTextOf(contents, m_converters);
    [[maybe_unused]] const bool isPosted = m_link->queue.post(
        [offers = std::move(offers)](PasteboardThread& thread) { thread.writePrimary(offers); });
}

void X11Pasteboard::endReads() {
    ++m_link->readEpoch;
    [[maybe_unused]] const bool isPosted =
        m_link->queue.post([](PasteboardThread& thread) { thread.endReads(); });
}

void X11Pasteboard::settle(qint64 changeCount, std::optional<KeptContents> contents) {
    [[maybe_unused]] const bool isPosted =
        m_link->queue.post([changeCount, contents = std::move(contents)](PasteboardThread& thread) {
            thread.settle(changeCount, contents);
        });
}

void X11Pasteboard::setListener(std::function<void(PasteboardChange)> listener) {
    const std::scoped_lock lock(m_link->listenerMutex);
    m_link->listener = std::move(listener);
}

}  // namespace quillo::x11
