// Pictures of profiles and maps without a display; the program behind "norva plot" and "norva map".

#include "map_plot.h"
#include "norva/import_export.h"
#include "plot_style.h"
#include "profile_plot.h"
#include "store_document.h"

#include <QApplication>
#include <QCommandLineParser>

#include <cstdio>
#include <optional>

namespace norva {

namespace {

constexpr int kWidth = 1200;
constexpr int kHeight = 600;

[[noreturn]] void Fail(QString const& text) {
    std::fprintf(stderr, "norva-plot: %s\n", text.toUtf8().constData());
    std::exit(1);
}

int LineOf(CStoreDocument const& document, QString const& wanted) {
    auto const& lines = document.Lines();
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (lines[i].name == wanted) return static_cast<int>(i);
    }
    bool number = false;
    int const index = wanted.toInt(&number);
    if (number && index >= 0 && static_cast<std::size_t>(index) < lines.size()) return index;
    Fail(QObject::tr("there is no line '%1'").arg(wanted));
}

int ChannelOf(CStoreDocument const& document, QString const& wanted) {
    for (ChannelEntry const& entry : document.Channels()) {
        if (entry.name.compare(wanted, Qt::CaseInsensitive) != 0) continue;
        if (entry.isNumber) return entry.index;
        Fail(QObject::tr("channel '%1' holds text").arg(wanted));
    }
    Fail(QObject::tr("there is no channel '%1'").arg(wanted));
}

int Run(QStringList const& arguments) {
    QCommandLineParser parser;
    parser.addPositionalArgument("profile|map", "What to draw");
    parser.addPositionalArgument("STORE", "Store to read");
    parser.addOption({"line", "Line: name or number from 0", "LINE"});
    parser.addOption({"channel", "Channel to draw, or to colour the map by (profile: repeatable)", "NAME"});
    parser.addOption({"against", "Channel for the horizontal axis", "NAME"});
    parser.addOption({"x", "Channel with the eastings", "NAME", "X"});
    parser.addOption({"y", "Channel with the northings", "NAME", "Y"});
    parser.addOption({{"o", "output"}, "File to write: png, svg or pdf", "FILE"});
    parser.addHelpOption();
    parser.process(arguments);
    QStringList const what = parser.positionalArguments();
    if (what.size() != 2 || !parser.isSet("output")) Fail(QObject::tr("profile or map, a store and -o are needed"));

    CStoreDocument document;
    QString why;
    if (!document.Open(what[1], why)) Fail(what[1] + ": " + why);
    QString const output = parser.value("output");
    bool written = false;
    if (what[0] == "map") {
        CMapPlot plot(document);
        plot.resize(kWidth, kHeight);
        plot.setViewport(QRect(0, 0, kWidth, kHeight));
        plot.replot();  // lays the axes out, so that the map keeps its proportions
        plot.ShowMap(ChannelOf(document, parser.value("x")), ChannelOf(document, parser.value("y")),
                     parser.isSet("channel") ? ChannelOf(document, parser.value("channel")) : -1);
        plot.WaitUntilDrawn();
        written = SavePlot(plot, output, QSize(kWidth, kHeight), {});
    } else {
        if (!parser.isSet("channel")) Fail(QObject::tr("--channel is needed"));
        std::vector<int> channels;
        for (QString const& name : parser.values("channel")) channels.push_back(ChannelOf(document, name));
        CProfilePlot plot(document);
        plot.resize(kWidth, kHeight);
        plot.setViewport(QRect(0, 0, kWidth, kHeight));
        plot.replot();
        plot.ShowLine(LineOf(document, parser.isSet("line") ? parser.value("line") : "0"), channels,
                      parser.isSet("against") ? ChannelOf(document, parser.value("against")) : -1);
        written = SavePlot(plot, output, QSize(kWidth, kHeight), {});
    }
    if (!written) Fail(output + ": " + QObject::tr("cannot be written (png, svg and pdf are known)"));
    return 0;
}

}  // namespace

}  // namespace norva

int main(int argc, char** argv) {
    // What Qt says of the missing display is no news here.
    qInstallMessageHandler([](QtMsgType type, QMessageLogContext const&, QString const& text) {
        if (type != QtDebugMsg && type != QtInfoMsg && type != QtWarningMsg)
            std::fprintf(stderr, "%s\n", qPrintable(text));
    });
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setApplicationVersion(norva::GetLibraryVersion());
    return norva::Run(QApplication::arguments());
}
