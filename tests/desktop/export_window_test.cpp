#include "export_window.h"
#include "norva/exchange.h"
#include "person.h"
#include "store_document.h"
#include "support/store_samples.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QDir>
#include <QLineEdit>
#include <QListWidget>
#include <QSettings>

namespace norva::test {

namespace {

class ExportWindow : public testing::Test {
protected:
    ExportWindow() {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QString::fromStdString(folder.Path()));
    }
    void Open(std::string const& name) {
        QString why;
        ASSERT_TRUE(document.Open(QString::fromStdString(folder / name), why)) << why.toStdString();
    }
    static void Export(CExportWindow& window) {
        QTest::mouseClick(&window.ExportButton(), Qt::LeftButton);
        EXPECT_TRUE(QTest::qWaitFor([&window] { return !window.IsBusy(); }, 60'000));
    }
    /// What the library writes by the settings.
    std::string Expected(ExportSettings const& settings, std::string const& name) {
        ExportRequest request;
        request.storePath = document.Path().toStdString();
        request.outputPath = folder / name;
        request.settings = settings;
        ExportResult result;
        EXPECT_TRUE(ExportStore(request, result));
        return ReadWholeFile(folder / name);
    }

    CTemporaryFolder folder;
    CStoreDocument document;
};

TEST_F(ExportWindow, WritesAllUnlessToldOtherwise) {
    ASSERT_TRUE(WriteSampleStore(folder / "s.nvt"));
    Open("s.nvt");
    {
        CExportWindow window(document, nullptr);
        window.show();
        EXPECT_EQ(window.Path().toStdString(), folder / "s.xyz");
        Export(window);
        EXPECT_EQ(window.result(), QDialog::Accepted);
        EXPECT_EQ(ReadWholeFile(folder / "s.xyz"), Expected({}, "all.xyz"));
    }
    std::string const before = ReadWholeFile(folder / "s.xyz");
    CExportWindow window(document, nullptr);
    window.show();
    EXPECT_FALSE(window.ExportButton().isEnabled());  // a file of that name is there
    window.File().setText(QString::fromStdString(folder / "some.csv"));
    window.FullDigits().setChecked(true);
    window.Lines().item(0)->setCheckState(Qt::Unchecked);
    window.Channels().item(1)->setCheckState(Qt::Unchecked);
    Export(window);
    ExportSettings settings;
    settings.fullDigits = true;
    settings.lines.emplace();
    for (int i = 1; i < window.Lines().count(); ++i) {
        settings.lines->push_back(window.Lines().item(i)->data(Qt::UserRole).toInt());
    }
    settings.channels = {0};
    for (int i = 2; i < window.Channels().count(); ++i) settings.channels->push_back(i);
    EXPECT_EQ(ReadWholeFile(folder / "some.csv"), Expected(settings, "expected.csv"));
    EXPECT_EQ(ReadWholeFile(folder / "s.xyz"), before);
    // The next one begins where this one ended.
    EXPECT_EQ(CExportWindow(document, nullptr).Path().toStdString(), folder / "s.csv");
}

TEST_F(ExportWindow, IsStoppedAndLeavesTheOlderFile) {
    constexpr long kLocations = 3'000'000;
    {
        StoreSample sample;
        sample.lines = {{"all", kLocations}};
        std::vector<float> values(kLocations, 0.1F);
        sample.channels.push_back({{"Mag", "nT", DataType::kFloat, 0, 0, 1, DisplayFormat::kFixed, 2, -1, 0},
                                   {reinterpret_cast<char const*>(values.data()), values.size() * sizeof(float)}});
        CNorvaFileUtil store;
        ASSERT_TRUE(WriteSample(store, folder / "long.nvt", sample));
    }
    WriteWholeFile(folder / "long.xyz", "mine");
    Open("long.nvt");
    CExportWindow window(document, nullptr);
    window.show();
    for (QCheckBox* const box : window.findChildren<QCheckBox*>()) {
        if (box->text().contains("Replace")) box->click();
    }
    QTest::mouseClick(&window.ExportButton(), Qt::LeftButton);
    ASSERT_TRUE(window.IsBusy());
    QTest::keyClick(&window, Qt::Key_Escape);
    ASSERT_TRUE(QTest::qWaitFor([&window] { return !window.IsBusy(); }, 60'000));
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(ReadWholeFile(folder / "long.xyz"), "mine");
    EXPECT_EQ(QDir(QString::fromStdString(folder.Path())).entryList({"*long*"}, QDir::Files | QDir::Hidden).size(), 2);
}

}  // namespace

}  // namespace norva::test
