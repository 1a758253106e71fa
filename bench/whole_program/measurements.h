// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QList>
#include <QString>
#include <memory>

#include "whole_program/other_program.h"
#include "whole_program/quillo_process.h"
#include "whole_program/samples.h"
#include "whole_program/screen_probe.h"

namespace quillo::bench {

struct Settings {
    QString program;
    QString dataHome;  ///< The XDG data home that the program is given; a store is put there.
    int runs = 11;
    std::chrono::seconds idle{60};
    QStringList groups;  ///< Which measurements to make; all of them when empty.
};

/// All rows of one size of the store, on the display that DISPLAY names. Needs a window manager,
/// and nothing else on that display.
class Measurements final {
public:
    Measurements(const Settings& settings, qsizetype clips);

    [[nodiscard]] QList<Row> run();

    /// What the machine itself takes, for comparison: a round trip to the display server, an
    /// fdatasync of 4 kB beside the store, a fixed loop of the processor.
    [[nodiscard]] static QList<Row> controls(const Settings& settings);

private:
    struct Shown {
        ScreenProbe::Frames frames;
        Moment pressed;
        QByteArray before;
    };

    [[nodiscard]] bool isWanted(const QString& group) const;
    void starts();
    void shows();
    void pastes();
    void scrolls();
    void letters();
    void copies();
    void manyCopies();
    void idles();

    void copyPictures(const QString& name, const QImage& picture);
    void measureCopy(Moment copied, Row& wait, Row& work);
    /// Copies a colour that no clip has and waits until it is stored and listed.
    std::uint32_t copyNewColor();
    [[nodiscard]] Shown show();
    void hide(const Shown& shown);
    void findPanel();

    const Settings& m_settings;
    qsizetype m_clips;
    ScreenProbe m_screen;
    OtherProgram m_other;
    std::unique_ptr<QuilloProcess> m_quillo;
    QRect m_panel;
    int m_number = 0;
    QList<Row> m_rows;
};

}  // namespace quillo::bench
