#include "common/script_json.h"
#include "import_sheet.h"
#include "norva/scripted_toolkit.h"
#include "person.h"
#include "run_window.h"
#include "support/store_samples.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QDir>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QMimeData>
#include <QProgressBar>
#include <QRegularExpression>
#include <QSettings>
#include <QTableView>

namespace norva::test {

namespace {

/// Settings of its own, before the window reads them.
struct SettingsFolder : CTemporaryFolder {
    SettingsFolder() {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QString::fromStdString(Path()));
        qputenv("XDG_CONFIG_HOME", QByteArray::fromStdString(Path()));
    }
};

class MainWindow : public testing::Test {
protected:
    void SetUp() override {
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

    SettingsFolder folder;
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

TEST_F(MainWindow, MarksAreChangesUntilTheyAreSaved) {
    ASSERT_TRUE(WriteSampleStore(folder / "s.nvt"));
    Open(folder / "s.nvt");
    window.ChooseLine(1);
    auto const inFile = [this] {
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
    auto const shown = [this] {
        std::string all;
        for (int line = 0; line < 2; ++line) {
            LineEntry const& entry = window.Document().Lines()[static_cast<std::size_t>(line)];
            all += entry.flag != 0 ? "hidden " : "";
            for (long i = 0; i < entry.locations; ++i) all += window.Document().IsDeleted(line, i) ? "x" : "-";
        }
        return all;
    };
    std::string const before = ReadWholeFile(folder / "s.nvt");
    window.Table().ShowLocation(2);
    Choose(window, "Mark as deleted");
    Choose(window, "Hide or show the line");
    EXPECT_EQ(shown(), "-----hidden --x");
    EXPECT_EQ(ReadWholeFile(folder / "s.nvt"), before);
    EXPECT_TRUE(window.isWindowModified());
    EXPECT_EQ(window.Table().SelectedLocations(), (std::vector<long>{2}));

    Choose(window, "Undo hide the line");
    Choose(window, "Undo mark as deleted");
    EXPECT_EQ(shown(), "--------");
    EXPECT_FALSE(window.isWindowModified());
    Choose(window, "Redo mark as deleted");
    EXPECT_EQ(shown(), "-------x");
    Choose(window, "Save marks");
    EXPECT_EQ(inFile(), "-------x");
    EXPECT_FALSE(window.isWindowModified());
    EXPECT_EQ(Cell(2, 0), "1001.75");

    // Closing asks what becomes of what is not saved.
    window.Table().ShowLocation(2);
    Choose(window, "Take the mark away");
    auto const answer = [](QMessageBox::StandardButton button) {
        return [button](QWidget& box) {
            auto* const message = qobject_cast<QMessageBox*>(&box);
            if (message != nullptr) message->button(button)->click();
            return message != nullptr;
        };
    };
    {
        CPerson const person({answer(QMessageBox::Cancel)});
        EXPECT_FALSE(window.close());
    }
    {
        CPerson const person({answer(QMessageBox::Save)});
        EXPECT_TRUE(window.close());
    }
    EXPECT_EQ(inFile(), "--------");
}

TEST_F(MainWindow, RowsAreChosenWithCtrlCopiedSortedAndFound) {
    ASSERT_TRUE(WriteSampleStore(folder / "s.nvt"));
    Open(folder / "s.nvt");
    window.ChooseLine(0);
    QTableView& view = window.Table().View();
    auto const click = [&view](int row, Qt::KeyboardModifiers modifiers = {}) {
        QTest::mouseClick(view.viewport(), Qt::LeftButton, modifiers, QPoint(30, view.rowViewportPosition(row) + 4));
    };
    click(0);
    click(2, Qt::ControlModifier);
    click(4, Qt::ControlModifier);
    click(2, Qt::ControlModifier);
    EXPECT_EQ(window.Table().SelectedLocations(), (std::vector<long>{0, 4}));
    QTest::keySequence(&view, QKeySequence::Copy);
    EXPECT_EQ(QApplication::clipboard()->text().toStdString(),
              "Location\tX (m)\tMag (nT)\tFid\tRaw (mV)\tStation\tCounts\n"
              "0\t1000.00\t48000.5\t0\t0\tS0\t0 ...\n"
              "4\t1001.00\t47996.5\t400\t-4\tS4\t4 ...\n");

    // By Mag: location 1 has none and stands last both ways.
    std::vector<std::string> const orders = {"4 3 2 0 1", "0 2 3 4 1", "0 1 2 3 4"};
    for (std::string const& order : orders) {
        window.Table().SortNext(1);
        QStringList locations;
        for (int row = 0; row < 5; ++row) locations << view.model()->headerData(row, Qt::Vertical).toString();
        EXPECT_EQ(locations.join(' ').toStdString(), order);
    }
    struct Find {
        char const* text;
        std::vector<long> places;
    };
    for (Find const& find : {Find{"47998.5", {2, 2}}, Find{"s3", {3, 3}}, Find{"300", {3, 3}}, Find{"4", {4, 4}}}) {
        click(0);
        Choose(window, "Find a value...");
        QLineEdit* const box = window.Table().findChild<QLineEdit*>();
        box->clear();
        QTest::keyClicks(box, find.text);
        for (long const place : find.places) {
            QTest::keyClick(box, Qt::Key_Return);
            EXPECT_EQ(window.Table().SelectedLocations(), std::vector<long>{place}) << find.text;
        }
    }
}

TEST_F(MainWindow, TheFilterKeepsWhatIsChosenAndTheOtherList) {
    ASSERT_TRUE(WriteSampleStore(folder / "s.nvt"));
    Open(folder / "s.nvt");
    auto* const filter = window.Panel().findChild<QLineEdit*>();
    QListWidget& lines = window.Panel().LineList();
    auto const shown = [&lines] {
        std::string all;
        for (int row = 0; row < lines.count(); ++row) all += lines.item(row)->isHidden() ? "-" : "x";
        return all;
    };
    QTest::keyClicks(filter, "mag");
    EXPECT_EQ(shown(), "xx");
    filter->clear();
    window.ChooseLine(0);
    QTest::keyClicks(filter, "L20");
    EXPECT_EQ(shown(), "xx");
    window.ChooseLine(1);
    filter->clear();
    QTest::keyClicks(filter, "L20");
    EXPECT_EQ(shown(), "-x");
    EXPECT_EQ(window.Panel().Line(), 1);
    EXPECT_EQ(window.Panel().Channels().size(), 1U);
}

TEST_F(MainWindow, OffersToReadAStoreAgainThatAnotherProgramChanged) {
    ASSERT_TRUE(WriteSampleStore(folder / "s.nvt"));
    Open(folder / "s.nvt");
    window.LookForChanges();
    auto const find = [this]() -> QPushButton* {
        for (QPushButton* const button : window.findChildren<QPushButton*>()) {
            if (button->text() == "Read it again" && button->isVisible()) return button;
        }
        return nullptr;
    };
    EXPECT_EQ(find(), nullptr);
    StoreSample sample = MakeStoreSample();
    sample.lines[0].name = "a longer name";
    CNorvaFileUtil store;
    ASSERT_TRUE(WriteSample(store, folder / "s.nvt", sample));
    window.LookForChanges();
    ASSERT_NE(find(), nullptr);
    QTest::mouseClick(find(), Qt::LeftButton);
    EXPECT_EQ(window.Document().Lines()[0].name, "a longer name");
    EXPECT_EQ(find(), nullptr);
}

TEST_F(MainWindow, NoMenuHasALetterTwice) {
    auto const letterOf = [](QString const& text) {
        qsizetype const at = text.indexOf(QRegularExpression("&[^&]"));
        return at < 0 ? QChar() : text[at + 1].toLower();
    };
    QString alone;
    for (QAction const* const menu : window.menuBar()->actions()) {
        alone += letterOf(menu->text());
        QString letters;
        for (QAction const* const entry : menu->menu()->actions()) {
            QChar const letter = letterOf(entry->text());
            EXPECT_TRUE(letter.isNull() || !letters.contains(letter)) << entry->text().toStdString();
            letters += letter;
        }
    }
    // What is seen beside the menu bar shares its letters.
    for (QLabel const* const label : window.findChildren<QLabel*>()) {
        if (label->buddy() == nullptr || letterOf(label->text()).isNull()) continue;
        EXPECT_FALSE(alone.contains(letterOf(label->text()))) << label->text().toStdString();
    }
}

/// A survey of so many rows as text.
void WriteSurvey(std::string const& path, int rows) {
    std::string text = "X Y Mag\n";
    for (int i = 0; i < rows; ++i) text += std::to_string(i) + " 7.5 " + std::to_string(48000 + i % 97) + ".25\n";
    WriteWholeFile(path, text);
}

TEST_F(MainWindow, AnImportIsStoppedAndLeavesEverythingAsItWas) {
    WriteSurvey(folder / "long.xyz", 1'000'000);
    ASSERT_TRUE(WriteSampleStore(folder / "s.nvt"));
    std::string const before = ReadWholeFile(folder / "s.nvt");
    Open(folder / "s.nvt");
    QElapsedTimer sinceCancel;
    auto const stop = [&sinceCancel](QWidget& progress) {
        auto* const running = qobject_cast<CRunWindow*>(&progress);
        if (running == nullptr || running->findChild<QProgressBar*>()->value() < 5) return false;
        QTest::mouseClick(&running->CancelButton(), Qt::LeftButton);
        sinceCancel.start();
        return true;
    };
    CPerson const person({CPerson::SaveAs(folder / "t.nvt"), CPerson::Press("Import: Set Channels", "Continue"), stop});
    window.Import(QString::fromStdString(folder / "long.xyz"));
    EXPECT_EQ(person.Left(), 0U);
    EXPECT_LT(sinceCancel.elapsed(), 200);
    EXPECT_EQ(window.Document().Path().toStdString(), folder / "s.nvt");
    EXPECT_EQ(ReadWholeFile(folder / "s.nvt"), before);
    EXPECT_EQ(window.Report(), nullptr);
    EXPECT_EQ(QDir(QString::fromStdString(folder.Path())).entryList({"t.nvt*"}, QDir::Files | QDir::Hidden).size(), 0);
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
    auto const byHand = [](QWidget& shown) {
        auto* const sheet = qobject_cast<CImportSheet*>(&shown);
        for (QPushButton* const button : shown.findChildren<QPushButton*>()) {
            if (sheet == nullptr || button->text().remove('&') != "By hand..." || !button->isEnabled()) continue;
            QTest::mouseClick(button, Qt::LeftButton);
            return true;
        }
        return false;
    };
    // A recorded import goes through the library's windows at once, another from the sheet on demand.
    auto const drop = [&](std::string const& store, bool isRecorded, std::vector<CPerson::Answer> answers) {
        if (!isRecorded) answers.insert(answers.begin(), byHand);
        answers.insert(answers.begin() + (isRecorded ? 0 : 1), CPerson::SaveAs(folder / store));
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
    std::string const imported = drop(
        "a.nvt", true,
        {CPerson::Press(columns, "Save as template..."), CPerson::Type("mine"), CPerson::Press(columns, "Continue")});

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
    EXPECT_EQ(drop("c.nvt", false, {useTemplate, CPerson::Press(columns, "Continue")}), imported);
}

}  // namespace

}  // namespace norva::test
