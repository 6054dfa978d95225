#include "Linux/Desktop/DesktopProgram.h"

#include <chrono>
#include <cstdlib>
#include <gio/gio.h>
#include <memory>
#include <sstream>
#include <utility>

namespace {

constexpr const char* pathVariable = "PATH";
constexpr char pathSeparator = ':';
/// A program that goes on for so long is showing what it was asked for.
constexpr std::chrono::seconds failingTime { 4 };
constexpr auto silently =
    static_cast<GSubprocessFlags>(G_SUBPROCESS_FLAGS_STDOUT_SILENCE | G_SUBPROCESS_FLAGS_STDERR_SILENCE);

bool isProgram(const std::string& path)
{
    return g_file_test(path.c_str(), G_FILE_TEST_IS_EXECUTABLE) && !g_file_test(path.c_str(), G_FILE_TEST_IS_DIR);
}

/// A program that runs, until it has told how it ended.
class ProgramRun {
public:
    explicit ProgramRun(std::function<void(bool)> ended)
        : _ended(std::move(ended))
    {
    }
    ProgramRun(const ProgramRun&) = delete;
    ProgramRun& operator=(const ProgramRun&) = delete;
    ~ProgramRun()
    {
        g_cancellable_cancel(_cancellable);
        g_object_unref(_cancellable);
    }

    static void watch(const std::shared_ptr<ProgramRun>& run, BusContext& context, GSubprocess* process)
    {
        const BusContext::Scope scope(context);
        g_subprocess_wait_async(process, run->_cancellable, end, new std::weak_ptr(run));
        run->_alarm = context.callLater(failingTime, [run = run.get()] { run->tell(true); });
    }

private:
    static void end(GObject* process, GAsyncResult* result, gpointer weak) noexcept
    {
        g_subprocess_wait_finish(G_SUBPROCESS(process), result, nullptr);
        const std::unique_ptr<std::weak_ptr<ProgramRun>> owner(static_cast<std::weak_ptr<ProgramRun>*>(weak));
        if (const auto run = owner->lock())
            run->tell(g_subprocess_get_successful(G_SUBPROCESS(process)));
    }

    void tell(bool hasSucceeded)
    {
        // The run may be dropped by what it calls.
        if (const auto ended = std::exchange(_ended, nullptr))
            ended(hasSucceeded);
    }

    std::function<void(bool)> _ended;
    GCancellable* _cancellable = g_cancellable_new();
    BusHandle _alarm;
};

} // namespace

std::string pathOfProgram(const std::string& name)
{
    if (name.starts_with('/'))
        return isProgram(name) ? name : "";
    const char* folders = std::getenv(pathVariable);
    std::istringstream stream(folders && name.find('/') == std::string::npos ? folders : "");
    for (std::string folder; std::getline(stream, folder, pathSeparator);) {
        std::string path = folder + "/" + name;
        if (folder.starts_with('/') && isProgram(path))
            return path;
    }
    return {};
}

BusHandle startProgram(BusContext& context, const ProgramCommand& command, std::function<void(bool)> ended)
{
    if (command.empty())
        return nullptr;
    std::vector<const char*> words;
    for (const std::string& word : command)
        words.push_back(word.c_str());
    words.push_back(nullptr);
    GSubprocess* process = g_subprocess_newv(words.data(), silently, nullptr);
    if (!process)
        return nullptr;
    const auto run = std::make_shared<ProgramRun>(std::move(ended));
    ProgramRun::watch(run, context, process);
    g_object_unref(process);
    return run;
}
