// SPDX-License-Identifier: MIT
#include "app/updates/sparkle_update_manager.h"

#include <QStandardPaths>
#include <utility>

#include "app/updates/update_window.h"
#include "platform/freedesktop/file_manager.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

UpdateSession::Folders folders() {
    return {QStandardPaths::writableLocation(QStandardPaths::CacheLocation) + u"/updates"_s,
            QStandardPaths::writableLocation(QStandardPaths::DownloadLocation)};
}

}  // namespace

SparkleUpdateManager::SparkleUpdateManager(HttpClient& http, UpdateFeed feed, QObject* parent)
    : QObject(parent), m_http(http), m_feed(std::move(feed)) {}

SparkleUpdateManager::~SparkleUpdateManager() = default;

void SparkleUpdateManager::checkForUpdates() {
    if (m_window == nullptr) {
        makeWindow();
    }
    m_session->check();
    m_window->showState(m_session->state());
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
}

void SparkleUpdateManager::makeWindow() {
    m_session = std::make_unique<UpdateSession>(m_http, m_feed, folders());
    m_window = std::make_unique<UpdateWindow>();
    connect(m_session.get(), &UpdateSession::changed, m_window.get(),
            [this] { m_window->showState(m_session->state()); });
    connect(m_window.get(), &UpdateWindow::actionChosen, this, &SparkleUpdateManager::act);
    connect(m_window.get(), &QDialog::rejected, m_session.get(), &UpdateSession::cancel);
}

void SparkleUpdateManager::act(UpdateAction action) {
    switch (action) {
        case UpdateAction::Download:
            m_session->download();
            break;
        case UpdateAction::TryAgain:
            m_session->check();
            break;
        case UpdateAction::ShowInFolder:
            showInFolder(m_session->state().path);
            break;
        case UpdateAction::Close:
            break;
    }
}

}  // namespace quillo
