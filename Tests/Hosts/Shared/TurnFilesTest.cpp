#include "Shared/TurnFiles.h"

#include <cerrno>
#include <filesystem>
#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

constexpr const char* kept = "/kept";
constexpr const char* other = "/other";

Bytes bytesOf(std::string_view text)
{
    return Bytes(text.begin(), text.end());
}

/// A folder with one file that a turn reads once, and another program that writes into it.
class FilesOfATurn : public testing::Test {
protected:
    FilesOfATurn()
    {
        std::string pattern = (fs::temp_directory_path() / "tandem-test-XXXXXX").string();
        folder = mkdtemp(pattern.data());
        disk = std::make_shared<DiskFiles>(folder.string());
        files = std::make_unique<TurnFiles>(disk, std::vector<std::string> { kept });
        write(kept, "old");
        write(other, "old");
    }
    ~FilesOfATurn() override
    {
        std::error_code ignored;
        fs::remove_all(folder, ignored);
    }

    /// Another program writes.
    void write(const std::string& path, std::string_view content) { disk->overwrite(path, bytesOf(content)); }
    std::string content(const std::string& path) const
    {
        const auto bytes = files->read(path);
        return bytes ? std::string(bytes->begin(), bytes->end()) : "missing";
    }

    fs::path folder;
    std::shared_ptr<DiskFiles> disk;
    std::unique_ptr<TurnFiles> files;
};

TEST_F(FilesOfATurn, AreReadOnceInATurnWhereTheyWereNamed)
{
    files->beginTurn();
    EXPECT_EQ(content(kept), "old");
    EXPECT_EQ(content(other), "old");
    write(kept, "new");
    write(other, "new");
    EXPECT_EQ(content(kept), "old");
    EXPECT_EQ(content("//./kept"), "old");
    EXPECT_EQ(content(other), "new");
    files->endTurn();
    EXPECT_EQ(content(kept), "new");
    files->beginTurn();
    EXPECT_EQ(content(kept), "new");
}

TEST_F(FilesOfATurn, AreReadAgainInTheNextTurn)
{
    files->beginTurn();
    content(kept);
    files->endTurn();
    write(kept, "new");
    files->beginTurn();
    EXPECT_EQ(content(kept), "new");
}

TEST_F(FilesOfATurn, BetweenTurnsComeFromTheDisk)
{
    for (const char* text : { "1", "2" }) {
        write(kept, text);
        EXPECT_EQ(content(kept), text);
        EXPECT_EQ(files->stamp(kept), disk->stamp(kept));
    }
}

TEST_F(FilesOfATurn, HoldWhatTheTurnHasWritten)
{
    files->beginTurn();
    content(kept);
    EXPECT_TRUE(files->overwrite(kept, bytesOf("overwritten")));
    EXPECT_EQ(content(kept), "overwritten");
    EXPECT_TRUE(files->replace(kept, bytesOf("replaced")));
    EXPECT_EQ(content(kept), "replaced");
    EXPECT_TRUE(files->append(kept, bytesOf(" and more")));
    EXPECT_EQ(content(kept), "replaced and more");
    EXPECT_TRUE(files->remove(kept));
    EXPECT_EQ(content(kept), "missing");
    EXPECT_TRUE(files->overwrite(kept, bytesOf("made")));
    EXPECT_EQ(content(kept), "made");
    files->endTurn();
    EXPECT_EQ(content(kept), "made");
}

TEST_F(FilesOfATurn, ThatAreMissingAreLookedForOnce)
{
    disk->remove(kept);
    files->beginTurn();
    EXPECT_EQ(content(kept), "missing");
    write(kept, "new");
    EXPECT_EQ(content(kept), "missing");
}

TEST_F(FilesOfATurn, HaveOneStateUntilTheTurnWritesThem)
{
    files->beginTurn();
    const auto before = files->stamp(kept);
    const auto otherBefore = files->stamp(other);
    write(kept, "longer");
    write(other, "longer");
    EXPECT_EQ(files->stamp(kept), before);
    EXPECT_EQ(files->stamp(other), otherBefore);
    files->overwrite(kept, bytesOf("longer still"));
    EXPECT_EQ(files->stamp(kept), disk->stamp(kept));
    EXPECT_EQ(files->stamp(other), otherBefore);
    files->endTurn();
    EXPECT_EQ(files->stamp(other), disk->stamp(other));
}

TEST_F(FilesOfATurn, ThatCouldNotBeWrittenAreReadAgain)
{
    files->beginTurn();
    EXPECT_EQ(content(kept), "old");
    fs::remove(folder / "kept");
    fs::create_directory(folder / "kept");
    const auto written = files->overwrite(kept, bytesOf("new"));
    ASSERT_FALSE(written);
    EXPECT_EQ(written.failure().code, EISDIR);
    EXPECT_EQ(content(kept), "missing");
}

} // namespace
