// SPDX-License-Identifier: MIT
#include "bench_support.h"

#include <QApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QLinearGradient>
#include <QPainter>
#include <QtEndian>
#include <algorithm>
#include <cmath>
#include <random>

#include "platform/images/qt_image_codec.h"

namespace quillo::bench {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

constexpr qint64 kPictures = 100;
constexpr qint64 kClipsAtOnce = 2'000;
constexpr Timestamp kFirstMoment{std::chrono::seconds(1'700'000'000)};

QByteArray digestOf(const QByteArray& bytes) {
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256);
}

void fillText(Clip& clip, qint64 number) {
    const bool isLong = number % 50 == 1;
    clip.setPlaintext(textOf(number, isLong ? kLongText : kShortText));
}

void fillLink(Clip& clip, qint64 number) {
    const QString address = u"https://www.example.org/page/%1"_s.arg(number);
    clip.setPlaintext(address);
    clip.setUrlString(address);
    clip.setUrlHost(u"www.example.org"_s);
}

void fillDocument(Clip& clip, qint64 number, ClipType type) {
    const QString text = textOf(number, kShortText);
    clip.setType(type);
    clip.setPlaintext(text);
    clip.setAttributed(
        (type == ClipType::Html ? u"<p>%1</p>"_s : u"{\\rtf1 %1}"_s).arg(text).toLatin1());
}

void fillFile(Clip& clip, qint64 number) {
    clip.setType(ClipType::FileUrl);
    clip.setFileName(u"report-%1.pdf"_s.arg(number));
    clip.setUrlString(u"file:///home/person/report-%1.pdf"_s.arg(number));
    clip.setFileSize(10'000 + number);
    clip.setFileUti(u"com.adobe.pdf"_s);
}

void fillImage(Clip& clip, qint64 number) {
    const QByteArray png = smallPng(number);
    clip.setType(ClipType::Image);
    clip.setImageData(png);
    clip.setFileSize(png.size());
}

void fill(Clip& clip, qint64 number) {
    switch (number % 10) {
        case 0:
            return fillImage(clip, number);
        case 3:
            return fillLink(clip, number);
        case 5:
            return clip.setPlaintext(
                u"#%1"_s.arg(qulonglong(number % 0xffffff), 6, 16, QChar(u'0')));
        case 6:
            return fillDocument(clip, number, ClipType::Html);
        case 7:
            return fillDocument(clip, number, ClipType::Rtf);
        case 8:
            return fillFile(clip, number);
        default:
            return fillText(clip, number);
    }
}

void insertClips(PersistenceController& persistence, qint64 first, qint64 last) {
    persistence.perform([first, last](ObjectContext& context) {
        for (qint64 number = first; number < last; ++number) {
            const auto clip = Clip::create(context, kFirstMoment + std::chrono::seconds(number));
            clip->setContentHash(digestOf(QByteArray::number(number)));
            clip->setSourceBundleId(u"org.example.Editor"_s);
            fill(*clip, number);
        }
        if (const auto saved = context.save(); !saved) {
            qFatal("Cannot make a store: %s", qUtf8Printable(saved.error().text));
        }
    });
    persistence.waitUntilIdle();
}

void makeStore(const QString& folder, qint64 clips) {
    static const SystemClock kClock;
    PersistenceController::Options options;
    options.baseFolder = folder;
    options.clock = &kClock;
    PersistenceController persistence(options);
    for (qint64 first = 0; first < clips; first += kClipsAtOnce) {
        insertClips(persistence, first, std::min(first + kClipsAtOnce, clips));
    }
}

QByteArray makeSmallPng(qint64 number) {
    const QSize size(120 + int(number * 37 % 500), 90 + int(number * 53 % 400));
    const Result<QByteArray> png = QtImageCodec().encodePng(screenshot(size));
    if (!png) {
        qFatal("Cannot make a picture: %s", qUtf8Printable(png.error().text));
    }
    return *png;
}

}  // namespace

void startQt() {
    static int count = 1;
    static char name[] = "bench";
    static char* arguments[] = {name, nullptr};
    [[maybe_unused]] static const bool isReady =
        !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") || qputenv("QT_QPA_PLATFORM", "offscreen");
    // Never destroyed: at the program's end parts of Qt that it would use are gone before it.
    [[maybe_unused]] static const auto* application = new QApplication(count, arguments);
}

QString textOf(qint64 number, qsizetype length) {
    static const QString kSentence =
        u"An ordinary line of text, as one copies it from an editor or from a page, "
        "with words of all lengths and a few signs.\n"_s;
    QString text = u"Clip %1: "_s.arg(number);
    while (text.size() < length) {
        text += kSentence;
    }
    return text.left(length);
}

QImage screenshot(QSize size) {
    startQt();
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    for (int line = 0; line * 18 < size.height(); ++line) {
        painter.setPen(QColor::fromHsv(line * 6 % 360, 200, 120));
        painter.drawText(
            10 + line % 3 * 600, 18 * line + 10,
            QStringLiteral("A line of text such as a window shows, number %1").arg(line));
    }
    QLinearGradient gradient(0, 0, size.width(), 0);
    gradient.setColorAt(0, Qt::blue);
    gradient.setColorAt(1, Qt::red);
    painter.fillRect(QRect(0, size.height() * 5 / 6, size.width(), size.height() / 6), gradient);
    return image;
}

QImage photo(QSize size) {
    QImage image(size, QImage::Format_RGB32);
    std::mt19937 random(1);
    std::normal_distribution<double> noise(0, 3);
    const auto channel = [&](double value) {
        return static_cast<int>(std::clamp(value + noise(random), 0.0, 255.0));
    };
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const double light =
                128 + 60 * std::sin(x / 97.0) + 40 * std::cos(y / 71.0 + x / 300.0);
            image.setPixel(x, y, qRgb(channel(light), channel(light * 0.8), channel(light * 0.6)));
        }
    }
    return image;
}

QByteArray smallPng(qint64 number) {
    static const QList<QByteArray> kPngs = [] {
        QList<QByteArray> pngs;
        for (qint64 i = 0; i < kPictures; ++i) {
            pngs.append(makeSmallPng(i));
        }
        return pngs;
    }();
    // What follows the end of the file is read by no decoder.
    const qint64 bigEndian = qToBigEndian(number);
    return kPngs.at(number / 10 % kPictures) +
           QByteArray(reinterpret_cast<const char*>(&bigEndian), sizeof bigEndian);
}

QString keptStore(qsizetype clips) {
    const QString root =
        qEnvironmentVariable("QUILLO_BENCH_STORES", QStringLiteral(QUILLO_BENCH_FOLDER "/stores"));
    const QString folder = root + u"/%1"_s.arg(clips);
    if (QDir(folder).exists()) {
        return folder;
    }
    const QString unfinished = folder + u".unfinished"_s;
    QDir(unfinished).removeRecursively();
    makeStore(unfinished, clips);
    if (!QDir().rename(unfinished, folder)) {
        qFatal("Cannot keep a store under %s", qUtf8Printable(root));
    }
    return folder;
}

void copyStore(const QString& from, const QString& to) {
    const QString file = u"/Quillo/Quillo.sqlite"_s;
    QDir().mkpath(to + u"/Quillo"_s);
    if (!QFile::copy(from + file, to + file)) {
        qFatal("Cannot copy a store to %s", qUtf8Printable(to));
    }
}

StoreCopy::StoreCopy(qsizetype clips)
    : m_folder(QStringLiteral(QUILLO_BENCH_FOLDER "/copy-XXXXXX")) {
    if (clips > 0) {
        copyStore(keptStore(clips), m_folder.path());
    }
}

PersistenceController::Options StoreCopy::options() const {
    PersistenceController::Options options;
    options.baseFolder = m_folder.path();
    options.clock = &m_clock;
    return options;
}

}  // namespace quillo::bench
