// SPDX-License-Identifier: MIT
#pragma once

#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include "platform/http_client.h"

namespace quillo::testing {

/// A web that answers what the test says, when it says so.
class FakeHttpClient final : public HttpClient {
public:
    void get(HttpRequest request, Callback callback) override {
        const std::lock_guard lock(m_mutex);
        m_requests.push_back(std::move(request));
        m_callbacks.push_back(std::move(callback));
    }

    [[nodiscard]] size_t requestCount() const {
        const std::lock_guard lock(m_mutex);
        return m_requests.size();
    }

    [[nodiscard]] HttpRequest request(size_t index) const {
        const std::lock_guard lock(m_mutex);
        return m_requests.at(index);
    }

    /// Answers the oldest request without an answer; throws when there is none.
    void answer(Result<HttpResponse> result) {
        Callback callback;
        {
            const std::lock_guard lock(m_mutex);
            callback = std::move(m_callbacks.at(m_answered++));
        }
        callback(std::move(result));
    }

private:
    mutable std::mutex m_mutex;
    std::vector<HttpRequest> m_requests;
    std::vector<Callback> m_callbacks;
    size_t m_answered = 0;
};

}  // namespace quillo::testing
