// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <memory>

#include "app/updates/update_feed.h"
#include "app/updates/update_session.h"
#include "app/updates/update_texts.h"
#include "platform/http_client.h"

namespace quillo {

class UpdateWindow;

/// Looks for a new version when the person asks for it, and never by itself. Main thread.
class SparkleUpdateManager final : public QObject {
    Q_OBJECT

public:
    /// The client must outlive the manager. Nothing is made or asked before checkForUpdates().
    SparkleUpdateManager(HttpClient& http, UpdateFeed feed, QObject* parent = nullptr);
    ~SparkleUpdateManager() override;

    /// False in a distribution's build, whose package manager updates it.
    [[nodiscard]] bool hasFeed() const { return !m_feed.address.isEmpty(); }

    /// Opens the window, or raises it, and looks for a new version unless that is under way.
    /// Returns at once.
    void checkForUpdates();

private:
    void makeWindow();
    void act(UpdateAction action);

    HttpClient& m_http;
    UpdateFeed m_feed;
    std::unique_ptr<UpdateSession> m_session;
    std::unique_ptr<UpdateWindow> m_window;
};

}  // namespace quillo
