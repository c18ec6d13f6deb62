// Takes the pictures of docs/screenshots: the sample survey imported and exported through real windows.

#include "common/script_json.h"
#include "export_window.h"
#include "import_sheet.h"
#include "main_window.h"
#include "proposal_view.h"
#include "quality_page.h"
#include "scripted_windows.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QLineEdit>
#include <QSettings>
#include <QTabWidget>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTreeWidget>

#include <cstdio>

namespace norva {

namespace {

constexpr int kWidth = 1100;
constexpr int kHeight = 720;

[[noreturn]] void Fail(QString const& text) {
    std::fprintf(stderr, "norva-screenshots: %s\n", text.toUtf8().constData());
    std::exit(1);
}

void Save(QWidget& window, QString const& file) {
    QApplication::processEvents();
    if (!window.grab().save(file, "PNG")) {
        Fail(file + " cannot be written");
    }
}

/// Plays a script and pictures the dialog before every act, so that the file keeps the one before the last act.
class CPhotographedWindows : public CScriptedWindows {
public:
    CPhotographedWindows(std::vector<ScriptAnswer> answers, QString file)
        : CScriptedWindows(std::move(answers), false, nullptr), m_file(std::move(file)) {}

protected:
    bool Act(CDialog& dialog, DialogEvent const& event, std::string& why) override {
        QWidget* const window = QApplication::activeModalWidget();
        if (window != nullptr) Save(*window, m_file);
        return CScriptedWindows::Act(dialog, event, why);
    }

private:
    QString m_file;
};

/// Plays NAME.json of the folder and pictures its last dialog in NAME.png.
void PlayAndPicture(QString const& name, std::map<std::string, std::string> const& settings, QDir const& folder) {
    QFile file(folder.filePath(name + ".json"));
    if (!file.open(QIODevice::ReadOnly)) Fail(file.fileName() + " cannot be read");
    Script const script = ParseScript(file.readAll().toStdString(), settings);
    CPhotographedWindows windows(script.answers, folder.filePath(name + ".png"));
    PlayResult const result = RunOperation(script, windows, nullptr, nullptr);
    if (result.value != 1) Fail(name + ": " + ToQString(result.failure));
}

/// The colours of a dark desktop, for a look at the windows in them.
void UseDarkPalette() {
    QApplication::setStyle("Fusion");
    QPalette palette(QColor(0x2d, 0x2f, 0x33));
    palette.setColor(QPalette::Base, QColor(0x1e, 0x20, 0x23));
    palette.setColor(QPalette::AlternateBase, QColor(0x26, 0x28, 0x2c));
    for (auto const role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText}) {
        palette.setColor(role, QColor(0xe6, 0xe6, 0xe6));
        palette.setColor(QPalette::Disabled, role, QColor(0x88, 0x88, 0x88));
    }
    palette.setColor(QPalette::Highlight, QColor(0x3d, 0x7a, 0xc8));
    QApplication::setPalette(palette);
}

int ChannelOf(CStoreDocument const& document, QString const& name) {
    for (ChannelEntry const& entry : document.Channels()) {
        if (entry.name == name) return entry.index;
    }
    Fail("there is no channel " + name);
}

int LineOf(CStoreDocument const& document, QString const& name) {
    for (std::size_t i = 0; i < document.Lines().size(); ++i) {
        if (document.Lines()[i].name == name) return static_cast<int>(i);
    }
    Fail("there is no line " + name);
}

/// Copies of the samples in a folder of their own, as a person would have them.
void TakeSheet(QString const& survey, QDir const& folder) {
    QTemporaryDir const work;
    QDir const samples = QFileInfo(survey).dir();
    for (char const* const name : {"survey.csv", "survey.xyz", "cg3.dmp", "tracks.gpx", "base.bin"}) {
        QFile::copy(samples.filePath(name), work.filePath(name));
    }
    CImportSheet sheet({work.path()}, nullptr);
    sheet.show();
    for (int i = 0; i < sheet.Files().topLevelItemCount(); ++i) {
        QTreeWidgetItem* const row = sheet.Files().topLevelItem(i);
        if (row->text(0) == "survey.csv") sheet.Files().setCurrentItem(row);
    }
    while (sheet.IsBusy()) QApplication::processEvents();
    sheet.Proposal().Rows().selectColumn(6);
    Save(sheet, folder.filePath("sheet.png"));
}

void TakeAll(QString const& survey, QDir const& folder) {
    QTemporaryDir const work;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, work.path());
    std::map<std::string, std::string> const settings = {{"input", survey.toStdString()},
                                                         {"store", work.filePath("survey.nvt").toStdString()},
                                                         {"output", work.filePath("survey.xyz").toStdString()}};
    TakeSheet(survey, folder);
    PlayAndPicture("columns", settings, folder);
    PlayAndPicture("export", settings, folder);

    CMainWindow window;
    window.resize(kWidth, kHeight);
    window.show();
    Save(window, folder.filePath("start.png"));
    window.OpenFile(ToQString(settings.at("store")));
    window.ChooseLine(LineOf(window.Document(), "1020"));
    window.ChooseChannels({ChannelOf(window.Document(), "Mag"), ChannelOf(window.Document(), "Alt")}, kAgainstDistance);
    window.Table().ShowLocation(24);
    Save(window, folder.filePath("profile.png"));
    CExportWindow write(window.Document(), nullptr);
    write.File().setText("/surveys/survey.csv");
    write.show();
    Save(write, folder.filePath("write.png"));
    window.Tabs().setCurrentIndex(1);
    QApplication::processEvents();
    window.Map().WaitUntilDrawn();
    Save(window, folder.filePath("map.png"));
    window.Tabs().setCurrentIndex(2);
    window.Quality().WaitUntilDone();
    Save(window, folder.filePath("quality.png"));
}

}  // namespace

}  // namespace norva

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setApplicationName("norva-screenshots");
    QApplication::setOrganizationName("Norva");
    QStringList arguments = QApplication::arguments();
    if (arguments.removeAll("--dark") > 0) norva::UseDarkPalette();
    if (arguments.size() != 3) norva::Fail("usage: norva-screenshots SURVEY FOLDER [--dark]");
    norva::TakeAll(arguments[1], QDir(arguments[2]));
    return 0;
}
