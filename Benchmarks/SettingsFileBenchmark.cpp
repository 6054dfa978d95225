// What one change of a row costs on the disk: the way the store writes, beside the two other ways to write a file of
// the same size.

#include "Support/TestPhone.h"

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr const char* file = "/settings";
constexpr std::size_t settingsSize = 650;

/// A folder with the file in it, and its content.
struct Disk {
    TemporaryDirectory folder;
    DiskFiles files { folder.path().string() };
    Bytes content = Bytes(settingsSize, 'x');

    Disk() { files.overwrite(file, content); }
};

void overwriteInPlace(benchmark::State& state)
{
    Disk disk;
    for (auto _ : state)
        benchmark::DoNotOptimize(disk.files.overwrite(file, disk.content));
}
BENCHMARK(overwriteInPlace);

void openWithTruncation(benchmark::State& state)
{
    Disk disk;
    const std::string path = disk.files.hostPath(file);
    for (auto _ : state) {
        const int descriptor = open(path.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC);
        benchmark::DoNotOptimize(write(descriptor, disk.content.data(), disk.content.size()));
        close(descriptor);
    }
}
BENCHMARK(openWithTruncation);

void replaceAtomically(benchmark::State& state)
{
    Disk disk;
    for (auto _ : state)
        benchmark::DoNotOptimize(disk.files.replace(file, disk.content));
}
BENCHMARK(replaceAtomically);

Value settings()
{
    Dictionary values;
    for (int i = 0; i < 20; ++i)
        values.emplace("TandemSettingNumber" + std::to_string(i), i % 2 ? Value(true) : Value(3.0));
    return values;
}

void writeBinaryList(benchmark::State& state)
{
    const StoredPropertyLists lists;
    const Value value = settings();
    std::string error;
    for (auto _ : state)
        benchmark::DoNotOptimize(lists.writeBinary(value, error));
}
BENCHMARK(writeBinaryList);

void readBinaryList(benchmark::State& state)
{
    const StoredPropertyLists lists;
    std::string error;
    const Bytes bytes = *lists.writeBinary(settings(), error);
    for (auto _ : state)
        benchmark::DoNotOptimize(lists.read(bytes));
}
BENCHMARK(readBinaryList);

} // namespace
