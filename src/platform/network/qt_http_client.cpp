// SPDX-License-Identifier: MIT
#include "platform/network/qt_http_client.h"

#include <QHostInfo>
#include <QMetaObject>
#include <memory>
#include <utility>

namespace quillo {

class QtHttpClient::Worker final : public QObject {
public:
    explicit Worker(const HostResolver& resolver) : m_resolver(resolver) {}
    ~Worker() override { qDeleteAll(m_running); }
    Q_DISABLE_COPY_MOVE(Worker)

    void add(HttpRequest request, Callback callback) {
        m_waiting.emplace_back(std::move(request), std::move(callback));
        startNext();
    }

private:
    static constexpr qsizetype kMostAtOnce = 4;

    void startNext() {
        if (m_waiting.empty() || m_running.size() >= kMostAtOnce) {
            return;
        }
        auto [request, callback] = std::move(m_waiting.front());
        m_waiting.pop_front();
        auto* fetch = new HttpFetch(std::move(request), std::move(callback), m_resolver);
        m_running.append(fetch);
        connect(fetch, &HttpFetch::finished, this, [this, fetch] {
            m_running.removeOne(fetch);
            fetch->deleteLater();
            startNext();
        });
        fetch->start();
    }

    const HostResolver& m_resolver;
    std::deque<std::pair<HttpRequest, Callback>> m_waiting;
    QList<HttpFetch*> m_running;
};

HostResolver QtHttpClient::systemResolver() {
    return [](const QString& name, QObject* context,
              const std::function<void(const QList<QHostAddress>&)>& found) {
        QHostInfo::lookupHost(name, context,
                              [found](const QHostInfo& host) { found(host.addresses()); });
    };
}

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
    // A queued call is copied, its callback cannot be.
    auto job = std::make_shared<std::pair<HttpRequest, Callback>>(std::move(request),
                                                                  std::move(callback));
    Worker* const target = worker();
    QMetaObject::invokeMethod(
        target, [target, job] { target->add(std::move(job->first), std::move(job->second)); },
        Qt::QueuedConnection);
}

}  // namespace quillo
