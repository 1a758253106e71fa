// SPDX-License-Identifier: MIT
// Measures the built program from outside, as a person and other programs meet it. Start it through
// bench/run.sh, which gives it a display, a session and a home of its own.
#include <QCommandLineParser>
#include <QFileInfo>
#include <cstdio>
#include <span>

#include "bench_support.h"
#include "whole_program/measurements.h"

using namespace quillo::bench;
using namespace Qt::StringLiterals;

namespace {

void print(const QString& line) {
    std::puts(qUtf8Printable(line));
    std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
    startQt();
    QCommandLineParser options;
    options.addOptions(
        {{u"program"_s, u"The program to measure."_s, u"path"_s},
         {u"sizes"_s, u"Clips in the store, with commas."_s, u"list"_s, u"1000,10000,200000"_s},
         {u"only"_s, u"start,hotkey,paste,scroll,letter,copy,many,idle"_s, u"list"_s},
         {u"runs"_s, u"How often each is measured."_s, u"count"_s, u"11"_s},
         {u"idle"_s, u"Seconds to watch for wake-ups."_s, u"seconds"_s, u"60"_s}});
    options.addHelpOption();
    QStringList arguments;
    for (const char* argument : std::span(argv, size_t(argc))) {
        arguments += QString::fromLocal8Bit(argument);
    }
    options.process(arguments);
    Settings settings;
    settings.program = options.value(u"program"_s);
    settings.dataHome = qEnvironmentVariable("XDG_DATA_HOME");
    settings.runs = options.value(u"runs"_s).toInt();
    settings.idle = std::chrono::seconds(options.value(u"idle"_s).toInt());
    settings.groups = options.value(u"only"_s).split(u',', Qt::SkipEmptyParts);
    if (!QFileInfo(settings.program).isExecutable() || settings.dataHome.isEmpty() ||
        settings.runs < 1) {
        options.showHelp(2);
    }
    print(tableHeading());
    for (const Row& row : Measurements::controls(settings)) {
        print(tableLine(0, row));
    }
    for (const QString& size : options.value(u"sizes"_s).split(u',')) {
        for (const Row& row : Measurements(settings, size.toLongLong()).run()) {
            print(tableLine(size.toLongLong(), row));
        }
    }
    for (const Row& row : Measurements::controls(settings)) {
        print(tableLine(0, row));
    }
    return 0;
}
