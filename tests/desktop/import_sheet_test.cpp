#include "import_sheet.h"
#include "norva/exchange.h"
#include "person.h"
#include "proposal_view.h"
#include "report_window.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QProgressBar>
#include <QSettings>
#include <QTableWidget>
#include <QTextBrowser>
#include <QTreeWidget>

namespace norva::test {

namespace {

class ImportSheet : public testing::Test {
protected:
    ImportSheet() {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QString::fromStdString(folder.Path()));
    }
    QString Write(char const* name, std::string const& text) {
        WriteWholeFile(folder / name, text);
        return QString::fromStdString(folder / name);
    }
    static bool WaitUntilRead(CImportSheet& sheet) {
        return QTest::qWaitFor([&sheet] { return !sheet.IsBusy(); }, 20'000);
    }
    static void Import(CImportSheet& sheet) {
        QTest::mouseClick(&sheet.ImportButton(), Qt::LeftButton);
        EXPECT_TRUE(WaitUntilRead(sheet));
    }
    static std::string State(CImportSheet& sheet, int row) {
        return sheet.Files().topLevelItem(row)->text(4).toStdString();
    }
    static std::vector<std::string> Titles(CImportSheet& sheet) {
        std::vector<std::string> titles;
        QTableWidget& rows = sheet.Proposal().Rows();
        for (int i = 0; i < rows.columnCount(); ++i) {
            titles.push_back(rows.horizontalHeaderItem(i)->text().replace('\n', '|').toStdString());
        }
        return titles;
    }
    /// Chooses by the keyboard, as a person does who has no mouse.
    static void ChooseType(CImportSheet& sheet, QString const& type) {
        QComboBox& types = sheet.Proposal().Type();
        types.setFocus();
        types.showPopup();
        types.view()->setCurrentIndex(types.model()->index(types.findText(type), 0));
        QTest::keyClick(types.view(), Qt::Key_Return);
        ASSERT_TRUE(WaitUntilRead(sheet));
    }
    QStringList Files() const {
        return QDir(QString::fromStdString(folder.Path())).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }

    CTemporaryFolder folder;
};

std::string const kSurvey = "Line;X;Mag (nT);Note\n10;450000,25;48000,5;a\n10;450001,25;;b\n20;450002,25;48002,5;tie\n";

TEST_F(ImportSheet, ShowsAFileAsTheWholeOfItReads) {
    CImportSheet sheet({Write("s.csv", kSurvey)}, nullptr);
    sheet.show();
    ASSERT_TRUE(WaitUntilRead(sheet));
    EXPECT_EQ(sheet.Files().topLevelItem(0)->text(2), "3 rows, 4 columns");
    EXPECT_EQ(Titles(sheet),
              (std::vector<std::string>{"Line||starts lines", "X||double", "Mag|nT|float", "Note||text of 3"}));
    QTableWidget const& rows = sheet.Proposal().Rows();
    ASSERT_EQ(rows.rowCount(), 3);
    EXPECT_EQ(rows.verticalHeaderItem(1)->text(), "3");
    EXPECT_EQ(rows.item(1, 1)->text(), "450001,25");
    EXPECT_EQ(rows.item(1, 2)->text(), "");
    EXPECT_EQ(rows.item(1, 2)->toolTip(), "no data");
    EXPECT_TRUE(sheet.Proposal().Why().toPlainText().contains("semicolon"));

    // Without an edit the import is that of the library.
    Import(sheet);
    EXPECT_EQ(sheet.result(), QDialog::Accepted);
    ASSERT_EQ(sheet.Imported().size(), 1U);
    ImportRequest request;
    request.inputPath = folder / "s.csv";
    request.storePath = folder / "other.nvt";
    Inspection found;
    ASSERT_TRUE(InspectTextFile(request.inputPath, {}, found));
    request.settings = found.settings;
    ImportResult result;
    ASSERT_TRUE(ImportFile(request, result));
    EXPECT_EQ(ReadWholeFile(folder / "s.nvt"), ReadWholeFile(folder / "other.nvt"));
}

TEST_F(ImportSheet, WhatAPersonChangesIsImported) {
    CImportSheet sheet({Write("s.csv", kSurvey)}, nullptr);
    sheet.show();
    ASSERT_TRUE(WaitUntilRead(sheet));
    QTableWidget& rows = sheet.Proposal().Rows();
    rows.selectColumn(2);
    ChooseType(sheet, "double");
    auto* const name = sheet.Proposal().findChild<QLineEdit*>();
    name->setFocus();
    name->selectAll();
    QTest::keyClicks(name, "TMI");
    rows.selectColumn(1);
    ChooseType(sheet, "text");  // the file is read again for its width; what was changed stays
    rows.clearSelection();
    rows.selectColumn(3);
    ChooseType(sheet, "skip");
    rows.clearSelection();
    rows.selectColumn(0);
    QTest::mouseClick(sheet.Proposal().findChild<QCheckBox*>(), Qt::LeftButton);
    ASSERT_TRUE(WaitUntilRead(sheet));
    EXPECT_EQ(Titles(sheet), (std::vector<std::string>{"Line||short", "X||text of 9", "TMI|nT|double", "Note||skip"}));
    Import(sheet);
    CNorvaFileUtil store;
    ASSERT_EQ(store.SetFileName(folder / "s.nvt", kReopenStore, nullptr), 1);
    EXPECT_EQ(store.ProfileCount, 1);
    EXPECT_EQ(store.ChannelCount, 3);
    EXPECT_EQ(store.GetChannelName(store.GetFileChanIndex(2)), "TMI");
    EXPECT_EQ(store.GetChannelDataType(store.GetFileChanIndex(2)), static_cast<int>(DataType::kDouble));
}

TEST_F(ImportSheet, ImportsSeveralAndSaysWhatBecameOfEach) {
    Write("a.csv", kSurvey);
    Write("b.csv", kSurvey);
    Write("picture.png", std::string("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16));
    Write("b.nvt", "a store of mine");
    CImportSheet sheet({QString::fromStdString(folder.Path())}, nullptr);
    sheet.show();
    ASSERT_TRUE(WaitUntilRead(sheet));
    ASSERT_EQ(sheet.Files().topLevelItemCount(), 2);  // of a folder, what can be read
    EXPECT_EQ(State(sheet, 1), "a store of this name is there");
    sheet.Add({QString::fromStdString(folder / "picture.png"), NORVA_SAMPLES "/base.bin"});
    ASSERT_TRUE(WaitUntilRead(sheet));
    EXPECT_EQ(sheet.Files().topLevelItem(2)->text(1), "none that is known");
    EXPECT_EQ(State(sheet, 2), "it is a picture (PNG)");
    EXPECT_EQ(State(sheet, 3), "needs its columns: by hand");
    Import(sheet);
    EXPECT_TRUE(sheet.isVisible());
    EXPECT_NE(State(sheet, 0).find("nothing lost"), std::string::npos) << State(sheet, 0);
    EXPECT_EQ(ReadWholeFile(folder / "b.nvt"), "a store of mine");
    // Told to replace, it does.
    sheet.Files().setCurrentItem(sheet.Files().topLevelItem(1));
    for (QCheckBox* const box : sheet.findChildren<QCheckBox*>()) {
        if (box->text().contains("Replace")) QTest::mouseClick(box, Qt::LeftButton);
    }
    Import(sheet);
    EXPECT_EQ(sheet.Imported().size(), 2U);
    EXPECT_EQ(ReadWholeFile(folder / "b.nvt"), ReadWholeFile(folder / "a.nvt"));
}

TEST_F(ImportSheet, IsStoppedInTheMiddleAndLeavesNothing) {
    std::string text = "X Y Mag\n";
    for (int i = 0; i < 1'000'000; ++i) text += std::to_string(i) + " 7.5 " + std::to_string(48000 + i % 97) + ".25\n";
    CImportSheet sheet({Write("long.xyz", text)}, nullptr);
    sheet.show();
    ASSERT_TRUE(QTest::qWaitFor([&sheet] { return !sheet.IsBusy(); }, 120'000));
    QTest::mouseClick(&sheet.ImportButton(), Qt::LeftButton);
    auto* const bar = sheet.findChild<QProgressBar*>();
    ASSERT_TRUE(QTest::qWaitFor([bar] { return bar->isVisible() && bar->value() > 5; }, 60'000));
    QTest::keyClick(&sheet, Qt::Key_Escape);
    ASSERT_TRUE(QTest::qWaitFor([&sheet] { return !sheet.IsBusy(); }, 60'000));
    EXPECT_TRUE(sheet.isVisible());
    EXPECT_EQ(State(sheet, 0), "stopped");
    EXPECT_TRUE(sheet.Imported().empty());
    EXPECT_EQ(Files().filter("long"), QStringList{"long.xyz"});
    EXPECT_TRUE(sheet.ImportButton().isEnabled());
}

TEST_F(ImportSheet, LeadsFromTheFileToTheOpenStoreAndItsReport) {
    QString const survey = Write("s.csv", kSurvey);
    CMainWindow window;
    window.show();
    auto const pressEnter = [](QWidget& shown) {
        auto* const sheet = qobject_cast<CImportSheet*>(&shown);
        if (sheet == nullptr || !sheet->ImportButton().isEnabled()) return false;
        QTest::keyClick(sheet, Qt::Key_Return);
        return true;
    };
    CPerson const person({pressEnter});
    window.OpenFile(survey);
    EXPECT_EQ(person.Left(), 0U);
    EXPECT_EQ(window.Document().Path().toStdString(), folder / "s.nvt");
    EXPECT_NE(window.Report(), nullptr);
}

}  // namespace

}  // namespace norva::test
