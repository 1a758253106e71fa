// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QString>
#include <QTemporaryDir>

#include "model/clip.h"
#include "model/persistence_controller.h"

/// What the benchmarks share: synthetic contents and stores, the same on every machine.
namespace quillo::bench {

inline constexpr QSize kScreen(1920, 1080);
inline constexpr qsizetype kShortText = 200;
inline constexpr qsizetype kLongText = 20'000;

/// Makes the one application object, without a display unless QT_QPA_PLATFORM names one.
void startQt();

/// Words and a running number, exactly `length` characters; another text for each number.
[[nodiscard]] QString textOf(qint64 number, qsizetype length);

/// Windows with text, as a screenshot has, and a picture with noise in every pixel.
[[nodiscard]] QImage screenshot(QSize size = kScreen);
[[nodiscard]] QImage photo(QSize size = kScreen);

/// A small PNG that differs in its bytes from that of every other number.
[[nodiscard]] QByteArray smallPng(qint64 number);

/// A folder as PersistenceController::Options::baseFolder that holds a store of that many clips:
/// one in ten a small image, one in fifty a text of 20 kB, the others texts of 200 characters,
/// links, colours, HTML and RTF documents and files. Made once, then kept under
/// QUILLO_BENCH_STORES, or under the build folder. Not to be written to. Ends the program on an
/// error.
[[nodiscard]] QString keptStore(qsizetype clips);

/// A copy of a kept store that may be changed; gone with the object.
class StoreCopy final {
public:
    explicit StoreCopy(qsizetype clips);

    [[nodiscard]] PersistenceController::Options options() const;

private:
    QTemporaryDir m_folder;
    SystemClock m_clock;
};

/// Copies the store's file of one base folder into another. Ends the program on an error.
void copyStore(const QString& from, const QString& to);

}  // namespace quillo::bench
