#include "common/script_json.h"
#include "norva/scripted_toolkit.h"
#include "person.h"
#include "support/store_samples.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <QDropEvent>
#include <QMimeData>
#include <QSettings>
#include <QTableView>

namespace norva::test {

namespace {

class MainWindow : public testing::Test {
protected:
    void SetUp() override {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QString::fromStdString(folder.Path()));
        qputenv("XDG_CONFIG_HOME", QByteArray::fromStdString(folder.Path()));
        window.resize(1024, 640);
        window.show();
    }
    void Open(std::string const& path) { window.OpenFile(QString::fromStdString(path)); }
    QString Cell(long location, int column) {
        window.Table().ShowLocation(location);
        auto* const view = window.Table().findChild<QTableView*>();
        for (int row = 0; row < view->model()->rowCount(); ++row) {
            if (view->model()->headerData(row, Qt::Vertical).toString() == QString::number(location)) {
                return view->model()->index(row, column).data().toString();
            }
        }
        return "not shown";
    }

    CTemporaryFolder folder;
    CMainWindow window;
};

/// One line of ten million floats, 0 but for one.
StoreSample LongLine(long spike) {
    constexpr long kLocations = 10'000'000;
    std::vector<float> values(kLocations, 0.0F);
    values[static_cast<std::size_t>(spike)] = 100.0F;
    StoreSample sample;
    sample.lines = {{"long", kLocations}};
    sample.channels = {{{"Mag", "nT", DataType::kFloat, 0, 0, 1, DisplayFormat::kFixed, 1, -1, 0},
                        {reinterpret_cast<char const*>(values.data()), values.size() * sizeof(float)}}};
    return sample;
}

TEST_F(MainWindow, ScrollsALineOfTenMillionLocationsWithItsSpike) {
    CNorvaFileUtil store;
    ASSERT_TRUE(WriteSample(store, folder / "long.nvt", LongLine(7'654'321)));
    Open(folder / "long.nvt");
    window.ChooseLine(0);
    EXPECT_EQ(Cell(7'654'321, 0), "100.0");
    EXPECT_EQ(Cell(9'999'999, 0), "0.0");
    EXPECT_EQ(Cell(0, 0), "0.0");

    // One value among ten million is drawn, over the whole height.
    window.ChooseChannels({0}, -1);
    QImage const picture = window.Profile().toPixmap(1000, 400).toImage();
    int rows = 0;
    for (int y = 0; y < picture.height(); ++y) {
        bool isDrawn = false;
        for (int x = picture.width() * 7 / 10; x < picture.width() * 8 / 10; ++x) {
            QColor const colour = picture.pixelColor(x, y);
            isDrawn = isDrawn || colour.blue() - colour.red() > 60;
        }
        rows += isDrawn ? 1 : 0;
    }
    EXPECT_GT(rows, 250);
}

TEST_F(MainWindow, MarksAreSavedAndTakenBack) {
    ASSERT_TRUE(WriteSampleStore(folder / "s.nvt"));
    Open(folder / "s.nvt");
    window.ChooseLine(1);
    auto const marked = [this] {
        CNorvaFileUtil store;
        EXPECT_NE(store.SetFileName(folder / "s.nvt", kReopenStore, nullptr), 0);
        int flag = 0;
        std::string name, all;
        long count = 0;
        for (int line = 0; line < 2; ++line) {
            store.GetProfileInfo(line, name, count, flag);
            all += flag != 0 ? "hidden " : "";
            for (long i = 0; i < count; ++i) all += store.IsLocMarkedToDelete(line, i) != 0 ? "x" : "-";
        }
        return all;
    };
    window.Table().ShowLocation(2);
    Choose(window, "Mark as deleted");
    EXPECT_EQ(marked(), "-------x");
    EXPECT_EQ(Cell(2, 0), "1001.75");
    window.Table().ShowLocation(2);
    Choose(window, "Take the mark away");
    EXPECT_EQ(marked(), "--------");
    Choose(window, "Hide or show the line");
    EXPECT_EQ(marked(), "-----hidden ---");
    Choose(window, "Hide or show the line");
    EXPECT_EQ(marked(), "--------");
}

TEST_F(MainWindow, AFileThatCannotBeReadLeavesWhatIsOpen) {
    ASSERT_TRUE(WriteSampleStore(folder / "s.nvt"));
    WriteWholeFile(folder / "bad.nvt", "PROFILES\nx");
    WriteWholeFile(folder / "empty.xyz", "");
    Open(folder / "s.nvt");
    for (char const* const name : {"bad.nvt", "empty.xyz", "none.xyz"}) {
        QString text;
        CPerson const person({CPerson::Read(text)});
        Open(folder / name);
        EXPECT_TRUE(text.contains(name)) << text.toStdString();
        EXPECT_EQ(window.Document().Path().toStdString(), folder / "s.nvt");
        EXPECT_EQ(person.Left(), 0U);
    }
}

TEST_F(MainWindow, ADroppedFileIsImportedRecordedAndGivesItsTemplate) {
    QString const survey = NORVA_SAMPLES "/survey.csv";
    auto const drop = [&](std::string const& store, std::vector<CPerson::Answer> answers) {
        answers.insert(answers.begin(), CPerson::SaveAs(folder / store));
        CPerson const person(std::move(answers));
        QMimeData files;
        files.setUrls({QUrl::fromLocalFile(survey)});
        QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&window, &enter);
        EXPECT_TRUE(enter.isAccepted());
        QDropEvent event(QPointF(10, 10), Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&window, &event);
        EXPECT_EQ(person.Left(), 0U);
        EXPECT_EQ(window.Document().Path().toStdString(), folder / store);
        EXPECT_EQ(window.Document().Channels().size(), 11U);
        return ReadWholeFile(folder / store);
    };
    QString const columns = "Import: Set Channels";
    window.RecordTo(QString::fromStdString(folder / "record.json"));
    std::string const imported = drop("a.nvt", {CPerson::Press(columns, "Save as template..."), CPerson::Type("mine"),
                                                CPerson::Press(columns, "Continue")});

    Script const script = ParseScript(ReadWholeFile(folder / "record.json"),
                                      {{"input", survey.toStdString()}, {"output", folder / "b.nvt"}});
    CScriptedToolkit toolkit(script.answers, false, nullptr);
    PlayResult const played = RunOperation(script, toolkit, nullptr, nullptr);
    EXPECT_EQ(played.failure, "");
    EXPECT_EQ(ReadWholeFile(folder / "b.nvt"), imported);

    auto const useTemplate = [](QWidget& dialog) {
        for (QPushButton* const button : dialog.findChildren<QPushButton*>()) {
            if (button->menu() == nullptr) continue;
            emit button->menu()->aboutToShow();
            EXPECT_EQ(button->menu()->actions().front()->text(), "mine");
            button->menu()->actions().front()->trigger();
            return true;
        }
        return false;
    };
    EXPECT_EQ(drop("c.nvt", {useTemplate, CPerson::Press(columns, "Continue")}), imported);
}

}  // namespace

}  // namespace norva::test
