#include "person.h"
#include "reduce.h"
#include "support/store_samples.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace norva::test {

namespace {

TEST(Reduce, KeepsTheExtremesOfEveryPixelAndTheGaps) {
    std::mt19937 random(3);
    std::uniform_real_distribution<double> draw(-1, 1);
    constexpr int kPixels = 50;
    for (int const count : {0, 1, 2, 49, 1000, 100'000}) {
        std::vector<double> values(static_cast<std::size_t>(count));
        for (double& value : values) value = draw(random) < -0.999 ? NAN : draw(random);
        double const upper = std::max(1, count);
        ReducedLine const line = ReduceForPixels({}, values, 0, upper, kPixels);
        auto const gaps = std::count_if(values.begin(), values.end(), [](double value) { return std::isnan(value); });
        // A pixel column has four points and as many again after every gap in it.
        EXPECT_LE(line.x.size(), 4U * (kPixels + 2) + 5 * static_cast<std::size_t>(gaps)) << count;
        for (int pixel = 0; pixel < kPixels; ++pixel) {
            auto const extremes = [&](auto const& xs, auto const& ys) {
                std::pair<double, double> range(HUGE_VAL, -HUGE_VAL);
                for (std::size_t i = 0; i < ys.size(); ++i) {
                    if (static_cast<int>(xs(i) / upper * kPixels) != pixel || std::isnan(ys[i])) continue;
                    range = {std::min(range.first, ys[i]), std::max(range.second, ys[i])};
                }
                return range;
            };
            EXPECT_EQ(extremes([&](std::size_t i) { return line.x[i]; }, line.y),
                      extremes([](std::size_t i) { return static_cast<double>(i); }, values))
                << count << " points, pixel " << pixel;
        }
        EXPECT_EQ(std::any_of(line.y.begin(), line.y.end(), [](double y) { return std::isnan(y); }), gaps > 0) << count;
    }
}

TEST(Map, AClickOnALineChoosesIt) {
    CTemporaryFolder folder;
    StoreSample sample;
    sample.lines = {{"south", 2}, {"north", 2}};
    CPackedValues x, y;
    for (double const value : {0.0, 100.0, 0.0, 100.0}) x.Add(value);
    for (double const value : {0.0, 0.0, 50.0, 50.0}) y.Add(value);
    sample.channels = {{{"X", "m", DataType::kDouble, 0, 0, 1, DisplayFormat::kFixed, 2, -1, 0}, x.bytes},
                       {{"Y", "m", DataType::kDouble, 0, 0, 1, DisplayFormat::kFixed, 2, -1, 0}, y.bytes}};
    CNorvaFileUtil store;
    ASSERT_TRUE(WriteSample(store, folder / "s.nvt", sample));
    CMainWindow window;
    window.resize(1024, 640);
    window.show();
    window.OpenFile(QString::fromStdString(folder / "s.nvt"));
    window.Tabs().setCurrentIndex(1);
    QApplication::processEvents();
    CMapPlot& map = window.Map();
    std::vector<int> chosen;
    QObject::connect(&map, &CMapPlot::LineChosen, [&chosen](int line) { chosen.push_back(line); });
    for (double const northing : {50.0, 0.0}) {
        QPoint const place(static_cast<int>(map.xAxis->coordToPixel(50)),
                           static_cast<int>(map.yAxis->coordToPixel(northing)));
        QTest::mouseClick(&map, Qt::LeftButton, {}, place);
    }
    EXPECT_EQ(chosen, (std::vector<int>{1, 0}));
}

}  // namespace

}  // namespace norva::test
