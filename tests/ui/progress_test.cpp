#include "exchange/progress_dlg.h"
#include "exchange/progress_template.h"
#include "norva/scripted_toolkit.h"
#include "norva/trace.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace norva {
namespace {

using namespace ids::Progress;

/// A progress window, and what was traced of it, each event as "event text" or "window state".
class ProgressTest : public testing::Test {
protected:
    ProgressTest() : m_before(SetToolkit(&m_toolkit)) {}
    ~ProgressTest() override { SetToolkit(m_before); }

    void Send(char const* text) {
        m_events.clear();
        EXPECT_EQ(m_window.SendMessage(WM_PROGRESS_TEXT, 0, TextParameter(text)), 0);
    }
    std::string State() const {
        return std::to_string(m_window.FindControl(kFileBar)->position) + " " +
               std::to_string(m_window.FindControl(kChannelBar)->position) + " [" +
               m_window.FindControl(kFileText)->text + "] [" + m_window.FindControl(kChannelText)->text + "]";
    }

    std::vector<std::string> m_events;
    CTrace m_trace{[this](std::string_view line) {
        nlohmann::json const event = nlohmann::json::parse(line);
        std::string const name = event.at("event");
        m_events.push_back(name + ":" + event.at(name == "window" ? "state" : "text").get<std::string>());
    }};
    CScriptedToolkit m_toolkit{{}, false, &m_trace};
    CToolkit* m_before;
    CProgressDlg m_window;
};

TEST_F(ProgressTest, TextsMoveBarsAndTexts) {
    m_window.Create();
    struct Case {
        char const* text;
        char const* state;
        std::vector<std::string> effects;
    };
    for (Case const& c : std::vector<Case>{
             {"FilePercent 57", "57 0 [] []", {}},
             {"FilePercent abc", "0 0 [] []", {}},
             {"FilePercent   12.9", "12 0 [] []", {}},
             {"ChannelPercent 250", "12 100 [] []", {}},
             {"ChannelPercent -7", "12 0 [] []", {}},
             {"ChannelPercent 99999999999999999999", "12 100 [] []", {}},
             {"ChannelName Mag Field", "12 100 [] [ Mag Field]", {"channel-text: Mag Field"}},
             {"FileName C:\\data\\line1.dmp",
              "12 100 [line1.dmp] [ Mag Field]",
              {"window:shown", "file-text:line1.dmp"}},
             {"FileName /data/line2.dmp", "12 100 [line2.dmp] [ Mag Field]", {"window:shown", "file-text:line2.dmp"}},
             {"FileName survey", "12 100 [ survey] [ Mag Field]", {"window:shown", "file-text: survey"}},
             {"Percent 10", "12 100 [ survey] [ Mag Field]", {}},
             {"filepercent 10", "12 100 [ survey] [ Mag Field]", {}},
             {"FilePercent", "12 100 [ survey] [ Mag Field]", {}},
             {" FilePercent 10", "12 100 [ survey] [ Mag Field]", {}},
             {"", "12 100 [ survey] [ Mag Field]", {}}}) {
        Send(c.text);
        EXPECT_EQ(State(), c.state) << c.text;
        std::vector<std::string> expected{std::string("progress:") + c.text};
        expected.insert(expected.end(), c.effects.begin(), c.effects.end());
        EXPECT_EQ(m_events, expected);
    }
    Send(nullptr);
    EXPECT_TRUE(m_events.empty());
    EXPECT_EQ(m_window.SendMessage(WM_OWNER_NOTICE, 0, TextParameter("FilePercent 1")), 0);
    m_window.ResetBars();
    EXPECT_EQ(State(), "0 0 [ survey] [ Mag Field]");
}

TEST_F(ProgressTest, WindowLivesFromCreationToDestruction) {
    Send("FilePercent 3");
    EXPECT_TRUE(m_events.empty()) << "there is no window yet to send to";
    EXPECT_EQ(State(), "0 0 [] []");
    {
        CProgressDlg window;
        window.Create();
        window.SetWindowTitle("Import GBN");
        window.ShowFileName("Please wait a second");
        EXPECT_EQ(window.Title(), "Import GBN");
    }
    EXPECT_EQ(m_events, (std::vector<std::string>{"window:created", "window:titled", "file-text:Please wait a second",
                                                  "window:destroyed"}));
}

TEST_F(ProgressTest, ReporterSendsAPercentageWhenItChanges) {
    m_window.Create();
    m_events.clear();
    CProgressReporter reporter(m_window);
    for (long long percent : {0, 0, 1, 1, 0}) reporter.FilePercent(percent);
    reporter.ChannelName("X %d");
    for (long long percent : {100, 100}) reporter.ChannelPercent(percent);
    EXPECT_EQ(m_events, (std::vector<std::string>{"progress:FilePercent 0", "progress:FilePercent 1",
                                                  "progress:FilePercent 0", "progress:ChannelName X %d",
                                                  "channel-text: X %d", "progress:ChannelPercent 100"}));
}

}  // namespace
}  // namespace norva
