// SPDX-License-Identifier: MIT
#include "app/updates/update_file.h"

#include <QDir>
#include <QFileInfo>
#include <algorithm>

#include "app/updates/update_signature.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

constexpr qsizetype kLongestName = 100;
constexpr int kMostNames = 1'000;
constexpr QFileDevice::Permissions kReadable = QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                               QFileDevice::ReadGroup | QFileDevice::ReadOther;

QString numbered(const QString& name, int number) {
    if (number == 0) {
        return name;
    }
    const qsizetype archive = name.indexOf(u".tar."_s);
    const qsizetype dot = archive > 0 ? archive : name.lastIndexOf(u'.');
    const qsizetype end = dot > 0 ? dot : name.size();
    return u"%1 (%2)%3"_s.arg(name.first(end)).arg(number).arg(name.sliced(end));
}

}  // namespace

QString safeFileName(const AppcastItem& item) {
    QString name = item.url.fileName(QUrl::FullyDecoded).right(kLongestName);
    for (QChar& character : name) {
        const bool isPlain = character.unicode() < 0x7f &&
                             (character.isLetterOrNumber() || u"._-+~"_s.contains(character));
        character = isPlain ? character : QChar(u'_');
    }
    const auto* first = std::ranges::find_if(name, [](QChar c) { return c.isLetterOrNumber(); });
    name = name.sliced(first - name.cbegin());
    return name.isEmpty() ? u"Quillo-update"_s : name;
}

Result<std::unique_ptr<UpdateFile>> UpdateFile::create(const QString& folder) {
    std::unique_ptr<UpdateFile> file(new UpdateFile);
    file->m_file.setFileTemplate(folder + u"/update-XXXXXX.part"_s);
    if (!QDir().mkpath(folder) || !file->m_file.open()) {
        return failure(ErrorKind::NotPermitted, u"the folder %1 cannot be used"_s.arg(folder));
    }
    return file;
}

void UpdateFile::append(const QByteArray& piece) {
    m_hasFailed = m_hasFailed || m_file.write(piece) != piece.size();
    m_sizeBytes += piece.size();
}

Result<void> UpdateFile::check(const AppcastItem& item, const QByteArray& publicKey) {
    if (m_hasFailed || !m_file.flush()) {
        return failure(ErrorKind::DiskFull, u"it cannot be written: "_s + m_file.errorString());
    }
    if (m_sizeBytes != item.sizeBytes || m_file.size() != item.sizeBytes) {
        return failure(ErrorKind::Malformed, u"its size is not the one announced"_s);
    }
    uchar* bytes = m_file.map(0, item.sizeBytes);
    if (bytes == nullptr) {
        return failure(ErrorKind::Failed, u"it cannot be read: "_s + m_file.errorString());
    }
    const bool isGenuine = isSignedBy(
        publicKey,
        QByteArray::fromRawData(reinterpret_cast<const char*>(bytes), qsizetype(item.sizeBytes)),
        item.signature);
    m_file.unmap(bytes);
    if (!isGenuine) {
        return failure(ErrorKind::NotPermitted, u"its signature is not right"_s);
    }
    return {};
}

Result<QString> UpdateFile::moveTo(const QString& folder, const AppcastItem& item,
                                   const QByteArray& publicKey) {
    if (const Result<void> checked = check(item, publicKey); !checked) {
        return std::unexpected(checked.error());
    }
    QDir().mkpath(folder);
    const QString name = safeFileName(item);
    for (int number = 0; number < kMostNames; ++number) {
        QString path = folder + u'/' + numbered(name, number);
        if (QFileInfo::exists(path) || QFileInfo(path).isSymLink()) {
            continue;
        }
        if (!m_file.QFile::rename(path)) {
            break;
        }
        m_file.setAutoRemove(false);
        QFile::setPermissions(path, kReadable);
        return path;
    }
    return failure(ErrorKind::NotPermitted,
                   u"it cannot be moved to %1: %2"_s.arg(folder, m_file.errorString()));
}

}  // namespace quillo
