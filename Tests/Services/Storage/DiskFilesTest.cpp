#include "Limits.h"
#include "TemporaryDirectory.h"

#include "Storage/DiskFiles.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>

#include <fcntl.h>
#include <sys/stat.h>

namespace {

using Names = std::vector<std::string>;

class DiskFilesTest : public testing::Test {
protected:
    DiskFilesTest() { makeDirectory("root"); }
    // So that the directory can be removed by whoever runs the test.
    ~DiskFilesTest() override { setMode("root", 0755); }

    void makeDirectory(const std::string& name, mode_t mode = 0755) const
    {
        mkdir(_directory.path(name).c_str(), mode);
        setMode(name, mode);
    }
    void setMode(const std::string& name, mode_t mode) const { chmod(_directory.path(name).c_str(), mode); }
    mode_t mode(const std::string& name) const
    {
        struct stat status { };
        return stat(_directory.path(name).c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
    }
    void link(const std::string& target, const std::string& name) const
    {
        ASSERT_EQ(symlink(target.c_str(), _directory.path(name).c_str()), 0);
    }
    void makePipe(const std::string& name) const { ASSERT_EQ(mkfifo(_directory.path(name).c_str(), 0666), 0); }

    const TemporaryDirectory _directory;
    DiskFiles _files { _directory.path("root") };
};

int codeOf(const Result<void>& result)
{
    return result ? 0 : result.failure().code;
}

std::string filled(std::size_t length, char c = 'x')
{
    return std::string(length, c);
}

} // namespace

TEST_F(DiskFilesTest, PathsLieBelowTheRoot)
{
    const DiskFiles files("/host");
    EXPECT_EQ(files.hostPath("/var/mobile/x"), "/host/var/mobile/x");
    EXPECT_EQ(files.hostPath("var//mobile/./x/"), "/host/var/mobile/x");
    EXPECT_EQ(files.hostPath("/var/../x"), "/host/x");
    EXPECT_EQ(files.hostPath("/../../etc/passwd"), "/host/etc/passwd");
    EXPECT_EQ(files.hostPath("/var/../../../.."), "/host");
    EXPECT_EQ(files.hostPath("/"), "/host");
    EXPECT_EQ(files.hostPath("/..a/b..c/..."), "/host/..a/b..c/...");
    EXPECT_EQ(DiskFiles("/host//").hostPath("/x"), "/host/x");
    EXPECT_EQ(DiskFiles("/").hostPath("/x"), "/x");
    EXPECT_EQ(DiskFiles("/").hostPath("/"), "/");
}

TEST_F(DiskFilesTest, NothingOutsideTheRootIsReached)
{
    _directory.write("secret", "s");
    EXPECT_EQ(_files.read("/../secret"), std::nullopt);
    EXPECT_FALSE(_files.exists("/a/../../secret"));
    EXPECT_EQ(codeOf(_files.remove("/../secret")), ENOENT);
    EXPECT_EQ(codeOf(_files.overwrite("/../secret", bytesOf("new"))), 0);
    EXPECT_EQ(_directory.read("secret"), "s");
    EXPECT_EQ(_directory.read("root/secret"), "new");
}

TEST_F(DiskFilesTest, PathsWithNulAreRefused)
{
    using namespace std::string_literals;
    _directory.write("root/a", "old");
    const std::string path = "/a\0b"s;
    EXPECT_EQ(_files.read(path), std::nullopt);
    EXPECT_EQ(codeOf(_files.overwrite(path, bytesOf("new"))), EINVAL);
    EXPECT_EQ(codeOf(_files.replace(path, bytesOf("new"))), EINVAL);
    EXPECT_FALSE(_files.exists(path));
    EXPECT_EQ(codeOf(_files.createDirectory(path)), EINVAL);
    EXPECT_EQ(codeOf(_files.remove(path)), EINVAL);
    EXPECT_EQ(_directory.names("root"), Names { "a" });
    EXPECT_EQ(_directory.read("root/a"), "old");
}

TEST_F(DiskFilesTest, NamesOfMoreThanTwoHundredFiftyFiveBytesAreRefused)
{
    const std::string longest = std::string("/").append(filled(255)), tooLong = longest + "x";
    EXPECT_EQ(codeOf(_files.replace(longest, bytesOf("a"))), 0);
    EXPECT_EQ(codeOf(_files.overwrite(longest, bytesOf("ab"))), 0);
    EXPECT_EQ(codeOf(_files.replace(longest, bytesOf("abc"))), 0);
    EXPECT_EQ(_files.read(longest), bytesOf("abc"));
    EXPECT_EQ(codeOf(_files.overwrite(tooLong, bytesOf("a"))), ENAMETOOLONG);
    EXPECT_EQ(codeOf(_files.replace(tooLong, bytesOf("a"))), ENAMETOOLONG);
    EXPECT_EQ(codeOf(_files.createDirectory(tooLong + "/a")), ENAMETOOLONG);
    EXPECT_EQ(codeOf(_files.remove(tooLong + "/..")), ENAMETOOLONG);
    EXPECT_EQ(_files.read(tooLong), std::nullopt);
    EXPECT_EQ(_directory.names("root"), Names { filled(255) });
}

TEST_F(DiskFilesTest, EmptyPathNamesNothing)
{
    EXPECT_EQ(_files.read(""), std::nullopt);
    EXPECT_FALSE(_files.exists(""));
    EXPECT_EQ(codeOf(_files.overwrite("", {})), ENOENT);
    EXPECT_EQ(codeOf(_files.replace("", {})), ENOENT);
    EXPECT_EQ(codeOf(_files.createDirectory("")), ENOENT);
    EXPECT_EQ(codeOf(_files.remove("")), ENOENT);
}

TEST_F(DiskFilesTest, ErrorsTellNumberAndText)
{
    const auto removed = _files.remove("/missing");
    ASSERT_FALSE(removed);
    EXPECT_EQ(removed.failure().code, ENOENT);
    EXPECT_EQ(removed.failure().text, "No such file or directory");
}

TEST_F(DiskFilesTest, RegularFilesAreReadWhole)
{
    _directory.write("root/empty", "");
    _directory.write("root/small", "a\nb");
    _directory.write("root/large", filled(1'000'000));
    EXPECT_EQ(_files.read("/empty"), Bytes());
    EXPECT_EQ(_files.read("/small"), bytesOf("a\nb"));
    EXPECT_EQ(_files.read("/large"), bytesOf(filled(1'000'000)));
}

TEST_F(DiskFilesTest, FilesThatDoNotTellTheirLengthAreRead)
{
    const auto status = DiskFiles("/").read("/proc/self/status");
    ASSERT_TRUE(status);
    EXPECT_EQ(textOf(*status).substr(0, 5), "Name:");
}

TEST_F(DiskFilesTest, WhatIsNoRegularFileIsNotRead)
{
    makeDirectory("root/directory");
    makePipe("root/pipe");
    EXPECT_EQ(_files.read("/directory"), std::nullopt);
    EXPECT_EQ(_files.read("/pipe"), std::nullopt);
    EXPECT_EQ(_files.read("/missing"), std::nullopt);
    EXPECT_EQ(_files.read("/missing/file"), std::nullopt);
    EXPECT_EQ(DiskFiles("/").read("/dev/zero"), std::nullopt);
}

TEST_F(DiskFilesTest, FileOfMoreThanAGibibyteIsNotRead)
{
    _directory.write("root/sparse", "");
    constexpr off_t length = off_t { 100 } << 30;
    if (truncate(_directory.path("root/sparse").c_str(), length) != 0)
        GTEST_SKIP() << "the disk makes no file of that length";
    EXPECT_EQ(_files.read("/sparse"), std::nullopt);
}

TEST_F(DiskFilesTest, UnreadableFileIsNotRead)
{
    _directory.write("root/file", "a");
    setMode("root/file", 0);
    const Unprivileged user;
    EXPECT_EQ(_files.read("/file"), std::nullopt);
    EXPECT_TRUE(_files.exists("/file"));
}

TEST_F(DiskFilesTest, OverwriteMakesShorterLongerAndNewFiles)
{
    const auto inodeOf = [&] {
        struct stat status { };
        stat(_directory.path("root/file").c_str(), &status);
        return status.st_ino;
    };
    EXPECT_EQ(codeOf(_files.overwrite("/file", bytesOf("first"))), 0);
    EXPECT_EQ(_directory.read("root/file"), "first");
    const ino_t inode = inodeOf();
    for (const std::string& content :
        { filled(100'000), std::string("short"), std::string(), std::string("again"), std::string("equal") }) {
        EXPECT_EQ(codeOf(_files.overwrite("/file", bytesOf(content))), 0);
        EXPECT_EQ(_directory.read("root/file"), content);
    }
    EXPECT_EQ(inodeOf(), inode);
    EXPECT_EQ(_directory.names("root"), Names { "file" });
}

TEST_F(DiskFilesTest, NewFilesCanBeReadByAll)
{
    const mode_t mask = umask(022);
    EXPECT_EQ(codeOf(_files.overwrite("/overwritten", bytesOf("a"))), 0);
    EXPECT_EQ(codeOf(_files.replace("/replaced", bytesOf("a"))), 0);
    umask(mask);
    EXPECT_EQ(mode("root/overwritten"), 0644u);
    EXPECT_EQ(mode("root/replaced"), 0644u);
}

TEST_F(DiskFilesTest, OverwriteFollowsLinks)
{
    _directory.write("root/target", "old");
    link("target", "root/link");
    link("new", "root/dangling");
    EXPECT_EQ(codeOf(_files.overwrite("/link", bytesOf("1"))), 0);
    EXPECT_EQ(codeOf(_files.overwrite("/dangling", bytesOf("2"))), 0);
    EXPECT_EQ(_directory.read("root/target"), "1");
    EXPECT_EQ(_directory.read("root/new"), "2");
}

TEST_F(DiskFilesTest, OverwriteRefusesWhatIsNoRegularFile)
{
    makeDirectory("root/directory");
    makePipe("root/pipe");
    _directory.write("root/file", "a");
    EXPECT_EQ(codeOf(_files.overwrite("/directory", bytesOf("b"))), EISDIR);
    EXPECT_EQ(codeOf(_files.overwrite("/pipe", bytesOf("b"))), ENXIO);
    EXPECT_EQ(codeOf(_files.overwrite("/missing/file", bytesOf("b"))), ENOENT);
    EXPECT_EQ(codeOf(_files.overwrite("/file/file", bytesOf("b"))), ENOTDIR);
    EXPECT_EQ(_directory.names("root"), (Names { "directory", "file", "pipe" }));
}

TEST_F(DiskFilesTest, OverwriteRefusesAPipeThatSomebodyReads)
{
    makePipe("root/pipe");
    const int reader = open(_directory.path("root/pipe").c_str(), O_RDONLY | O_NONBLOCK);
    ASSERT_GE(reader, 0);
    EXPECT_EQ(codeOf(_files.overwrite("/pipe", bytesOf("b"))), EINVAL);
    close(reader);
}

TEST_F(DiskFilesTest, OverwriteNeedsLeaveToWrite)
{
    _directory.write("root/file", "old");
    setMode("root/file", 0444);
    setMode("root", 0555);
    {
        const Unprivileged user;
        EXPECT_EQ(codeOf(_files.overwrite("/file", bytesOf("new"))), EACCES);
        EXPECT_EQ(codeOf(_files.overwrite("/other", bytesOf("new"))), EACCES);
    }
    EXPECT_EQ(_directory.read("root/file"), "old");
    EXPECT_EQ(_directory.names("root"), Names { "file" });
}

TEST_F(DiskFilesTest, SizeLimitLeavesTheOldContentWhole)
{
    _directory.write("root/file", filled(1000, 'o'));
    for (const std::size_t length : { 4097, 10'000, 5'000'000 }) {
        const FileSizeLimit limit(4096);
        EXPECT_EQ(codeOf(_files.overwrite("/file", bytesOf(filled(length, 'n')))), EFBIG);
        EXPECT_EQ(_directory.read("root/file"), filled(1000, 'o'));
    }
}

TEST_F(DiskFilesTest, SizeLimitBelowTheOldLengthLeavesTheOldContentWhole)
{
    _directory.write("root/file", filled(10'000, 'o'));
    for (const std::size_t length : { 5000, 10'000, 20'000 }) {
        const FileSizeLimit limit(4096);
        EXPECT_EQ(codeOf(_files.overwrite("/file", bytesOf(filled(length, 'n')))), EFBIG);
        EXPECT_EQ(_directory.read("root/file"), filled(10'000, 'o'));
    }
}

TEST_F(DiskFilesTest, SizeLimitLeavesNoNewFile)
{
    link("target", "root/link");
    const FileSizeLimit limit(4096);
    EXPECT_EQ(codeOf(_files.overwrite("/new", bytesOf(filled(5000)))), EFBIG);
    EXPECT_EQ(codeOf(_files.overwrite("/link", bytesOf(filled(5000)))), EFBIG);
    EXPECT_EQ(codeOf(_files.replace("/new", bytesOf(filled(5000)))), EFBIG);
    EXPECT_EQ(_directory.names("root"), Names { "link" });
}

TEST_F(DiskFilesTest, SizeLimitKeepsAReplacedFile)
{
    _directory.write("root/file", "old");
    const FileSizeLimit limit(4096);
    EXPECT_EQ(codeOf(_files.replace("/file", bytesOf(filled(5000)))), EFBIG);
    EXPECT_EQ(_directory.read("root/file"), "old");
    EXPECT_EQ(_directory.names("root"), Names { "file" });
}

TEST_F(DiskFilesTest, FullDiskLeavesTheOldContentWhole)
{
    const SmallDisk disk(_directory.path("root"));
    if (!disk.isMounted())
        GTEST_SKIP() << "no file system can be mounted here";
    _directory.write("root/file", filled(10'000, 'o'));
    EXPECT_EQ(codeOf(_files.overwrite("/file", bytesOf(filled(200'000, 'n')))), ENOSPC);
    EXPECT_EQ(_directory.read("root/file"), filled(10'000, 'o'));
    EXPECT_EQ(codeOf(_files.replace("/file", bytesOf(filled(200'000, 'n')))), ENOSPC);
    EXPECT_EQ(_directory.read("root/file"), filled(10'000, 'o'));
    EXPECT_EQ(codeOf(_files.overwrite("/new", bytesOf(filled(200'000, 'n')))), ENOSPC);
    EXPECT_EQ(_directory.names("root"), Names { "file" });
    EXPECT_EQ(codeOf(_files.overwrite("/file", bytesOf(filled(30'000, 'n')))), 0);
    EXPECT_EQ(_directory.read("root/file"), filled(30'000, 'n'));
}

TEST_F(DiskFilesTest, FullDiskLeavesAFileWithHolesWhole)
{
    const SmallDisk disk(_directory.path("root"));
    if (!disk.isMounted())
        GTEST_SKIP() << "no file system can be mounted here";
    constexpr std::size_t length = 200'000;
    _directory.write("root/file", "old");
    ASSERT_EQ(truncate(_directory.path("root/file").c_str(), length), 0);
    EXPECT_EQ(codeOf(_files.overwrite("/file", bytesOf(filled(length, 'n')))), ENOSPC);
    EXPECT_EQ(_directory.read("root/file"), "old" + filled(length - 3, '\0'));
}

TEST_F(DiskFilesTest, ReplaceMakesAndReplacesFiles)
{
    EXPECT_EQ(codeOf(_files.replace("/file", bytesOf("first"))), 0);
    EXPECT_EQ(_directory.read("root/file"), "first");
    EXPECT_EQ(codeOf(_files.replace("/file", bytesOf(filled(100'000)))), 0);
    EXPECT_EQ(_directory.read("root/file"), filled(100'000));
    EXPECT_EQ(codeOf(_files.replace("/file", {})), 0);
    EXPECT_EQ(_directory.read("root/file"), "");
    EXPECT_EQ(_directory.names("root"), Names { "file" });
}

TEST_F(DiskFilesTest, ReplaceKeepsThePermissions)
{
    for (const mode_t kept : { 0600u, 0664u, 0444u, 0755u }) {
        _directory.write("root/file", "old");
        setMode("root/file", kept);
        EXPECT_EQ(codeOf(_files.replace("/file", bytesOf("new"))), 0);
        EXPECT_EQ(mode("root/file"), kept);
        EXPECT_EQ(_directory.read("root/file"), "new");
        EXPECT_EQ(codeOf(_files.remove("/file")), 0);
    }
}

TEST_F(DiskFilesTest, ReadersOfAReplacedFileKeepTheOldOne)
{
    _directory.write("root/file", "old");
    std::filesystem::create_hard_link(_directory.path("root/file"), _directory.path("root/same"));
    EXPECT_EQ(codeOf(_files.replace("/file", bytesOf("new"))), 0);
    EXPECT_EQ(_directory.read("root/same"), "old");
}

TEST_F(DiskFilesTest, TemporaryFileOfADeadProcessIsLeftAlone)
{
    const std::string prefix = ".tandem-" + std::to_string(getpid()) + "-";
    for (int i = 0; i < 1000; ++i)
        _directory.write("root/" + prefix + std::to_string(i), "stale");
    EXPECT_EQ(codeOf(_files.replace("/file", bytesOf("new"))), 0);
    EXPECT_EQ(_directory.read("root/file"), "new");
    EXPECT_EQ(_directory.names("root").size(), 1001);
    EXPECT_EQ(_directory.read("root/" + prefix + "999"), "stale");
}

TEST_F(DiskFilesTest, ReplaceRefusesDirectories)
{
    makeDirectory("root/directory");
    link("directory", "root/link");
    EXPECT_EQ(codeOf(_files.replace("/directory", bytesOf("a"))), EISDIR);
    EXPECT_EQ(codeOf(_files.replace("/link", bytesOf("a"))), EISDIR);
    EXPECT_EQ(codeOf(_files.replace("/", bytesOf("a"))), EISDIR);
    EXPECT_EQ(codeOf(_files.replace("/missing/file", bytesOf("a"))), ENOENT);
    EXPECT_EQ(_directory.names("root"), (Names { "directory", "link" }));
    EXPECT_EQ(_directory.names("root/directory"), Names());
}

TEST_F(DiskFilesTest, ReplaceNeedsLeaveToWriteInTheDirectory)
{
    _directory.write("root/file", "old");
    setMode("root", 0555);
    {
        const Unprivileged user;
        EXPECT_EQ(codeOf(_files.replace("/file", bytesOf("new"))), EACCES);
    }
    EXPECT_EQ(_directory.read("root/file"), "old");
    EXPECT_EQ(_directory.names("root"), Names { "file" });
}

TEST_F(DiskFilesTest, FilesDirectoriesAndLinksToThemExist)
{
    _directory.write("root/file", "");
    makeDirectory("root/directory");
    link("file", "root/link");
    link("missing", "root/dangling");
    link("loop", "root/loop");
    EXPECT_TRUE(_files.exists("/file"));
    EXPECT_TRUE(_files.exists("/directory/"));
    EXPECT_TRUE(_files.exists("/link"));
    EXPECT_TRUE(_files.exists("/"));
    EXPECT_FALSE(_files.exists("/missing"));
    EXPECT_FALSE(_files.exists("/file/file"));
    EXPECT_FALSE(_files.exists("/dangling"));
    EXPECT_FALSE(_files.exists("/loop"));
}

TEST_F(DiskFilesTest, DirectoriesAreMadeWithTheirParents)
{
    const mode_t mask = umask(022);
    EXPECT_EQ(codeOf(_files.createDirectory("/var/mobile/Library/")), 0);
    umask(mask);
    EXPECT_EQ(mode("root/var/mobile/Library"), 0755u);
    EXPECT_EQ(codeOf(_files.createDirectory("/var/mobile/Library")), 0);
    EXPECT_EQ(codeOf(_files.createDirectory("/")), 0);
    EXPECT_EQ(_directory.names("root/var/mobile"), Names { "Library" });
}

TEST_F(DiskFilesTest, RootIsMadeWithTheFirstDirectory)
{
    DiskFiles files(_directory.path("new/root"));
    EXPECT_EQ(codeOf(files.createDirectory("/var")), 0);
    EXPECT_EQ(_directory.names("new/root"), Names { "var" });
}

TEST_F(DiskFilesTest, FileInTheWayOfADirectoryIsAnError)
{
    _directory.write("root/file", "a");
    link("missing", "root/dangling");
    EXPECT_EQ(codeOf(_files.createDirectory("/file")), EEXIST);
    EXPECT_EQ(codeOf(_files.createDirectory("/file/directory")), EEXIST);
    EXPECT_EQ(codeOf(_files.createDirectory("/dangling")), EEXIST);
    EXPECT_EQ(_directory.read("root/file"), "a");
}

TEST_F(DiskFilesTest, DirectoriesNeedLeaveToBeMade)
{
    setMode("root", 0555);
    const Unprivileged user;
    EXPECT_EQ(codeOf(_files.createDirectory("/")), 0);
    EXPECT_EQ(codeOf(_files.createDirectory("/directory")), EACCES);
}

TEST_F(DiskFilesTest, FilesAndTreesAreRemoved)
{
    _directory.write("root/file", "");
    makeDirectory("root/tree");
    makeDirectory("root/tree/branch");
    _directory.write("root/tree/branch/leaf", "");
    makePipe("root/tree/pipe");
    EXPECT_EQ(codeOf(_files.remove("/file")), 0);
    EXPECT_EQ(codeOf(_files.remove("/tree")), 0);
    EXPECT_EQ(_directory.names("root"), Names());
}

TEST_F(DiskFilesTest, LinksAreRemovedAndNotWhatTheyLeadTo)
{
    makeDirectory("kept");
    _directory.write("kept/file", "a");
    makeDirectory("root/tree");
    link(_directory.path("kept"), "root/tree/link");
    link(_directory.path("kept"), "root/link");
    link("missing", "root/dangling");
    EXPECT_EQ(codeOf(_files.remove("/tree")), 0);
    EXPECT_EQ(codeOf(_files.remove("/link")), 0);
    EXPECT_EQ(codeOf(_files.remove("/dangling")), 0);
    EXPECT_EQ(_directory.names("root"), Names());
    EXPECT_EQ(_directory.read("kept/file"), "a");
}

TEST_F(DiskFilesTest, WhatIsMissingCannotBeRemoved)
{
    EXPECT_EQ(codeOf(_files.remove("/missing")), ENOENT);
    EXPECT_EQ(codeOf(_files.remove("/missing/file")), ENOENT);
}

TEST_F(DiskFilesTest, RootIsNotRemoved)
{
    _directory.write("root/file", "a");
    EXPECT_EQ(codeOf(_files.remove("/")), EBUSY);
    EXPECT_EQ(codeOf(_files.remove("/file/..")), EBUSY);
    EXPECT_EQ(codeOf(_files.remove("/../..")), EBUSY);
    EXPECT_EQ(_directory.names("root"), Names { "file" });
}

TEST_F(DiskFilesTest, FilesNeedLeaveToBeRemoved)
{
    _directory.write("root/file", "a");
    setMode("root", 0555);
    {
        const Unprivileged user;
        EXPECT_EQ(codeOf(_files.remove("/file")), EACCES);
    }
    EXPECT_EQ(_directory.names("root"), Names { "file" });
}
