// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryFile>
#include <memory>

#include "app/updates/appcast.h"
#include "base/result.h"

namespace quillo {

/// A download on its way: a file that is the person's alone, and gone with this object unless it
/// was moved to where the person finds it. One thread at a time.
class UpdateFile final {
public:
    /// The folder is made where it does not exist.
    [[nodiscard]] static Result<std::unique_ptr<UpdateFile>> create(const QString& folder);

    /// After a failed write everything further fails in moveTo.
    void append(const QByteArray& piece);
    [[nodiscard]] qint64 sizeBytes() const { return m_sizeBytes; }

    /// Moves it into the folder if it is what the item promises: of that size and signed with the
    /// key. Returns the path: the name that the item's address ends with, made harmless, and a
    /// number where that is taken. It is not executable. Blocking: about a second for a large one.
    [[nodiscard]] Result<QString> moveTo(const QString& folder, const AppcastItem& item,
                                         const QByteArray& publicKey);

private:
    UpdateFile() = default;
    [[nodiscard]] Result<void> check(const AppcastItem& item, const QByteArray& publicKey);

    QTemporaryFile m_file;
    qint64 m_sizeBytes = 0;
    bool m_hasFailed = false;
};

/// The last part of an address as a file name that hides nothing and leads nowhere else.
[[nodiscard]] QString safeFileName(const AppcastItem& item);

}  // namespace quillo
