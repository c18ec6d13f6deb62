#include "person.h"
#include "run_window.h"
#include "support/store_samples.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <QTabWidget>

#include <algorithm>
#include <cmath>

namespace norva::test {

namespace {

TEST(LongRuns, AMapOfMillionsMovesWhileItIsRead) {
    constexpr long kLocations = 2'000'000;
    CTemporaryFolder const folder;
    {
        StoreSample sample;
        sample.lines = {{"all", kLocations}};
        std::vector<float> x(kLocations), y(kLocations), mag(kLocations);
        for (std::size_t i = 0; i < x.size(); ++i) {
            x[i] = static_cast<float>(i % 2000);
            y[i] = static_cast<float>(i / 2000);
            mag[i] = std::sin(x[i] / 300) + std::cos(y[i] / 300);
        }
        auto const channel = [&sample](char const* name, char const* units, std::vector<float> const& values) {
            sample.channels.push_back({{name, units, DataType::kFloat, 0, 0, 1, DisplayFormat::kFixed, 2, -1, 0},
                                       {reinterpret_cast<char const*>(values.data()), values.size() * sizeof(float)}});
        };
        channel("X", "m", x);
        channel("Y", "m", y);
        channel("Mag", "nT", mag);
        CNorvaFileUtil store;
        ASSERT_TRUE(WriteSample(store, folder / "long.nvt", sample));
    }
    CMainWindow window;
    window.resize(1024, 640);
    window.show();
    window.OpenFile(QString::fromStdString(folder / "long.nvt"));
    CMapPlot& map = window.Map();
    window.Tabs().setCurrentIndex(1);
    ASSERT_TRUE(QTest::qWaitFor([&map] { return map.Data() != nullptr && !map.Picture().image.isNull(); }, 60'000));
    // Until all is read, the view moves all the same.
    QCPRange const before = map.xAxis->range();
    QTest::keyClick(&map, Qt::Key_Right);
    EXPECT_GT(map.xAxis->range().lower, before.lower);
    map.WaitUntilDrawn();
    EXPECT_FALSE(map.Data()->IsPreview());
    EXPECT_EQ(map.Data()->Size(), static_cast<std::size_t>(kLocations));
    // Of many wishes the last is fulfilled.
    for (int i = 0; i < 20; ++i) QTest::keyClick(&map, i % 2 == 0 ? Qt::Key_Left : Qt::Key_Plus);
    map.WaitUntilDrawn();
    MapView const shown = map.ViewOf(map.axisRect()->rect(), map.bufferDevicePixelRatio());
    EXPECT_TRUE(map.Picture().view == shown);
}

TEST(LongRuns, ClosingDuringAnImportAsksAndStopsIt) {
    CTemporaryFolder const folder;
    std::string text = "X Y Mag\n";
    for (int i = 0; i < 1'000'000; ++i) text += std::to_string(i) + " 7.5 48000.25\n";
    WriteWholeFile(folder / "long.xyz", text);
    CMainWindow window;
    window.show();
    auto const closeMain = [&window](QWidget& progress) {
        if (qobject_cast<CRunWindow*>(&progress) == nullptr) return false;
        EXPECT_FALSE(window.close());
        return true;
    };
    auto const press = [](QMessageBox::StandardButton button) {
        return [button](QWidget& box) {
            auto* const message = qobject_cast<QMessageBox*>(&box);
            if (message != nullptr) message->button(button)->click();
            return message != nullptr;
        };
    };
    CPerson const person({CPerson::SaveAs(folder / "t.nvt"), CPerson::Press("Import: Set Channels", "Continue"),
                          closeMain, press(QMessageBox::No), closeMain, press(QMessageBox::Yes)});
    window.Import(QString::fromStdString(folder / "long.xyz"));
    EXPECT_EQ(person.Left(), 0U);
    EXPECT_FALSE(window.isVisible());
    EXPECT_FALSE(window.Document().IsOpen());
    EXPECT_FALSE(QFile::exists(QString::fromStdString(folder / "t.nvt")));
}

}  // namespace

}  // namespace norva::test
