#include "main_window.h"
#include "norva/import_export.h"
#include "play_window.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QLocale>

#include <algorithm>
#include <string_view>

namespace {

/// The help pages stand in a folder whose name the library's Help buttons look for.
QString HelpFolder() {
    QString const beside = QCoreApplication::applicationDirPath();
    for (QString const& folder : {beside + "/../share/norva/NORVATOOL.CHM", QString(NORVA_HELP_FOLDER)}) {
        if (QFileInfo(folder).isDir()) return QDir(folder).canonicalPath();
    }
    return {};
}

void Describe(QCommandLineParser& parser) {
    QCoreApplication::setApplicationName("norva-desktop");
    QCoreApplication::setOrganizationName("Norva");
    QCoreApplication::setApplicationVersion(norva::GetLibraryVersion());
    parser.setApplicationDescription("Shows stores of survey data, imports into them and exports them.");
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument("FILE", "Stores to open, or survey files to import", "[FILE...]");
    parser.addOption({"play", "Run a script on real windows, then end", "SCRIPT"});
    parser.addOption({"set", "NAME=VALUE replaces {NAME} in the script (repeatable)", "NAME=VALUE"});
    parser.addOption({"trace", "Write what happened, one JSON object a line", "FILE"});
    parser.addOption({"trace-bytes", "Also write the bytes handed to the store"});
    parser.addOption({"defaults", "Answer by defaults what the script does not fit"});
    parser.addOption({"help-file", "Path of the host's help file", "PATH"});
    parser.addOption({"record", "Write the answers of the next import or export down as a script", "FILE"});
}

/// Whether the program only has to say something about itself, which needs no display.
bool AsksAboutProgram(int argc, char** argv) {
    return std::any_of(argv + 1, argv + argc, [](std::string_view argument) {
        return argument == "--help" || argument == "-h" || argument == "--help-all" || argument == "--version" ||
               argument == "-v";
    });
}

}  // namespace

int main(int argc, char** argv) {
    // Numbers look the same everywhere, as in the files.
    QLocale::setDefault(QLocale::c());
    if (argc > 1 && AsksAboutProgram(argc, argv)) {
        QCoreApplication application(argc, argv);
        QCommandLineParser parser;
        Describe(parser);
        parser.process(application);  // ends the program
    }
    QApplication application(argc, argv);
    QCommandLineParser parser;
    Describe(parser);
    parser.process(application);

    if (parser.isSet("play")) {
        norva::PlayJob job;
        job.script = parser.value("play").toStdString();
        for (QString const& setting : parser.values("set")) job.settings.push_back(setting.toStdString());
        job.trace = parser.value("trace").toStdString();
        job.traceBytes = parser.isSet("trace-bytes");
        job.defaults = parser.isSet("defaults");
        job.helpFile = parser.value("help-file").toStdString();
        return norva::PlayOnWindows(job);
    }
    norva::SetHelpFilePath((parser.isSet("help-file") ? parser.value("help-file") : HelpFolder()).toStdString());
    norva::CMainWindow window;
    if (parser.isSet("record")) window.RecordTo(parser.value("record"));
    window.show();
    for (QString const& path : parser.positionalArguments()) window.OpenFile(path);
    return QApplication::exec();
}
