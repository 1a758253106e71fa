// SPDX-License-Identifier: MIT
// The description of a program, as any package may have installed it.
#include "fuzz_support.h"
#include "platform/freedesktop/desktop_entry.h"

namespace {

using namespace quillo::fuzzing;

void requireSoundEntry(const quillo::DesktopEntry& entry) {
    require(!entry.program.contains(u'/'));
    require(!entry.categories.contains(QString()));
    for (const QString& text : {entry.name, entry.iconName, entry.startupWmClass, entry.program}) {
        require(text.isValidUtf16());
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes = inputBytes(data, size);
    const QList<QByteArray> locales = quillo::localeCandidates("sr_YU.UTF-8@Latn");
    const auto entry = quillo::parseDesktopEntry(bytes, locales);
    if (entry) {
        requireSoundEntry(*entry);
        // What follows the group is not looked at.
        const auto again = quillo::parseDesktopEntry(
            bytes + "\n[Other]\nType=Link\nName=other\nExec=x\n", locales);
        require(again && again->name == entry->name && again->program == entry->program);
    }
    (void)quillo::localeCandidates(bytes);
    (void)quillo::programOfCommand(QString::fromUtf8(bytes).split(u'\n'));
    return 0;
}
