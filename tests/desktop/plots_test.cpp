#include "person.h"
#include "quality.h"
#include "reduce.h"
#include "support/store_samples.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <QLineEdit>
#include <QListWidget>
#include <QTabWidget>

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

TEST(Reduce, BreaksAtLongSteps) {
    std::vector<double> const x = {0, 1, 2, 3, 50, 51, 52};
    std::vector<double> const y = {1, 1, 1, 1, 2, 2, 2};
    ReducedLine const line = ReduceForPixels(x, y, 0, 60, 600, 5);
    EXPECT_EQ(line.y.size(), 8U);
    EXPECT_TRUE(std::isnan(line.y[4]));
}

TEST(Limits, AreNumbersOrTimes) {
    struct Case {
        char const* text;
        double value;  ///< NaN: refused
    };
    for (Case const& one : {Case{" 12.5 ", 12.5}, Case{"-3e2", -300}, Case{"12,5", 12.5}, Case{"09:30", 9.5},
                            Case{"9:30:36", 9.51}, Case{"-0:30", -0.5}, Case{"9:60", NAN}, Case{"1:2:3:4", NAN},
                            Case{"", NAN}, Case{"abc", NAN}, Case{"1:x", NAN}, Case{"nan", NAN}, Case{"inf", NAN}}) {
        double value = 7;
        bool const isRead = ReadLimit(one.text, value);
        EXPECT_EQ(isRead, !std::isnan(one.value)) << one.text;
        EXPECT_NEAR(value, isRead ? one.value : 7, 1e-12) << one.text;
    }
    EXPECT_EQ(ClockText(9.51, 0).toStdString(), "09:30:36");
    EXPECT_EQ(ClockText(-0.5, 1).toStdString(), "-00:30:00.0");
    EXPECT_EQ(ClockText(23.99999999, 0).toStdString(), "24:00:00");
}

TEST(Colours, ShareTheReadingsAndTellWhatIsClipped) {
    std::vector<float> sorted;
    for (int i = 0; i < 10000; ++i) sorted.push_back(static_cast<float>(std::pow(i / 10000.0, 4)));
    sorted.push_back(1000);  // a spike
    using Mode = ColourChoice::Mode;
    CColourScale const area({Mode::EqualArea, 0, 0}, sorted);
    std::vector<int> counts(kColourClasses);
    for (float const value : sorted) ++counts[static_cast<std::size_t>(area.ClassOf(value))];
    for (int i = 1; i + 1 < kColourClasses; ++i) EXPECT_NEAR(counts[static_cast<std::size_t>(i)], 38, 3) << i;
    EXPECT_TRUE(area.IsClippedAbove() && area.IsClippedBelow());
    CColourScale const linear({Mode::Linear, 0, 0}, sorted);
    EXPECT_FALSE(linear.IsClippedAbove() || linear.IsClippedBelow());
    EXPECT_EQ(linear.ClassOf(1000), kColourClasses - 1);
    EXPECT_EQ(linear.ValueAt(0.5), 500);
    CColourScale const typed({Mode::Limits, 0, 2}, sorted);
    EXPECT_TRUE(typed.IsClippedAbove() && !typed.IsClippedBelow());
    EXPECT_EQ(typed.ClassOf(1), kColourClasses / 2);
    // Lightness grows from colour to colour, in steps of about the same size.
    auto const lightness = [](int i) {
        QRgb const c = CColourScale::Colour(i);
        auto const linearised = [](int part) { return std::pow(part / 255.0, 2.2); };
        return 116 *
               std::cbrt(0.2126 * linearised(qRed(c)) + 0.7152 * linearised(qGreen(c)) + 0.0722 * linearised(qBlue(c)));
    };
    double const all = lightness(kColourClasses - 1) - lightness(0);
    for (int i = 0; i + 32 < kColourClasses; i += 32)
        EXPECT_NEAR((lightness(i + 32) - lightness(i)) / all, 0.125, 0.06) << i;
}

ChannelEntry NumberChannel(int index, QString const& name, QString const& units, int format = DisplayFormat::kFixed) {
    ChannelEntry entry;
    entry.index = index;
    entry.name = name;
    entry.units = units;
    entry.isNumber = true;
    entry.displayFormat = format;
    return entry;
}

TEST(Positions, AreChosenByNameUnitsAndType) {
    struct Case {
        std::vector<ChannelEntry> channels;
        int x, y;
        PositionKind kind;
    };
    int const kGeo = DisplayFormat::kGeographic;
    Case const cases[] = {
        {{NumberChannel(0, "Latitude", ""), NumberChannel(1, "Longitude", "")}, 1, 0, PositionKind::Degrees},
        {{NumberChannel(0, "Lat", "", kGeo), NumberChannel(1, "Lon", "", kGeo), NumberChannel(2, "X", "m"),
          NumberChannel(3, "Y", "m")},
         2,
         3,
         PositionKind::Lengths},
        {{NumberChannel(0, "Grav.", ""), NumberChannel(1, "E.T.C.", ""), NumberChannel(2, "Height", "")},
         -1,
         -1,
         PositionKind::Unknown},
        {{NumberChannel(0, "Y_Coord", "ft"), NumberChannel(1, "X_Coord", "ft")}, 1, 0, PositionKind::Lengths},
        {{NumberChannel(0, "X", "nT"), NumberChannel(1, "Y", "nT")}, -1, -1, PositionKind::Unknown},
        {{NumberChannel(0, "X", "m"), NumberChannel(1, "Lat", "", kGeo)}, -1, -1, PositionKind::Unknown},
        {{NumberChannel(0, "NORTHING", "m"), NumberChannel(1, "EASTING", "m"), NumberChannel(2, "Mag", "nT")},
         1,
         0,
         PositionKind::Lengths}};
    for (Case const& one : cases) {
        PositionChoice const chosen = ChoosePositions(one.channels);
        EXPECT_EQ(chosen.x, one.x) << one.channels[0].name.toStdString();
        EXPECT_EQ(chosen.y, one.y) << one.channels[0].name.toStdString();
        if (chosen.x < 0) continue;
        EXPECT_EQ(KindOfPositions(one.channels[static_cast<std::size_t>(chosen.x)],
                                  one.channels[static_cast<std::size_t>(chosen.y)]),
                  one.kind);
    }
}

TEST(Quality, CountsWhatIsOdd) {
    std::vector<double> values;
    for (int i = 0; i < 200; ++i) values.push_back(100 + std::sin(i * 0.7));
    values[50] = 400;
    values[90] = values[91] = NAN;
    values[120] = -5;
    std::vector<bool> deleted(values.size());
    deleted[150] = true;
    values[150] = 9999;
    QualityRow const row = LookAtValues(values, deleted, true, false);
    EXPECT_EQ(row.count, 200);
    EXPECT_EQ(row.noData, 2);
    EXPECT_EQ(row.deleted, 1);
    EXPECT_EQ(row.spikes, 2);
    EXPECT_EQ(row.gaps, 1);
    EXPECT_EQ(row.place, 50);
    EXPECT_EQ(row.maximum, 400);
    EXPECT_EQ(row.minimum, -5);
    QualityRow const times = LookAtValues({1, 2, 2, 3, 2.5, 4, NAN}, {}, true, true);
    EXPECT_EQ(times.duplicates, 1);
    EXPECT_EQ(times.reversals, 1);
    EXPECT_EQ(times.gaps, 0);
    EXPECT_EQ(times.place, 2);
}

/// A store of doubles; every channel has the values of all lines one after the other.
class PlotWindow : public testing::Test {
protected:
    struct Channel {
        std::string name, units;
        std::vector<double> values;
        int format = DisplayFormat::kFixed;
    };
    void Open(std::vector<StoreSample::Line> const& lines, std::vector<Channel> const& channels) {
        StoreSample sample;
        sample.lines = lines;
        for (Channel const& channel : channels) {
            CPackedValues bytes;
            for (double const value : channel.values) bytes.Add(std::isnan(value) ? kNoDataDouble : value);
            sample.channels.push_back({{channel.name, channel.units, DataType::kDouble, 0, 0, 1, channel.format, 2,
                                        channel.format == DisplayFormat::kFixed ? -1 : 0, 0},
                                       bytes.bytes});
        }
        CNorvaFileUtil store;
        ASSERT_TRUE(WriteSample(store, folder / "s.nvt", sample));
        window.resize(1024, 640);
        window.show();
        window.OpenFile(QString::fromStdString(folder / "s.nvt"));
    }
    CMapPlot& ShowMap() {
        window.Tabs().setCurrentIndex(1);
        QApplication::processEvents();
        window.Map().WaitUntilDrawn();
        return window.Map();
    }
    static QPoint PlaceOf(CMapPlot const& map, double x, double y) {
        return {static_cast<int>(map.xAxis->coordToPixel(x)), static_cast<int>(map.yAxis->coordToPixel(y))};
    }

    CTemporaryFolder folder;
    CMainWindow window;
};

TEST_F(PlotWindow, AClickOnTheMapChoosesLineAndReading) {
    Open({{"south", 2}, {"north", 2}},
         {{"X", "m", {0, 100, 0, 100}}, {"Y", "m", {0, 0, 50, 50}}, {"Mag", "nT", {1, 2, 3, 4}}});
    CMapPlot& map = ShowMap();
    QTest::mouseClick(&map, Qt::LeftButton, {}, PlaceOf(map, 50, 50));
    EXPECT_EQ(window.Panel().Line(), 1);
    QTest::mouseClick(&map, Qt::LeftButton, {}, PlaceOf(map, 100, 0));
    EXPECT_EQ(window.Panel().Line(), 0);
    EXPECT_EQ(window.Table().SelectedLocations(), std::vector<long>{1});
    QString hovered;
    QObject::connect(&map, &CMapPlot::Hovered, [&hovered](QString const& text) { hovered = text; });
    QTest::mouseMove(&map, PlaceOf(map, 100, 50) + QPoint(2, 1));
    QTest::mouseMove(&map, PlaceOf(map, 100, 50));
    EXPECT_TRUE(hovered.contains("line north, location 1") && hovered.contains("Mag (nT): 4.0"))
        << hovered.toStdString();
}

TEST_F(PlotWindow, ReadingsInOnePixelShowTheirMedianOrLast) {
    // Five readings 0.1 m apart among 2 km: 0, 0, 0, 100, 50.
    std::vector<double> x = {0, 2000, 1000, 1000.1, 1000.2, 1000.3, 1000.4};
    Open({{"one", 7}},
         {{"X", "m", x}, {"Y", "m", std::vector<double>(7, 0.0)}, {"Mag", "nT", {0, 100, 0, 0, 0, 100, 50}}});
    CMapPlot& map = ShowMap();
    map.SetColours({ColourChoice::Mode::Linear, 0, 0});
    map.MarkLine(-1);
    auto const colourAt = [&map](double place) {
        map.WaitUntilDrawn();
        return map.grab().toImage().pixelColor(PlaceOf(map, place, 0)).rgb();
    };
    EXPECT_EQ(colourAt(1000.2), CColourScale::Colour(0));
    map.ShowMedian(false);
    EXPECT_EQ(colourAt(1000.2), CColourScale::Colour(kColourClasses / 2));
    map.ShowMedian(true);
    // Zoomed in, each is where it is.
    map.xAxis->setRange(999.9, 1000.5);
    map.yAxis->setRange(-0.2, 0.2);
    int const classes[] = {0, 0, 0, kColourClasses - 1, kColourClasses / 2};
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(colourAt(x[static_cast<std::size_t>(i) + 2]), CColourScale::Colour(classes[i])) << i;
    }
}

TEST_F(PlotWindow, DegreesKeepTheirAspect) {
    Open({{"track", 3}}, {{"Lat", "", {60, 60.01, 60.02}, DisplayFormat::kGeographic},
                          {"Lon", "", {10, 10.02, 10.05}, DisplayFormat::kGeographic}});
    CMapPlot& map = ShowMap();
    EXPECT_EQ(map.xAxis->label(), "Lon");
    double const perX = map.axisRect()->width() / map.xAxis->range().size();
    double const perY = map.axisRect()->height() / map.yAxis->range().size();
    EXPECT_NEAR(perY / perX, 2, 0.05);  // at 60 degrees a degree of longitude is half as long
    QString text;
    EXPECT_GT(map.ScaleBar(text), 0);
    EXPECT_TRUE(text.endsWith(" m") || text.endsWith(" km")) << text.toStdString();
}

TEST_F(PlotWindow, SparseValuesAreDrawnAndGapsAreNotBridged) {
    std::vector<double> x, sparse;
    for (int i = 0; i < 40; ++i) {
        x.push_back(i < 20 ? i : i + 500);
        sparse.push_back(i % 4 == 0 ? 5 : NAN);
    }
    Open({{"one", 40}}, {{"X", "m", x}, {"Rare", "s", sparse}, {"Flat", "nT", std::vector<double>(40, 1.0)}});
    window.ChooseChannels({1}, kAgainstLocation);
    auto const inked = [this](int from, int to) {
        QImage const picture = window.Profile().toPixmap(1000, 400).toImage();
        QRect const area = window.Profile().Panel(0).rect();
        int count = 0;
        for (int px = area.left() + area.width() * from / 100; px < area.left() + area.width() * to / 100; ++px) {
            bool isInked = false;
            for (int py = area.top(); py < area.bottom(); ++py) {
                QColor const colour = picture.pixelColor(px, py);
                isInked = isInked || colour.blue() - colour.red() > 90;
            }
            count += isInked ? 1 : 0;
        }
        return count;
    };
    EXPECT_GE(inked(2, 98), 9 * 2);
    window.ChooseChannels({2}, 0);
    EXPECT_EQ(inked(20, 80), 0);
    EXPECT_GT(inked(0, 100), 5);
}

TEST_F(PlotWindow, UnitsHavePanelsWithOneAxisAndTypedLimits) {
    Open({{"a", 3}, {"b", 3}}, {{"Time", "", {9, 9.5, 10, 9, 9.5, 10}, DisplayFormat::kTime},
                                {"Mag", "nT", {1, 2, 3, 4, 5, 6}},
                                {"Base", "nT", {1, 1, 1, 1, 1, 1}},
                                {"Alt", "m", {30, 31, 32, 33, 34, 35}}});
    window.ChooseChannels({1, 2, 3}, 0);
    CProfilePlot& plot = window.Profile();
    ASSERT_EQ(plot.Panels(), 2);
    EXPECT_EQ(plot.Panel(1).axis(QCPAxis::atBottom)->label(), "Time");
    EXPECT_TRUE(plot.Panel(1).axis(QCPAxis::atBottom)->tickVectorLabels().contains("09:30:00"));
    auto const typeLimits = [](QWidget& dialog) {
        QList<QLineEdit*> const boxes = dialog.findChildren<QLineEdit*>();
        if (dialog.windowTitle() != "Limits of the axes" || boxes.size() != 6) return false;
        char const* const texts[] = {"09:15", "09:45:00", "-1", "7", "20", "40"};
        for (int i = 0; i < 6; ++i) {
            boxes[i]->selectAll();
            QTest::keyClicks(boxes[i], texts[i]);
        }
        QTest::keyClick(boxes[5], Qt::Key_Return);
        return true;
    };
    {
        CPerson const person({typeLimits});
        for (QPushButton* const button : window.findChildren<QPushButton*>()) {
            if (button->text().remove('&') == "Limits...") QTest::mouseClick(button, Qt::LeftButton);
        }
        EXPECT_EQ(person.Left(), 0U);
    }
    for (int panel = 0; panel < 2; ++panel) {
        EXPECT_EQ(plot.Panel(panel).axis(QCPAxis::atBottom)->range(), QCPRange(9.25, 9.75));
    }
    EXPECT_EQ(plot.Panel(0).axis(QCPAxis::atLeft)->range(), QCPRange(-1, 7));
    QTest::keyClick(&plot, Qt::Key_Plus);
    EXPECT_LT(plot.Panel(0).axis(QCPAxis::atBottom)->range().size(), 0.4);
    QTest::keyClick(&plot, Qt::Key_Home);
    EXPECT_GT(plot.Panel(0).axis(QCPAxis::atBottom)->range().size(), 1);

    // Two lines: overlaid in the same panels, stacked in panels of their own.
    window.Panel().LineList().selectAll();
    EXPECT_EQ(plot.Panels(), 2);
    plot.Show({{0, 1}, {1, 3}, kAgainstLocation, true});
    EXPECT_EQ(plot.Panels(), 4);
}

}  // namespace

}  // namespace norva::test
