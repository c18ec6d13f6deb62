#include "norva/import_export.h"
#include "norva/scripted_toolkit.h"
#include "platform/last_error.h"
#include "ui/messages.h"
#include "ui/test_dialog.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <thread>

namespace norva {
namespace {

TEST(Toolkit, ReportsTheExtensionOfTheNameElseOfTheFilter) {
    struct Case {
        char const* path;
        char const* picked;
        char const* filter;
        char const* extension;
    };
    for (Case const& c : std::vector<Case>{{"/a/out.XYZ", "gbn", "NVT files (*.nvt)|*.nvt|", "XYZ"},
                                           {"/a/out", "gbn", "NVT files (*.nvt)|*.nvt|", "gbn"},
                                           {"/a/out", ".gbn", "", "gbn"},
                                           {"/a.b/out", "", "NVT files (*.nvt)|*.nvt|XYZ (*.xyz)|*.xyz||", "nvt"},
                                           {"C:\\a.b\\out", "", "Geosoft GBN files (*.gbn)|*.gbn*||", "gbn"},
                                           {"out", "", "ASCII (*.txt; *stn)|*.txt; *.stn|All|*.*||", "txt"},
                                           {"out.", "", "TKI files (*.p*)|*.p*||", "p"},
                                           {"out", "", "Binary XYZ Files (*.*)|*.*||", ""},
                                           {"", "", "", ""}}) {
        EXPECT_EQ(ReportedExtension(c.path, c.picked, c.filter), c.extension) << c.path << " " << c.filter;
    }
}

/// Keeps what it was asked to show.
class ListeningToolkit : public CScriptedToolkit {
public:
    ListeningToolkit() : CScriptedToolkit({}, false, nullptr) {}
    MessageAnswer ShowMessage(MessageRequest const& request) override {
        message = request;
        return MessageAnswer::Yes;
    }
    void SetCursor(CursorShape shape) override { said += shape == CursorShape::Wait ? "wait " : "arrow "; }
    void OwnerNotice(std::string_view first, std::string_view second) override {
        said += "notice " + std::string(first) + "," + std::string(second) + " ";
    }
    void ShowHelp(std::string const& topic) override { said += "help " + topic + " "; }

    MessageRequest message;
    std::string said;
};

class OwnerWindow : public CWindow {
public:
    std::intptr_t SendMessage(unsigned message, std::intptr_t first, std::intptr_t second) override {
        said = std::to_string(message) + " " + reinterpret_cast<char const*>(first) + "," +
               reinterpret_cast<char const*>(second);
        return 5;
    }
    std::string said;
};

TEST(Toolkit, IsOfTheThreadAndNobodyAgreesWithoutOne) {
    ListeningToolkit toolkit;
    EXPECT_EQ(SetToolkit(&toolkit), nullptr);
    EXPECT_TRUE(AskYesNo("?"));
    std::thread([] {
        EXPECT_FALSE(AskYesNo("?"));
        EXPECT_EQ(TestDialog(4063).DoModal(), kButtonCancel);
        std::string path = "kept";
        EXPECT_FALSE(CurrentToolkit().ChooseFileToOpen({.initial = "a"}, path));
        EXPECT_EQ(path, "kept");
    }).join();
    EXPECT_EQ(SetToolkit(nullptr), &toolkit);
}

TEST(Messages, HelpCursorAndNoticesReachTheirReceivers) {
    ListeningToolkit toolkit;
    SetToolkit(&toolkit);
    SetHelpFilePath("C:\\Other.chm");
    ShowHelpTopic("%s::/html/a.htm");
    SetHelpFilePath("C:\\NorvaTool.chm");
    ShowHelpTopic("%s::/html/b.htm");
    SetHelpFilePath("");
    OwnerWindow owner;
    {
        CWaitCursor const cursor;
        SendOwnerNotice(&owner, "START", "0");
        SendOwnerNotice(nullptr, "FINISH", "0");
    }
    EXPECT_EQ(owner.said, "1041 START,0");
    EXPECT_EQ(toolkit.said, "help C:\\NorvaTool.chm::/html/b.htm wait notice START,0 notice FINISH,0 arrow ");
    SetToolkit(nullptr);
}

}  // namespace
}  // namespace norva
