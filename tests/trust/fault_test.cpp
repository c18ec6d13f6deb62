#include "operations.h"
#include "platform/files.h"
#include "platform/last_error.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <new>
#include <set>

namespace {

/// Allocations of this thread until one fails, with `stays` and all later ones; nothing fails while `left` is 0.
struct {
    long left = 0;
    bool stays = false;
    bool wasHit = false;
} thread_local allocations;

bool AllocationFails() {
    if (allocations.left == 0 || --allocations.left > 0) return false;
    allocations.wasHit = true;
    if (allocations.stays) allocations.left = 1;
    return true;
}

}  // namespace

void* operator new(std::size_t size, std::nothrow_t const&) noexcept {
    return AllocationFails() ? nullptr : std::malloc(size > 0 ? size : 1);
}
void* operator new(std::size_t size) {
    void* const memory = operator new(size, std::nothrow);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}
void* operator new[](std::size_t size, std::nothrow_t const&) noexcept {
    return operator new(size, std::nothrow);
}
void* operator new[](std::size_t size) {
    return operator new(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace norva {
namespace {

namespace fs = std::filesystem;
using namespace test;

std::size_t OpenDescriptors() {
    auto const entries = fs::directory_iterator("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

enum class Fault { OneCall, FullDisk, Allocation, NoMemory };

/// Makes the n-th call (from 1) fail, or on a full disk or without memory that and all later ones.
class CFaultInjection {
public:
    CFaultInjection(Fault fault, long n) {
        if (fault == Fault::Allocation || fault == Fault::NoMemory) {
            allocations = {n, fault == Fault::NoMemory, false};
            return;
        }
        SetFaultHook([this, fault, n](FaultPoint point, std::string const&) {
            if (fault == Fault::FullDisk) {
                bool const needsRoom = point == FaultPoint::Write || point == FaultPoint::Sync;
                m_wasHit = m_wasHit || (needsRoom && ++m_calls == n);
                return needsRoom && m_wasHit ? ENOSPC : 0;
            }
            if (++m_calls != n) return 0;
            m_wasHit = true;
            m_isRemoval = point == FaultPoint::Remove;
            return EIO;
        });
        m_isAllocation = false;
    }
    /// Ends it; false when there were fewer calls.
    bool End() {
        allocations.left = 0;
        SetFaultHook({});
        return m_isAllocation ? allocations.wasHit : m_wasHit;
    }
    /// What cannot be removed stays.
    bool IsRemoval() const { return m_isRemoval; }

private:
    bool m_isAllocation = true;
    bool m_wasHit = false;
    bool m_isRemoval = false;
    long m_calls = 0;
};

class Faults : public testing::TestWithParam<std::pair<Fault, int>> {
protected:
    /// Runs the operation on fresh files; false when it says that it failed.
    bool Run(Operation const& operation, Fault fault, long n, bool& wasHit, bool& mayStay) {
        for (auto const& entry : fs::directory_iterator(folder.Path())) {
            if (!entry.is_directory()) fs::remove(entry.path());
        }
        WriteWholeFile(folder / operation.target, older);
        for (auto const& [name, bytes] : operation.inputs) WriteWholeFile(folder / name, bytes);
        CScriptedToolkit toolkit(operation.answers, true, nullptr);
        CToolkitScope const scope(toolkit);
        ClearLastErrorText();
        CFaultInjection injection(fault, n);
        bool done = false, threw = false;
        try {
            done = operation.run();
        } catch (std::bad_alloc const&) {  // of a store's own calls; the exported functions let none out
            threw = true;
        }
        wasHit = injection.End();
        if (threw) SetLastErrorText("There is not enough memory.");
        mayStay = injection.IsRemoval();
        return done;
    }

    /// Less what a failed conversion leaves in the thread's temporary folder.
    std::set<std::string> Files() const {
        std::set<std::string> files;
        for (auto const& entry : fs::recursive_directory_iterator(folder.Path())) {
            std::string const name = entry.path().filename().string();
            if (!entry.is_directory() && !name.ends_with("_temp.xyz")) files.insert(name);
        }
        return files;
    }

    static void SetUpTestSuite() {
        fs::create_directory(folder / "temporary");
        setenv("TMPDIR", (folder / "temporary").c_str(), 1);
    }
    static void TearDownTestSuite() { unsetenv("TMPDIR"); }

    static inline CTemporaryFolder const folder;
    std::string const older = ReadWholeFile(NORVA_SEEDS "/store/imported");
};

TEST_P(Faults, LeaveTheOldOrTheWholeNewFileAndNothingElse) {
    auto const [fault, index] = GetParam();
    Operation const operation = AllOperations(folder.Path())[static_cast<std::size_t>(index)];
    bool wasHit = false, mayStay = false;
    ASSERT_TRUE(Run(operation, fault, 0, wasHit, mayStay)) << GetLastErrorText();
    std::string const whole = ReadWholeFile(folder / operation.target);
    std::string const before = operation.inputs[0].first == operation.target ? operation.inputs[0].second : older;
    // An export of all onto its own store gives the same bytes.
    if (operation.name != "Exportsnvt") {
        ASSERT_NE(whole, before);
    }
    std::set<std::string> const files = Files();
    std::size_t const descriptors = OpenDescriptors();
    long n = 1;
    for (wasHit = true; wasHit; ++n) {
        SCOPED_TRACE("fault " + std::to_string(n));
        bool const done = Run(operation, fault, n, wasHit, mayStay);
        std::string const left = ReadWholeFile(folder / operation.target);
        // What fails after the new file took its place cannot take it back.
        ASSERT_TRUE(left == whole || (left == before && !done)) << GetLastErrorText();
        ASSERT_EQ(OpenDescriptors(), descriptors);
        if (!mayStay) {
            ASSERT_EQ(Files(), files);
        }
        // Without any memory the result alone has to tell.
        EXPECT_TRUE(done || fault == Fault::NoMemory || !GetLastErrorText().empty()) << "no reason given";
        if (operation.target != operation.inputs[0].first) {
            ASSERT_EQ(ReadWholeFile(folder / operation.inputs[0].first), operation.inputs[0].second);
        }
    }
    RecordProperty("faults", std::to_string(n - 2));
}

std::vector<std::pair<Fault, int>> AllFaults() {
    std::vector<std::pair<Fault, int>> all;
    std::vector<Operation> const operations = AllOperations("");
    for (Fault const fault : {Fault::OneCall, Fault::FullDisk, Fault::Allocation, Fault::NoMemory}) {
        for (std::size_t at = 0; at < operations.size(); ++at) {
            bool const takesTime = operations[at].name.ends_with("Long");
            if (fault == Fault::OneCall || !takesTime) all.emplace_back(fault, static_cast<int>(at));
        }
    }
    return all;
}

std::string NameOf(testing::TestParamInfo<std::pair<Fault, int>> const& info) {
    static constexpr char const* kFaults[] = {"OneCall", "FullDisk", "Allocation", "NoMemory"};
    static std::vector<Operation> const operations = AllOperations("");
    return kFaults[static_cast<int>(info.param.first)] + operations[static_cast<std::size_t>(info.param.second)].name;
}

INSTANTIATE_TEST_SUITE_P(All, Faults, testing::ValuesIn(AllFaults()), NameOf);

}  // namespace
}  // namespace norva
