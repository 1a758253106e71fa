// SPDX-License-Identifier: MIT
#include "app/updates/update_texts.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

QString sizeText(qint64 bytes) {
    return QLocale().formattedDataSize(bytes, 1, QLocale::DataSizeSIFormat);
}

UpdateTexts downloadingTexts(const UpdateState& state) {
    return {u"Downloading Quillo %1"_s.arg(state.newVersion),
            u"%1 of %2"_s.arg(sizeText(state.receivedBytes), sizeText(state.totalBytes)),
            UpdateAction::Close,
            u"Cancel"_s,
            {},
            true};
}

UpdateTexts readyTexts(const UpdateState& state) {
    const QFileInfo file(state.path);
    return {
        u"Quillo %1 is downloaded"_s.arg(state.newVersion),
        u"Its signature is right. It is in %1 as “%2”. Quit Quillo before you install it."_s.arg(
            file.dir().dirName(), file.fileName()),
        UpdateAction::ShowInFolder, u"Show in Folder"_s, u"Close"_s};
}

}  // namespace

UpdateTexts updateTexts(const UpdateState& state) {
    switch (state.stage) {
        case UpdateStage::Packaged:
            return {u"Updates come with your system"_s,
                    u"This Quillo %1 looks for no updates of its own: your system's package "
                    u"manager brings "
                    "them."_s.arg(state.runningVersion),
                    UpdateAction::Close,
                    u"OK"_s,
                    {}};
        case UpdateStage::Idle:
        case UpdateStage::Checking:
            return {u"Checking for updates..."_s,
                    u"You have Quillo %1."_s.arg(state.runningVersion),
                    UpdateAction::Close,
                    u"Cancel"_s,
                    {},
                    true};
        case UpdateStage::UpToDate:
            return {u"Quillo is up to date"_s,
                    u"Quillo %1 is the newest version."_s.arg(state.runningVersion),
                    UpdateAction::Close,
                    u"OK"_s,
                    {}};
        case UpdateStage::Available:
            return {u"A new version is available"_s,
                    u"Quillo %1 is available (%2); you have %3. Download it now?"_s.arg(
                        state.newVersion, sizeText(state.totalBytes), state.runningVersion),
                    UpdateAction::Download, u"Download"_s, u"Later"_s};
        case UpdateStage::Downloading:
            return downloadingTexts(state);
        case UpdateStage::Ready:
            return readyTexts(state);
        case UpdateStage::Failed:
            break;
    }
    return {u"No update this time"_s, state.reason + u'.', UpdateAction::TryAgain, u"Try Again"_s,
            u"Close"_s};
}

}  // namespace quillo
