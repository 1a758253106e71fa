// SPDX-License-Identifier: MIT
// Works on a store file as the program does, with its own controller, saver and rules.
// usage: store_tool FOLDER work SEED LIMIT   captures, repeats and deletes until it is killed
//        store_tool FOLDER delete TEXT       deletes the clip with that text
//        store_tool FOLDER delete-all        deletes every clip and every trace
//        store_tool FOLDER find TEXT         prints how many clips the search has loaded, how many
//                                            of each kind, and how many have that text
// "work" writes a line for each thing that it is about to delete and for each thing that is
// committed, no sooner; tests/store/kill_test.py reads them and kills it.
#include <unistd.h>

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QTimer>
#include <cstdio>
#include <random>

#include "capture/clip_saver.h"
#include "model/clip.h"
#include "model/search/clip_search.h"
#include "platform/text/document_reader.h"
#include "support/memory_user_defaults.h"

using namespace Qt::StringLiterals;
using namespace quillo;

namespace {

// One write of less than PIPE_BUF bytes: a kill leaves the whole line or nothing of it.
void report(const QByteArray& line) {
    const QByteArray whole = line + '\n';
    if (write(STDOUT_FILENO, whole.constData(), size_t(whole.size())) != whole.size()) {
        _exit(3);
    }
}

QList<ObjectId> idsWhere(ObjectContext& context, ClipAttribute attribute, const Value& value) {
    FetchRequest request;
    request.conditions = {{std::to_underlying(attribute), Condition::Operator::Equal, value}};
    return context.fetchIds(request).value_or(QList<ObjectId>());
}

QByteArray nameOf(const ObjectId& id) {
    return id.key.toByteArray(QUuid::WithoutBraces);
}

/// Hands out one piece of work after the other until the process ends.
class Worker final {
public:
    Worker(PersistenceController& persistence, quint32 seed, qint64 limit)
        : m_persistence(persistence),
          m_random(seed),
          m_seed(seed),
          m_defaults({{u"maxHistoryItems"_s, limit}}),
          m_saver({persistence, m_defaults, m_notifications, m_richText, m_clock}) {
        QObject::connect(&m_timer, &QTimer::timeout, [this] { turn(); });
        m_timer.start(0);
    }

private:
    // Several at once, so that work is waiting when the process is killed, but never much.
    void turn() {
        for (int i = 0; i < 8; ++i) {
            step();
        }
        m_persistence.waitUntilIdle();
    }

    void step() {
        const auto choice = m_random() % 1'000;
        if (choice < 500 || m_contents.isEmpty()) {
            captureText(u"text %1 of run %2 "_s.arg(m_contents.size())
                            .arg(m_seed)
                            .repeated(1 + int(m_random() % 40)));
        } else if (choice < 600) {
            captureImage();
        } else if (choice < 800) {
            // A copy: the list that it stands in grows.
            const QString again = m_contents[qsizetype(m_random() % quint32(m_contents.size()))];
            captureText(again);
        } else if (choice < 998) {
            deleteOne(quint32(m_random()));
        } else {
            deleteAll();
        }
    }

    void captureText(const QString& text) {
        m_contents.append(text);
        (void)m_saver.saveTextClip(text, std::nullopt);
        reportStored(text.toUtf8());
    }

    void captureImage() {
        QByteArray bytes(qsizetype(1 + m_random() % 60'000), Qt::Uninitialized);
        std::ranges::generate(bytes, [this] { return char(m_random()); });
        m_saver.saveImageClip(bytes, std::nullopt, std::nullopt);
        reportStored(bytes);
    }

    // Runs behind the save on the store's thread, outside its transaction.
    void reportStored(const QByteArray& content) {
        const QByteArray digest = QCryptographicHash::hash(content, QCryptographicHash::Sha256);
        m_persistence.perform([digest](ObjectContext& context) {
            for (const ObjectId& id : idsWhere(context, ClipAttribute::ContentHash, digest)) {
                const auto createdAt = context.object<Clip>(id.key)->createdAt().value();
                report("saved " + nameOf(id) + ' ' + digest.toHex() + ' ' +
                       QByteArray::number(qint64(createdAt.time_since_epoch().count())));
            }
        });
    }

    void deleteOne(quint32 choice) {
        m_persistence.perform([choice](ObjectContext& context) {
            const QList<ObjectId> ids = context.fetchIds({}).value_or(QList<ObjectId>());
            if (ids.isEmpty()) {
                return;
            }
            const ObjectId id = ids[qsizetype(choice % quint32(ids.size()))];
            report("deleting " + nameOf(id));
            context.remove(*context.object<Clip>(id.key));
            if (context.save()) {
                report("deleted " + nameOf(id));
            }
        });
    }

    void deleteAll() {
        m_persistence.perform([](ObjectContext& context) {
            report("deleting everything");
            if (context.batchDelete({})) {
                report("deleted everything");
            }
        });
    }

    PersistenceController& m_persistence;
    std::mt19937 m_random;
    quint32 m_seed;
    QStringList m_contents;
    testing::MemoryUserDefaults m_defaults;
    NotificationCenter m_notifications;
    DocumentReader m_richText;
    SystemClock m_clock;
    ClipSaver m_saver;
    QTimer m_timer;
};

int deleteText(PersistenceController& persistence, const QString& text) {
    const QList<ObjectId> ids =
        idsWhere(persistence.viewContext(), ClipAttribute::Plaintext, Value(text));
    persistence.perform([&ids](ObjectContext& context) {
        for (const ObjectId& id : ids) {
            context.remove(*context.object<Clip>(id.key));
        }
        (void)context.save();
    });
    persistence.waitUntilIdle();
    return ids.size() == 1 ? 0 : 1;
}

int deleteEverything(PersistenceController& persistence) {
    const auto deleted = persistence.viewContext().batchDelete({});
    persistence.eraseTraces();
    persistence.waitUntilIdle();
    return deleted ? 0 : 1;
}

// What the search finds of the store: the total, the clips of each kind, and the matches of a text.
int find(PersistenceController& persistence, const QString& text) {
    ClipSearch search(persistence, {});
    QList<QByteArray> words;
    QObject::connect(&search, &ClipSearch::finished, [&](const SearchResult& result) {
        if (words.isEmpty()) {
            words.append(QByteArray::number(result.total));
            for (const qsizetype count : result.kindCounts) {
                words.append(QByteArray::number(count));
            }
            search.request({.searchText = text, .typeFilter = {}, .group = {}});
            return;
        }
        words.append(QByteArray::number(result.total));
        report(words.join(' '));
        QCoreApplication::quit();
    });
    search.request({});
    return QCoreApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QString command = arguments.value(2);
    const SystemClock clock;
    PersistenceController::Options options;
    options.baseFolder = arguments.value(1);
    options.clock = &clock;
    PersistenceController persistence(options);
    if (persistence.state() != StoreState::Loaded) {
        return 2;
    }
    if (command == u"delete") {
        return deleteText(persistence, arguments.value(3));
    }
    if (command == u"delete-all") {
        return deleteEverything(persistence);
    }
    if (command == u"find") {
        return find(persistence, arguments.value(3));
    }
    if (command != u"work") {
        std::fputs("usage: see the top of store_tool.cpp\n", stderr);
        return 1;
    }
    report("open");
    const Worker worker(persistence, arguments.value(3).toUInt(), arguments.value(4).toLongLong());
    return QCoreApplication::exec();
}
