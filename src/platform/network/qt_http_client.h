// SPDX-License-Identifier: MIT
#pragma once

#include <QThread>
#include <mutex>

#include "platform/http_client.h"
#include "platform/network/http_fetch.h"
#include "platform/network/system_resolver.h"

namespace quillo {

/// HttpClient by Qt Network. A thread of its own, begun with the first request, does the work; at
/// most four requests are under way, the others wait in line, and their time begins when it is
/// their turn. Nothing is shared between two requests, no open connection either.
class QtHttpClient final : public HttpClient {
public:
    explicit QtHttpClient(HostResolver resolver = systemResolver());
    ~QtHttpClient() override;

    void get(HttpRequest request, Callback callback) override;

private:
    /// Lives on the thread.
    class Worker;

    [[nodiscard]] Worker* worker();

    HostResolver m_resolver;
    std::mutex m_mutex;
    Worker* m_worker = nullptr;  ///< Dies with the thread; guarded by the mutex.
    QThread m_thread;
};

}  // namespace quillo
