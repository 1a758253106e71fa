// SPDX-License-Identifier: MIT
// Which sound confirms a saved clip, and how loud.
#include <gtest/gtest.h>

#include "capture/capture_sound.h"
#include "support/fake_sound_player.h"
#include "support/memory_user_defaults.h"

using namespace Qt::StringLiterals;

namespace quillo::testing {
namespace {

using Played = QList<std::pair<QString, float>>;

TEST(CaptureSoundNames, AreExactAndInOrder) {
    QStringList names;
    for (const CaptureSound sound : allCases<CaptureSound>()) {
        names.append(rawValue(sound));
        EXPECT_EQ(captureSoundFromRaw(rawValue(sound)), sound);
    }
    EXPECT_EQ(names.join(u' '),
              u"none Tink Pop Glass Purr Hero Morse Ping Submarine Blow Frog Basso Bottle Funk "
              "Sosumi"_s);
    for (const QString& other : {u"frog"_s, u"Frog "_s, u"None"_s, QString()}) {
        EXPECT_FALSE(captureSoundFromRaw(other)) << other.toStdString();
    }
}

TEST(CaptureSounds, ConfirmEachSavedClipAsTheSettingsSay) {
    const struct {
        const char* name;
        QJsonObject settings;
        Played played;
    } rows[] = {
        {"nothing set", {}, {{u"Frog"_s, 0.4F}}},
        {"chosen",
         {{u"captureSound"_s, u"Glass"_s}, {u"captureSoundVolume"_s, 0.75}},
         {{u"Glass"_s, 0.75F}}},
        {"silent", {{u"captureSoundVolume"_s, 0}}, {{u"Frog"_s, 0.0F}}},
        {"too loud", {{u"captureSoundVolume"_s, 40}}, {{u"Frog"_s, 1.0F}}},
        {"less than silent", {{u"captureSoundVolume"_s, -1}}, {{u"Frog"_s, 0.0F}}},
        {"no number", {{u"captureSoundVolume"_s, u"1"_s}}, {{u"Frog"_s, 0.4F}}},
        {"no text", {{u"captureSound"_s, 3}}, {{u"Frog"_s, 0.4F}}},
        {"no sound", {{u"captureSound"_s, u"none"_s}}, {}},
        {"an unknown sound", {{u"captureSound"_s, u"frog"_s}}, {}},
    };
    for (const auto& row : rows) {
        const MemoryUserDefaults defaults(row.settings);
        NotificationCenter notifications;
        FakeSoundPlayer player;
        const CaptureSounds sounds(defaults, player, notifications);
        notifications.post(kOverlayDidShowNotification);
        EXPECT_TRUE(player.played().isEmpty());
        notifications.post(kClipSavedNotification);
        EXPECT_EQ(player.played(), row.played) << row.name;
        notifications.post(kClipSavedNotification);
        EXPECT_EQ(player.played(), row.played + row.played) << row.name;
    }
}

}  // namespace
}  // namespace quillo::testing
