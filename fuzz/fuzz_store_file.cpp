// SPDX-License-Identifier: MIT
// The store's file with anything in it: either bytes as they come, or a valid small store with
// some bytes written over. It is opened, read through, added to and tidied like a person's own.
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <cstring>

#include "fuzz_support.h"
#include "model/clip.h"
#include "model/clip_history.h"
#include "model/persistence_controller.h"
#include "model/pinboard.h"
#include "model/store/store_files.h"
#include "model/tag.h"

namespace {

using namespace quillo;
using namespace quillo::fuzzing;
using namespace Qt::StringLiterals;

class FixedClock final : public Clock {
public:
    [[nodiscard]] Timestamp now() const override {
        return Timestamp(std::chrono::microseconds(1'700'000'000'000'000));
    }
};

constexpr int kClips = 8;
const FixedClock kClock;
const QByteArray kDigest = "digest of the clip that is saved";

const QTemporaryDir& base() {
    static const QTemporaryDir folder;
    return folder;
}

QString storePath() {
    return base().filePath(u"Quillo/Quillo.sqlite"_s);
}

std::unique_ptr<PersistenceController> openedStore() {
    PersistenceController::Options options;
    options.baseFolder = base().path();
    options.clock = &kClock;
    return std::make_unique<PersistenceController>(options);
}

/// Keys count up from 1, so that the valid store is the same in every run.
QUuid keyOf(int number) {
    return QUuid(uint(number), 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
}

void fillClip(Clip& clip, int number) {
    clip.setCreatedAt(kClock.now() - std::chrono::seconds(number));
    clip.setType(kClipTypes[number % 5]);
    clip.setContentHash(QByteArray(32, char(number)));
    clip.setPlaintext(u"clip %1 "_s.arg(number).repeated(number * 4));
    clip.setAttributed(QByteArray("{\\rtf1 a}").repeated(number));
    clip.setImageData(QByteArray(number * 300, 'i'));
    clip.setFileName(u"name.txt"_s);
    clip.setUrlString(u"https://example.org/"_s);
    clip.setFileSize(number);
}

void fillStore(ObjectContext& context) {
    const auto board = context.insert<Pinboard>(keyOf(100));
    board->setTitle(u"group"_s);
    board->setClipOrder(QByteArray("[]"));
    const auto tag = context.insert<Tag>(keyOf(101));
    for (int number = 1; number <= kClips; ++number) {
        const auto clip = context.insert<Clip>(keyOf(number));
        fillClip(*clip, number);
        context.relate(clip->objectId(), Relationship::ClipPinboards, board->objectId());
        context.relate(clip->objectId(), Relationship::ClipTags, tag->objectId());
    }
    require(context.save().has_value());
}

QByteArray bytesOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void emptyFolder() {
    require(QDir(base().filePath(u"Quillo"_s)).removeRecursively());
    require(QDir(base().path()).mkdir(u"Quillo"_s));
}

QByteArray makeValidStore() {
    {
        const auto store = openedStore();
        store->perform(&fillStore);
        store->waitUntilIdle();
    }
    const auto store = openedStore();
    require(store->state() == StoreState::Loaded && store->viewContext().count({}) == kClips);
    return bytesOf(storePath());
}

const QByteArray& validStore() {
    static const QByteArray bytes = makeValidStore();
    return bytes;
}

/// Pieces of: the place counted in 16 bytes (two bytes) and from there (one), a length, the bytes.
QByteArray writtenOver(QByteArray store, QByteArrayView pieces) {
    while (pieces.size() > 4) {
        const auto* head = reinterpret_cast<const unsigned char*>(pieces.data());
        const qsizetype place = ((head[0] << 8 | head[1]) * 16 + head[2] % 16) % store.size();
        const qsizetype length = std::min<qsizetype>(head[3] % 64 + 1, pieces.size() - 4);
        const QByteArrayView bytes = pieces.sliced(4, length);
        std::memcpy(store.data() + place, bytes.data(),
                    size_t(std::min(length, store.size() - place)));
        pieces = pieces.sliced(4 + length);
    }
    return store;
}

/// 'F' begins a file, 'C' a store that is cut short, anything else is written over a store.
QByteArray storeFrom(const QByteArray& input) {
    if (input.startsWith('F')) {
        return input.sliced(1);
    }
    QByteArray store = writtenOver(validStore(), QByteArrayView(input).sliced(!input.isEmpty()));
    if (input.startsWith('C')) {
        store.truncate(store.size() * (quint8(input.back()) + 1) / 257);
    }
    return store;
}

/// Cards show how long ago it was, so the difference to any present moment must exist.
void requireSubtractable(const Value& value) {
    if (const auto* moment = std::get_if<Timestamp>(&value)) {
        const qint64 microseconds = moment->time_since_epoch().count();
        require(microseconds >= -INT64_MAX / 2 && microseconds <= INT64_MAX / 2);
    }
}

template <typename T>
void readRecords(ObjectContext& context) {
    FetchRequest request;
    request.limit = 100;
    (void)context.count(request);
    const auto records = context.fetch<T>(request);
    if (!records) {
        return;
    }
    for (const auto& record : *records) {
        for (size_t i = 0; i < describe(T::kEntity).attributes.size(); ++i) {
            requireSubtractable(record->value(int(i)));
        }
        record->dropHeavyValues();
        (void)context.related(record->objectId(), Relationship::ClipPinboards);
    }
}

void readClips(ObjectContext& context) {
    FetchRequest request;
    request.sort = {{std::to_underlying(ClipAttribute::CreatedAt), Qt::DescendingOrder}};
    request.limit = 20;
    const auto clips = context.fetch<Clip>(request);
    if (!clips) {
        return;
    }
    for (const auto& clip : *clips) {
        require(!clip->displayText().isNull());
        (void)clip->detectedColor();
        (void)clip->fileTypeLabel();
        (void)clip->formattedFileSize();
    }
}

void readAll(ObjectContext& context) {
    readRecords<Clip>(context);
    readRecords<Pinboard>(context);
    readRecords<Tag>(context);
    readClips(context);
}

void saveOne(ObjectContext& context) {
    (void)insertOrBump(context, kDigest, kClock, [](Clip& clip) { fillClip(clip, 9); });
    (void)enforceHistoryLimit(context, 5);
}

void useStore(const QByteArray& bytes) {
    const auto store = openedStore();
    store->perform(&readAll);
    store->perform(&saveOne);
    store->waitUntilIdle();
    QCoreApplication::processEvents();
    readAll(store->viewContext());
    const bool isLoaded = store->state() == StoreState::Loaded;
    require(isLoaded || bytesOf(storePath()) == bytes);
    // A store in the place of an unusable one holds what was saved, in the file or in memory.
    if (!isLoaded || !storesSetAside(storePath()).isEmpty()) {
        require(store->viewContext().count({}) == 1);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    startQt();
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    const QByteArray bytes = storeFrom(inputBytes(data, size));
    emptyFolder();
    QFile file(storePath());
    require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    file.close();
    useStore(bytes);
    const QStringList aside = storesSetAside(storePath());
    require(aside.isEmpty() || bytesOf(aside.constFirst() + u"/Quillo.sqlite"_s) == bytes);
    return 0;
}
