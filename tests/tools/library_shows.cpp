// SPDX-License-Identifier: MIT
// Shows the library's content in a window of its own, on an invented history or on a store, and
// can save a picture of it: to look at it beside how it is meant, without the rest of the program.
#include <QApplication>
#include <QCommandLineParser>
#include <QFontDatabase>
#include <QPainter>
#include <QTimer>
#include <cstdio>

#include "appearance/palette.h"
#include "model/groups.h"
#include "support/library_rig.h"
#include "support/wait_until.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using namespace quillo;
using quillo::testing::LibraryRig;
using quillo::testing::waitUntil;

namespace {

struct Sample {
    ClipType type = ClipType::Text;
    QString text;
    QString source;
    std::chrono::minutes age{0};
};

const QByteArray kDocument =
    "{\\rtf1\\ansi\\b Quarterly summary\\b0\\par Revenue grew by \\b 18 %\\b0 , led by "
    "{\\i subscriptions}. Churn fell below two per cent for the first time.\\par}";
const QString kDocumentText =
    u"Quarterly summary\nRevenue grew by 18 %, led by subscriptions. Churn fell below two per cent "
    "for the first time."_s;

QByteArray landscape() {
    QImage image(1280, 900, QImage::Format_RGB32);
    QPainter painter(&image);
    QLinearGradient sky(0, 0, 0, 520);
    sky.setColorAt(0, QColor(0x8a, 0xb4, 0xe8));
    sky.setColorAt(1, QColor(0xdc, 0xea, 0xf6));
    QLinearGradient land(0, 520, 0, 900);
    land.setColorAt(0, QColor(0x6f, 0x91, 0x60));
    land.setColorAt(1, QColor(0x4e, 0x6c, 0x40));
    painter.fillRect(0, 0, 1280, 520, sky);
    painter.fillRect(0, 520, 1280, 380, land);
    painter.end();
    return QtImageCodec().encodePng(image).value_or(QByteArray());
}

const QList<Sample>& samples() {
    static const QList<Sample> kSamples{
        {ClipType::Text, u"git log --oneline --graph --decorate -n 20"_s, u"Terminal"_s, 0min},
        {ClipType::Text, u"https://docs.example.org/handbook"_s, u"Browser"_s, 2min},
        {ClipType::Text, u"#FF8E72"_s, u"Editor"_s, 5min},
        {ClipType::Image, {}, u"Screenshot"_s, 12min},
        {ClipType::Rtf, kDocumentText, u"Writer"_s, 1h},
        {ClipType::FileUrl, u"file:///home/nadia/Documents/Report%202026.pdf"_s, u"Files"_s, 24h},
        {ClipType::Html, u"Fish & chips, twice, with a slice of lemon"_s, u"Browser"_s, 25h},
        {ClipType::Text, u"SELECT id, title FROM clips ORDER BY created_at DESC LIMIT 50;"_s,
         u"Editor"_s, 48h},
        {ClipType::Text,
         u"Thank you for the parcel! It came this morning and it is in one piece."_s, u"Mail"_s,
         72h},
    };
    return kSamples;
}

std::shared_ptr<Clip> makeClip(ObjectContext& context, const Sample& sample, Timestamp now) {
    const auto clip = Clip::create(context, now - sample.age);
    clip->setType(sample.type);
    clip->setSourceBundleId(sample.source);
    if (sample.type == ClipType::Image) {
        clip->setImageData(landscape());
    } else if (sample.type == ClipType::FileUrl) {
        clip->setUrlString(sample.text);
        clip->setFileName(u"Report 2026.pdf"_s);
        clip->setFileUti(u"com.adobe.pdf"_s);
    } else {
        clip->setPlaintext(sample.text);
    }
    if (sample.type == ClipType::Rtf) {
        clip->setAttributed(kDocument);
        clip->setPinned(true);
    }
    if (sample.text.startsWith(u"https")) {
        clip->setUrlString(sample.text);
        clip->setUrlHost(u"docs.example.org"_s);
    }
    return clip;
}

void fill(LibraryRig& rig) {
    ObjectContext& context = rig.persistence.viewContext();
    const Timestamp now = rig.clock.now();
    QList<QUuid> ids;
    for (const Sample& sample : samples()) {
        ids.append(makeClip(context, sample, now)->id());
    }
    for (int i = 0; i < 119; ++i) {
        ids.append(makeClip(context,
                            {ClipType::Text, u"Note %1 of the week before"_s.arg(119 - i),
                             u"Editor"_s, 24h * (4 + i)},
                            now)
                       ->id());
    }
    (void)context.save();
    const struct {
        QString title;
        QRgb color;
        int members;
    } boards[] = {{u"Work"_s, 0xffff6b6b, 12},
                  {u"Recipes"_s, 0xff6bcb77, 4},
                  {u"Travel"_s, 0xffffd93d, 9},
                  {u"Design"_s, 0xff9b59b6, 3}};
    int first = 4;
    for (const auto& board : boards) {
        (void)createGroup(context, {board.title, QColor(board.color), GroupPlace::AfterListed,
                                    ids.mid(first, board.members)});
        first += board.members + 1;
    }
}

struct Look {
    ColorScheme scheme = ColorScheme::Dark;
    QSize size{1000, 700};
    int selected = -1;
    int row = 0;
    QString search;
    QString picture;
};

void show(LibraryView& view, const Look& look) {
    QApplication::setPalette(widgetPalette(look.scheme));
    view.setWindowTitle(u"Quillo"_s);
    view.resize(look.size);
    view.show();
    view.showSection(view.sidebar().rows().value(look.row)->content().section);
    view.clips().setSearchText(look.search);
    if (look.selected >= 0) {
        view.grid().choose(look.selected);
    }
}

int save(LibraryView& view, const Look& look) {
    // Pictures and documents come a moment later.
    (void)waitUntil([] { return false; }, 700ms);
    return view.grab().save(look.picture) ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QApplication::setStyle(u"Fusion"_s);
    if (QFontDatabase::hasFamily(u"Inter"_s)) {
        QApplication::setFont(QFont(u"Inter"_s));
    }
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions(
        {{u"store"_s, u"Base folder of a store; an invented history without."_s, u"folder"_s},
         {u"light"_s, u"Light, not dark."_s},
         {u"width"_s, u"Of the window."_s, u"pixels"_s, u"1000"_s},
         {u"height"_s, u"Of the window."_s, u"pixels"_s, u"700"_s},
         {u"select"_s, u"The clip to select, from 0."_s, u"place"_s, u"-1"_s},
         {u"row"_s, u"The sidebar's row to show, from 0."_s, u"row"_s, u"0"_s},
         {u"search"_s, u"What to search for."_s, u"text"_s},
         {u"picture"_s, u"Save a picture and end."_s, u"file"_s}});
    parser.process(application);
    const SystemClock clock;
    PersistenceController::Options options;
    options.kind = parser.isSet(u"store"_s) ? StoreKind::OnDisk : StoreKind::InMemory;
    options.baseFolder = parser.value(u"store"_s);
    options.clock = &clock;
    LibraryRig rig(options, clock);
    if (options.kind == StoreKind::InMemory) {
        fill(rig);
    }
    const Look look{.scheme = parser.isSet(u"light"_s) ? ColorScheme::Light : ColorScheme::Dark,
                    .size = {parser.value(u"width"_s).toInt(), parser.value(u"height"_s).toInt()},
                    .selected = parser.value(u"select"_s).toInt(),
                    .row = parser.value(u"row"_s).toInt(),
                    .search = parser.value(u"search"_s),
                    .picture = parser.value(u"picture"_s)};
    const auto view = rig.makeView();
    show(*view, look);
    return look.picture.isEmpty() ? QApplication::exec() : save(*view, look);
}
