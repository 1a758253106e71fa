// SPDX-License-Identifier: MIT
#include "platform/network/qt_http_client.h"

#include <QMetaObject>
#include <deque>
#include <optional>
#include <utility>

namespace quillo {

class QtHttpClient::Worker final : public QObject {
public:
    explicit Worker(const HostResolver& resolver) : m_resolver(resolver) {}
    ~Worker() override { qDeleteAll(m_running); }
    Q_DISABLE_COPY_MOVE(Worker)

    /// Any thread.
    void add(HttpRequest request, Callback callback) {
        {
            const std::lock_guard lock(m_mutex);
            m_waiting.emplace_back(std::move(request), std::move(callback));
        }
        QMetaObject::invokeMethod(this, [this] { startNext(); }, Qt::QueuedConnection);
    }

private:
    static constexpr qsizetype kMostAtOnce = 4;

    using Job = std::pair<HttpRequest, Callback>;

    [[nodiscard]] std::optional<Job> takeNext() {
        const std::lock_guard lock(m_mutex);
        if (m_waiting.empty() || m_running.size() >= kMostAtOnce) {
            return std::nullopt;
        }
        Job job = std::move(m_waiting.front());
        m_waiting.pop_front();
        return job;
    }

    void startNext() {
        auto job = takeNext();
        if (!job) {
            return;
        }
        auto* fetch = new HttpFetch(std::move(job->first), std::move(job->second), m_resolver);
        m_running.append(fetch);
        connect(fetch, &HttpFetch::finished, this, [this, fetch] {
            m_running.removeOne(fetch);
            fetch->deleteLater();
            startNext();
        });
        fetch->start();
    }

    const HostResolver& m_resolver;
    std::mutex m_mutex;
    std::deque<Job> m_waiting;  ///< Guarded by the mutex.
    QList<HttpFetch*> m_running;
};

QtHttpClient::QtHttpClient(HostResolver resolver) : m_resolver(std::move(resolver)) {
    m_thread.setObjectName(QStringLiteral("web"));
}

QtHttpClient::~QtHttpClient() {
    m_thread.quit();
    m_thread.wait();
}

QtHttpClient::Worker* QtHttpClient::worker() {
    const std::lock_guard lock(m_mutex);
    if (m_worker == nullptr) {
        m_worker = new Worker(m_resolver);
        m_worker->moveToThread(&m_thread);
        QObject::connect(&m_thread, &QThread::finished, m_worker, &QObject::deleteLater);
        m_thread.start();
    }
    return m_worker;
}

void QtHttpClient::get(HttpRequest request, Callback callback) {
    worker()->add(std::move(request), std::move(callback));
}

}  // namespace quillo
