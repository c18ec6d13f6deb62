#include "manual.h"

#include "norva/import_export.h"

namespace norva {

namespace {

/// Text with what man(7) takes for its own set off.
std::string Plain(std::string const& text) {
    std::string out;
    for (char const c : text) {
        bool const startsLine = out.empty() || out.back() == '\n';
        if (startsLine && (c == '.' || c == '\'')) out += "\\&";
        if (c == '\\') {
            out += "\\e";
        } else if (c == '-') {
            out += "\\-";
        } else {
            out += c;
        }
    }
    return out;
}

void AddOptions(std::string& page, CLI::App const& command) {
    for (CLI::Option const* const option : command.get_options()) {
        std::string const name = option->get_name(!option->nonpositional(), true);
        bool const takesValue = option->get_items_expected_max() > 0;
        page += ".TP\n\\fB" + Plain(name) + "\\fR";
        if (option->nonpositional() && takesValue) page += " \\fIVALUE\\fR";
        page += "\n" + Plain(option->get_description()) + "\n";
    }
}

}  // namespace

std::string ManualOf(CLI::App const& app) {
    std::string page = ".TH NORVA 1 \"\" \"Norva Exchange " + std::string(GetLibraryVersion()) +
                       "\" \"User Commands\"\n.SH NAME\nnorva \\- import and export of geophysical survey data\n"
                       ".SH SYNOPSIS\n\\fBnorva\\fR \\fICOMMAND\\fR [\\fIOPTIONS\\fR] ...\n"
                       ".SH DESCRIPTION\n" +
                       Plain(app.get_description()) +
                       "\nWhat no option says is chosen as the desktop program would propose it.\n.SH OPTIONS\n";
    AddOptions(page, app);
    page += ".SH COMMANDS\n";
    for (CLI::App const* const command : app.get_subcommands([](CLI::App const*) { return true; })) {
        page += ".SS norva " + command->get_name() + "\n" + Plain(command->get_description()) + "\n";
        AddOptions(page, *command);
        page += ".PP\n.nf\n" + Plain(command->get_footer()) + "\n.fi\n";
    }
    page +=
        ".SH EXIT STATUS\n"
        ".TP\n0\nEverything asked for was done.\n"
        ".TP\n1\nSomething asked for was not done; a message says what, where and why.\n"
        ".TP\n2\nUnusable arguments or script.\n"
        ".TP\n3\nA script did not fit what was shown.\n"
        ".TP\n4\nWith \\-\\-strict: values were lost or changed in the import.\n"
        ".TP\n5\nverify: source, report and store do not agree.\n"
        ".TP\n130\nInterrupted; nothing is left half written.\n"
        ".SH FILES\n.TP\n~/.config/norva/templates\nColumn templates, unless XDG_CONFIG_HOME names another place.\n"
        ".SH SEE ALSO\n.BR norva\\-desktop (1)\n";
    return page;
}

}  // namespace norva
