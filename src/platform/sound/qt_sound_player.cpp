// SPDX-License-Identifier: MIT
#include "platform/sound/qt_sound_player.h"

#include <QAudioDevice>
#include <QDeadlineTimer>
#include <QFile>
#include <QMediaDevices>
#include <QMetaObject>
#include <QSoundEffect>
#include <QTimer>
#include <QUrl>

#include "platform/sound/sound_server.h"

#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

// A macro that must stand outside every namespace.
static void initSounds() {
    Q_INIT_RESOURCE(sounds);
}

namespace quillo {
namespace {

constexpr qsizetype kMostAtOnce = 8;
// Longer than every sound: what a device that came to a halt never ends is let go.
constexpr std::chrono::milliseconds kLongestPlay = 3s;
constexpr std::chrono::milliseconds kPatienceAtTheEnd = 500ms;

}  // namespace

class QtSoundPlayer::Worker final : public QObject {
public:
    void play(const QString& path, float volume) {
        // The library looks for a server once: it must not be asked before there is one. Without a
        // device an effect would play for ever.
        m_hasServer = m_hasServer || soundServerListens();
        if (!m_hasServer || findChildren<QSoundEffect*>().size() >= kMostAtOnce ||
            QMediaDevices::audioOutputs().isEmpty()) {
            return;
        }
        auto* effect = new QSoundEffect(this);
        effect->setSource(QUrl(u"qrc"_s + path));
        effect->setVolume(volume);
        connect(effect, &QSoundEffect::playingChanged, effect, [effect] {
            if (!effect->isPlaying()) {
                effect->deleteLater();
            }
        });
        QTimer::singleShot(kLongestPlay, effect, &QObject::deleteLater);
        effect->play();
    }

private:
    bool m_hasServer = false;
};

QtSoundPlayer::QtSoundPlayer(std::function<void()> threadHangs)
    : m_threadHangs(std::move(threadHangs)) {
    initSounds();
    m_thread.setObjectName(u"sound"_s);
}

QtSoundPlayer::~QtSoundPlayer() {
    m_thread.quit();
    if (!m_thread.wait(QDeadlineTimer(kPatienceAtTheEnd)) && m_threadHangs) {
        m_threadHangs();
    }
    m_thread.wait();
}

void QtSoundPlayer::play(const QString& name, float volume) {
    const QString path = u":/sounds/"_s + name + u".wav"_s;
    if (name.contains(u'/') || !QFile::exists(path)) {
        return;
    }
    if (m_worker == nullptr) {
        m_worker = new Worker;
        m_worker->moveToThread(&m_thread);
        QObject::connect(&m_thread, &QThread::finished, m_worker, &QObject::deleteLater);
        m_thread.start();
    }
    QMetaObject::invokeMethod(
        m_worker, [worker = m_worker, path, volume] { worker->play(path, volume); },
        Qt::QueuedConnection);
}

}  // namespace quillo
