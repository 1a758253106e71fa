// SPDX-License-Identifier: MIT
// A settings file with any bytes in it: what it says is read, what is written leaves the rest.
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QTemporaryDir>

#include "fuzz_support.h"
#include "platform/freedesktop/json_user_defaults.h"
#include "platform/freedesktop/settings_file.h"

namespace {

using namespace quillo::fuzzing;
using namespace Qt::StringLiterals;
using quillo::JsonUserDefaults;

const QString kOwnKey = u"fuzz"_s;

QString folder() {
    static const QTemporaryDir temporary;
    return temporary.path();
}

QString settingsPath() {
    return folder() + u"/settings.json"_s;
}

void writeBytes(const QByteArray& bytes) {
    QFile file(settingsPath());
    require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
}

QByteArray bytesOf(const QString& path) {
    QFile file(path);
    require(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

/// A value answers to its own kind alone; a number may be an integer too.
void requireTyped(const JsonUserDefaults& defaults, const QString& key, const QJsonValue& value) {
    require(defaults.object(key) == value);
    require(defaults.string(key).has_value() == value.isString());
    require(defaults.boolean(key).has_value() == value.isBool());
    require(defaults.real(key).has_value() == value.isDouble());
    const auto integer = defaults.integer(key);
    require(!integer || (value.isDouble() && double(*integer) == value.toDouble()));
    const auto list = defaults.strings(key);
    require(!list || (value.isArray() && QJsonValue(QJsonArray::fromStringList(*list)) == value));
}

void requireValues(const JsonUserDefaults& defaults, const QJsonObject& expected) {
    for (auto it = expected.begin(); it != expected.end(); ++it) {
        requireTyped(defaults, it.key(), it.value());
    }
}

quillo::Result<QJsonObject> stored() {
    return quillo::readSettingsFile(settingsPath(), JsonUserDefaults::kLargestFileBytes);
}

/// What could not be understood lies beside the new file, byte for byte.
void requireSetAside(const QByteArray& bytes) {
    const QStringList aside = QDir(folder()).entryList({u"*.unreadable-*"_s}, QDir::Files);
    require(aside.size() == 1 && bytesOf(folder() + u'/' + aside.constFirst()) == bytes);
    require(QFile::remove(folder() + u'/' + aside.constFirst()));
}

/// An edit by hand meets a write of ours: the edit is taken over where it can be understood.
void requireMerged(JsonUserDefaults& defaults, const QByteArray& bytes) {
    writeBytes(bytes);
    const auto edited = stored();
    QJsonObject expected = edited.value_or(QJsonObject());
    const QString own = QString::fromLatin1(bytes);
    expected.insert(kOwnKey, own);
    defaults.setObject(kOwnKey, own);
    require(defaults.flush().has_value());
    requireValues(defaults, expected);
    const auto written = stored();
    require(written && *written == expected);
    if (!edited) {
        requireSetAside(bytes);
    }
}

void clear(JsonUserDefaults& defaults) {
    writeBytes("{}");
    defaults.remove(kOwnKey);
    require(defaults.flush().has_value());
    const auto written = stored();
    require(written && written->isEmpty());
}

/// A fresh start takes the file as it is and leaves it alone.
void requireStart(const QByteArray& bytes) {
    writeBytes(bytes);
    const JsonUserDefaults defaults(settingsPath());
    requireValues(defaults, stored().value_or(QJsonObject()));
    require(bytesOf(settingsPath()) == bytes);
}

}  // namespace

// Watching a folder anew takes longer than all the rest, so only some inputs start afresh.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr size_t kStartEvery = 64;
    startQt();
    static auto& defaults = *new JsonUserDefaults(settingsPath());
    const QByteArray bytes = inputBytes(data, size);
    requireMerged(defaults, bytes);
    clear(defaults);
    if (qHash(bytes) % kStartEvery == 0) {
        requireStart(bytes);
        clear(defaults);
    }
    // What the worker told after a flush keeps a copy of the values until it is heard.
    QCoreApplication::sendPostedEvents();
    return 0;
}
