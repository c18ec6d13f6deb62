#include "report_window.h"
#include "source_view.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTextBrowser>
#include <QUrl>

namespace norva::test {

TEST(ReportWindow, SaysLossesFirstAndOffersToImportAgain) {
    ImportReport report;
    report.sourcePath = "/surveys/in.csv";
    report.mended = {2, {{7, 0, "a row"}}};
    ReportChannel channel;
    channel.settings.name = "Note";
    channel.noData = {3, {}};
    channel.cut = {4, {{55, 99, "dropout"}}};
    report.channels = {channel};
    auto const buttonOf = [](CReportWindow& window) -> QPushButton* {
        for (QPushButton* const button : window.findChildren<QPushButton*>()) {
            if (button->text().remove('&') == "Import again...") return button;
        }
        return nullptr;
    };
    CReportWindow window(report, nullptr);
    QString const text = window.Text().toPlainText();
    EXPECT_LT(text.indexOf("line 55, column 99 dropout"), text.indexOf("line 7 a row")) << text.toStdString();
    QString again;
    QObject::connect(&window, &CReportWindow::ImportWished, [&again](QString const& path) { again = path; });
    ASSERT_NE(buttonOf(window), nullptr);
    QTest::mouseClick(buttonOf(window), Qt::LeftButton);
    EXPECT_EQ(again, "/surveys/in.csv");

    report.channels.front().cut = {};
    CReportWindow clean(report, nullptr);
    EXPECT_EQ(buttonOf(clean), nullptr);
}

TEST(ReportWindow, PlacesOpenTheSourceAtTheirLine) {
    CTemporaryFolder const folder;
    constexpr int kLines = 200000;  // over several pieces and index steps
    std::string text;
    for (int i = 1; i <= kLines; ++i) {
        text += "ab row" + std::to_string(i) + (i % 3 == 0 ? "\r\n" : i % 3 == 1 ? "\n" : "\r");
    }
    WriteWholeFile(folder / "in.xyz", text);
    ImportReport report;
    report.sourcePath = folder / "in.xyz";
    report.moreValues = {1, {{9000, 4, "<row9000>"}}};
    CReportWindow window(report, nullptr);
    EXPECT_TRUE(window.Text().toPlainText().contains("line 9000, column 4 <row9000>"));
    for (int const line : {1, 2, 3, 201, 4096, 4097, 4098, 9000, 150000, kLines}) {
        std::string const row = "row" + std::to_string(line);
        window.OpenPlace(QUrl(QString("place:%1:4:%2").arg(line).arg(row.size())));
        ASSERT_NE(window.Source(), nullptr);
        EXPECT_EQ(window.Source()->Text().textCursor().selectedText().toStdString(), row);
    }
}

}  // namespace norva::test
