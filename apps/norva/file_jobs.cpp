#include "file_jobs.h"

#include "common/command_error.h"
#include "input_file.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <exception>
#include <filesystem>
#include <list>
#include <mutex>
#include <thread>

namespace norva {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kStem = "{stem}";
constexpr std::size_t kMostJobs = 256;

bool IsStoreName(fs::path const& path) {
    std::string const extension = path.extension().string();
    return extension == ".nvt" || extension == ".NVT" || extension == ".eet" || extension == ".EET";
}

}  // namespace

std::vector<std::string> InputsOf(std::vector<std::string> const& arguments) {
    std::vector<std::string> inputs;
    for (std::string const& argument : arguments) {
        std::error_code error;
        if (!fs::is_directory(argument, error)) {
            inputs.push_back(argument);
            continue;
        }
        std::vector<std::string> files;
        for (auto entry = fs::directory_iterator(argument, error); !error && entry != fs::directory_iterator();
             entry.increment(error)) {
            bool const isHidden = entry->path().filename().string().starts_with('.');
            std::error_code ignored;
            if (isHidden || IsStoreName(entry->path()) || !entry->is_regular_file(ignored)) continue;
            files.push_back(entry->path().string());
        }
        if (error) throw CommandError(argument + ": " + error.message());
        if (files.empty()) throw CommandError(argument + ": has no file to import");
        std::ranges::sort(files);
        inputs.insert(inputs.end(), files.begin(), files.end());
    }
    if (std::ranges::count(inputs, kStandardStream) > 1) {
        throw CommandError("standard input can be read once", kExitUsage);
    }
    return inputs;
}

std::string StemOf(std::string const& input) {
    if (input == kStandardStream) return "stdin";
    fs::path name = fs::path(input).filename();
    if (name.extension() == ".gz" || name.extension() == ".GZ") name.replace_extension();
    return name.stem().string();
}

std::string WithStem(std::string pattern, std::string const& input) {
    std::string const stem = StemOf(input);
    for (std::size_t at = 0; (at = pattern.find(kStem, at)) != std::string::npos; at += stem.size()) {
        pattern.replace(at, kStem.size(), stem);
    }
    return pattern;
}

void COutputs::Take(std::string const& output, std::string const& input) {
    if (!m_taken.insert(output).second) throw CommandError(input + ": another file became " + output);
    std::error_code error;
    if (!fs::exists(output, error)) return;
    for (std::string const& other : m_inputs) {
        if (other == input || !fs::equivalent(output, other, error)) continue;
        throw CommandError(output + ": is one of the inputs, which is not replaced");
    }
}

void MakeFolder(std::string const& path) {
    std::error_code error;
    if (!fs::is_directory(path) && !fs::create_directory(path, error)) {
        throw CommandError(path + ": " + (error ? error.message() : "is no folder"), kExitUsage);
    }
}

void AddJobsOption(CLI::App& command, std::size_t& jobs) {
    command
        .add_option("--jobs", jobs,
                    "Files to work on at a time, one processor each (default: 1); results stay in the order of the "
                    "inputs")
        ->check(CLI::Range(std::size_t{1}, kMostJobs));
}

void RunFiles(std::size_t count, std::size_t jobs, CConsole& console,
              std::function<void(std::size_t number, CConsole& console)> const& work) {
    if (jobs < 2 || count < 2) {
        for (std::size_t number = 0; number < count; ++number) work(number, console);
        return;
    }
    std::list<CConsole> consoles;
    std::vector<CConsole*> consoleOf;
    for (std::size_t number = 0; number < count; ++number) {
        consoleOf.push_back(&consoles.emplace_back(console.Quiet()));
        consoleOf.back()->Hold();
    }
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<bool> isDone(count);
    std::exception_ptr failure;
    std::atomic<std::size_t> next = 0;
    auto const isStopped = [&] {
        std::scoped_lock const lock(mutex);
        return failure != nullptr;
    };
    auto const workOn = [&] {
        for (std::size_t number = next++; number < count && !isStopped(); number = next++) {
            std::exception_ptr thrown;
            try {
                work(number, *consoleOf[number]);
            } catch (...) {
                thrown = std::current_exception();
            }
            std::scoped_lock const lock(mutex);
            isDone[number] = true;
            if (thrown && !failure) failure = thrown;
            changed.notify_one();
        }
    };
    {
        std::vector<std::jthread> threads;
        for (std::size_t thread = 0; thread < std::min(jobs, count); ++thread) threads.emplace_back(workOn);
        for (std::size_t number = 0; number < count; ++number) {
            std::unique_lock lock(mutex);
            changed.wait(lock, [&] { return isDone[number] || failure != nullptr; });
            if (!isDone[number]) break;
            lock.unlock();
            consoleOf[number]->Release();
        }
    }
    if (failure) std::rethrow_exception(failure);
}

}  // namespace norva
