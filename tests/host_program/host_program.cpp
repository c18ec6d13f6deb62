// A host program as an outsider would write it: it stands its own toolkit and its own store in the library's place
// and runs an import through the exported function.

#include <norva/import_export.h>
#include <norva/scripted_toolkit.h>

#include <iostream>

namespace {

class CountingStore : public norva::CNorvaFileUtil {
public:
    int AddProfileToStructure(std::string const& name, long locationCount) override {
        locations += locationCount;
        return CNorvaFileUtil::AddProfileToStructure(name, locationCount);
    }
    long locations = 0;
};

class HostToolkit : public norva::CScriptedToolkit {
public:
    using CScriptedToolkit::CScriptedToolkit;
    norva::MessageAnswer ShowMessage(norva::MessageRequest const& request) override {
        std::cerr << request.text << "\n";
        return norva::MessageAnswer::Ok;
    }
};

norva::ScriptAnswer Dialog(int number) {
    norva::ScriptAnswer answer;
    answer.dialog = number;
    norva::ScriptAction accept;
    accept.control = norva::kButtonOk;
    answer.actions.push_back(accept);
    return answer;
}

norva::ScriptAnswer File(norva::ScriptAnswer::Kind kind, std::string path) {
    norva::ScriptAnswer answer;
    answer.kind = kind;
    answer.path = std::move(path);
    return answer;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) return 2;
    HostToolkit toolkit({Dialog(4063), File(norva::ScriptAnswer::Kind::Open, argv[1]),
                         File(norva::ScriptAnswer::Kind::Save, argv[2]), Dialog(4003)},
                        false, nullptr);
    norva::SetToolkit(&toolkit);
    CountingStore store;
    std::string name;
    int const result = Import_Data_File(&store, name, nullptr, 0);
    norva::SetToolkit(nullptr);
    if (!toolkit.Failure().empty()) std::cerr << toolkit.Failure() << "\n";
    std::cout << result << " " << store.locations << " " << name << "\n";
    return result == 1 && store.locations == std::stol(argv[3]) && name == argv[2] ? 0 : 1;
}
