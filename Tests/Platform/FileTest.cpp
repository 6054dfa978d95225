#include "Foundation/NSFileManager.h"
#include "Platform/PhoneTest.h"

#include <cerrno>

namespace {

constexpr const char* folder = "/var/mobile/Folder";
constexpr const char* file = "/var/mobile/Folder/File";

/// Refuses everything with one error.
class RefusingFiles final : public Files {
public:
    RefusingFiles(int code, std::string text)
        : _failure { std::move(text), code }
    {
    }
    std::optional<Bytes> read(const std::string&) const override { return std::nullopt; }
    std::optional<FileStamp> stamp(const std::string&) const override { return std::nullopt; }
    Result<void> overwrite(const std::string&, const Bytes&) override { return _failure; }
    Result<void> replace(const std::string&, const Bytes&) override { return _failure; }
    Result<std::size_t> append(const std::string&, const Bytes&) override { return _failure; }
    bool exists(const std::string&) const override { return false; }
    Result<void> createDirectory(const std::string&) override { return _failure; }
    Result<void> remove(const std::string&) override { return _failure; }

private:
    Failure _failure;
};

class FileManager : public PhoneTest {
protected:
    static std::string reasonOf(const std::shared_ptr<NSError>& error) { return error ? error->description() : "none"; }

    NSFileManager& manager = NSFileManager::defaultManager();
};

TEST_F(FileManager, FindsFilesAndDirectoriesAlike)
{
    phone.writeFile(file, bytesOf("content"));
    EXPECT_TRUE(manager.fileExistsAtPath(file));
    EXPECT_TRUE(manager.fileExistsAtPath(folder));
    EXPECT_TRUE(manager.fileExistsAtPath("/"));
    for (const char* path : { "", "/var/mobile/folder", "/var/mobile/Folder/File/Below", "/var/mobile/Folder/Fil" })
        EXPECT_FALSE(manager.fileExistsAtPath(path)) << path;
    EXPECT_FALSE(manager.fileExistsAtPath(std::string(file) + '\0'));
}

TEST_F(FileManager, FindsNothingOutsideOfThePhone)
{
    EXPECT_FALSE(manager.fileExistsAtPath("/../../../../../../etc/passwd"));
    EXPECT_FALSE(manager.fileExistsAtPath("/etc/passwd"));
}

TEST_F(FileManager, MakesADirectoryWithItsParents)
{
    EXPECT_EQ(reasonOf(manager.createDirectoryAtPath("/a/b/c")), "none");
    EXPECT_TRUE(manager.fileExistsAtPath("/a/b/c"));
}

TEST_F(FileManager, MakingADirectoryThatIsThereSucceeds)
{
    manager.createDirectoryAtPath(folder);
    EXPECT_EQ(reasonOf(manager.createDirectoryAtPath(folder)), "none");
}

TEST_F(FileManager, MakesNoDirectoryWhereAFileIsInTheWay)
{
    phone.writeFile(file, bytesOf("content"));
    EXPECT_EQ(reasonOf(manager.createDirectoryAtPath(file)),
        "Error Domain=NSCocoaErrorDomain Code=512 \"“File” couldn’t be created: File exists.\"");
    EXPECT_EQ(phone.readFile(file), bytesOf("content"));
}

TEST_F(FileManager, RemovesAFileAndADirectoryWithAllItHolds)
{
    phone.writeFile(file, bytesOf("content"));
    EXPECT_EQ(reasonOf(manager.removeItemAtPath(file)), "none");
    EXPECT_FALSE(manager.fileExistsAtPath(file));
    phone.writeFile(file, bytesOf("content"));
    EXPECT_EQ(reasonOf(manager.removeItemAtPath(folder)), "none");
    EXPECT_FALSE(manager.fileExistsAtPath(folder));
}

TEST_F(FileManager, RemovingWhatIsNotThereTellsSo)
{
    const auto error = manager.removeItemAtPath(file);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->domain(), NSError::cocoaDomain);
    EXPECT_EQ(error->code(), 4);
    EXPECT_EQ(error->localizedDescription(), "“File” couldn’t be removed: No such file or directory.");
}

TEST_F(FileManager, ErrorsCarryTheirMeaningInTheirCode)
{
    const std::pair<int, int> codes[] = { { ENOENT, 4 }, { EACCES, 513 }, { EPERM, 513 }, { EROFS, 513 }, { EIO, 512 },
        { ENOTEMPTY, 512 }, { 0, 512 } };
    for (const auto& [system, cocoa] : codes) {
        Phone::current().files = std::make_shared<RefusingFiles>(system, "Refused");
        const auto created = manager.createDirectoryAtPath("/a/Folder");
        const auto removed = manager.removeItemAtPath("File");
        ASSERT_TRUE(created && removed);
        EXPECT_EQ(created->code(), cocoa) << system;
        EXPECT_EQ(created->localizedDescription(), "“Folder” couldn’t be created: Refused.");
        EXPECT_EQ(removed->code(), cocoa) << system;
        EXPECT_EQ(removed->localizedDescription(), "“File” couldn’t be removed: Refused.");
    }
}

TEST_F(FileManager, PercentSignsInANameAreNoPlaceholders)
{
    EXPECT_EQ(manager.removeItemAtPath("/100%@")->localizedDescription(),
        "“100%@” couldn’t be removed: No such file or directory.");
}

TEST_F(FileManager, WithoutAFileServiceNothingExistsAndNothingCanBeDone)
{
    Phone::current().files = nullptr;
    EXPECT_FALSE(manager.fileExistsAtPath("/"));
    EXPECT_EQ(manager.createDirectoryAtPath(folder)->localizedDescription(),
        "“Folder” couldn’t be created: no file service.");
    EXPECT_EQ(
        manager.removeItemAtPath(folder)->localizedDescription(), "“Folder” couldn’t be removed: no file service.");
    EXPECT_EQ(dataWithContentsOfFile(file), std::nullopt);
    EXPECT_FALSE(writeToFile({}, file, Atomically::Yes));
    EXPECT_FALSE(writeToFile({}, file, Atomically::No));
    EXPECT_EQ(dictionaryWithContentsOfFile(file), std::nullopt);
}

class FileContents : public PhoneTest { };

TEST_F(FileContents, AreReadAsTheyWereWritten)
{
    phone.files->createDirectory(folder);
    for (const Atomically atomically : { Atomically::Yes, Atomically::No }) {
        for (const Bytes& content : { Bytes(100000, 7), Bytes { 0, 1, 0xFF }, Bytes() }) {
            EXPECT_TRUE(writeToFile(content, file, atomically));
            EXPECT_EQ(dataWithContentsOfFile(file), content);
        }
    }
}

TEST_F(FileContents, OfWhatIsNoFileAreAbsent)
{
    phone.files->createDirectory(folder);
    EXPECT_EQ(dataWithContentsOfFile(folder), std::nullopt);
    EXPECT_EQ(dataWithContentsOfFile(file), std::nullopt);
    EXPECT_EQ(dataWithContentsOfFile(""), std::nullopt);
}

TEST_F(FileContents, CannotBeWrittenWithoutTheFolderOrInPlaceOfOne)
{
    for (const Atomically atomically : { Atomically::Yes, Atomically::No }) {
        EXPECT_FALSE(writeToFile({ 1 }, file, atomically));
        EXPECT_FALSE(phone.files->exists(folder));
        EXPECT_FALSE(writeToFile({ 1 }, "/var/mobile", atomically));
        EXPECT_TRUE(phone.files->exists("/var/mobile/Library"));
    }
}

class PropertyListFiles : public PhoneTest {
protected:
    std::optional<Dictionary> dictionaryIn(const std::string& content)
    {
        phone.writeFile(file, bytesOf(content));
        return dictionaryWithContentsOfFile(file);
    }
};

TEST_F(PropertyListFiles, AreReadInEitherEncoding)
{
    const Dictionary content { { "text", "Zürich" }, { "number", -5 }, { "list", Array { true, 2.5 } } };
    phone.writePropertyList(file, content);
    EXPECT_EQ(dictionaryWithContentsOfFile(file), content);
    EXPECT_EQ(dictionaryIn(R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><dict>
<key>text</key><string>Zürich</string><key>number</key><integer>-5</integer>
<key>list</key><array><true/><real>2.5</real></array></dict></plist>)"),
        content);
}

TEST_F(PropertyListFiles, ThatAreMissingOrNoFilesGiveNothing)
{
    EXPECT_EQ(dictionaryWithContentsOfFile(file), std::nullopt);
    EXPECT_EQ(dictionaryWithContentsOfFile("/var/mobile"), std::nullopt);
    EXPECT_EQ(dictionaryWithContentsOfFile(""), std::nullopt);
}

TEST_F(PropertyListFiles, ThatAreMalformedGiveNothing)
{
    for (const char* content : { "", " ", "bplist00", "bplist00\xD0", "<plist>", "<plist><dict>", "<html></html>",
             "{ old = style; }", "{\"json\": true}",
             "\x7F"
             "ELF",
             "<plist><dict><key>a</key></dict></plist>" })
        EXPECT_EQ(dictionaryIn(content), std::nullopt) << content;
}

TEST_F(PropertyListFiles, WhoseRootIsNoDictionaryGiveNothing)
{
    for (const Value& root : { Value(Array { Dictionary { { "a", 1 } } }), Value("text"), Value(5), Value(true),
             Value(Bytes { 1 }), Value(Date { 1 }) }) {
        phone.writePropertyList(file, root);
        EXPECT_EQ(propertyListWithData(*phone.readFile(file)), root);
        EXPECT_EQ(dictionaryWithContentsOfFile(file), std::nullopt);
    }
}

TEST_F(PropertyListFiles, CutOffAtAnyByteGiveNothing)
{
    phone.writePropertyList(file, Dictionary { { "Calls", true }, { "List", Array { 1, "zwei", -3 } } });
    const Bytes whole = *phone.readFile(file);
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_EQ(propertyListWithData({ whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length) }), Value())
            << length;
}

TEST_F(PropertyListFiles, HoldEveryKindOfValueThatAPropertyListCan)
{
    const Value value = Dictionary { { "negative", -5 }, { "huge", 18446744073709551611UL }, { "real", -0.1 },
        { "date", Date { -1.25 } }, { "data", Bytes { 0, 0xFF } }, { "uid", Uid { 7 } }, { "yes", true },
        { "text", "日本 📱" }, { "empty", Array { Array {}, Dictionary {}, "", Bytes {} } } };
    const auto serialized = dataWithPropertyList(value);
    ASSERT_TRUE(serialized.data);
    EXPECT_FALSE(serialized.error);
    EXPECT_EQ(std::string(serialized.data->begin(), serialized.data->begin() + 8), "bplist00");
    EXPECT_EQ(propertyListWithData(*serialized.data), value);
}

TEST_F(PropertyListFiles, DoNotHoldWhatTheyCannotAndTheErrorSaysWhy)
{
    const auto error = PSSpecifier::emptyGroupSpecifier();
    const std::pair<Value, std::string> cases[] = {
        { Value(), "property lists cannot contain NULL" },
        { Array { 1, nullptr }, "property lists cannot contain NULL" },
        { error, "property lists cannot contain objects of type 'PSSpecifier'" },
        { Dictionary { { "a", Array { error } } }, "property lists cannot contain objects of type 'PSSpecifier'" },
    };
    for (const auto& [value, reason] : cases) {
        const auto serialized = dataWithPropertyList(value);
        EXPECT_FALSE(serialized.data);
        ASSERT_TRUE(serialized.error);
        EXPECT_EQ(serialized.error->description(),
            "Error Domain=NSCocoaErrorDomain Code=3851 \"Property list invalid for format: 200 (" + reason + ")\"");
    }
    EXPECT_FALSE(dataWithPropertyList(&PSSpecifier::classObject()).data);
}

TEST_F(PropertyListFiles, WithoutAServiceAreNeitherReadNorWritten)
{
    phone.writePropertyList(file, Dictionary { { "a", 1 } });
    Phone::current().propertyLists = nullptr;
    EXPECT_EQ(dictionaryWithContentsOfFile(file), std::nullopt);
    EXPECT_EQ(propertyListWithData(*phone.readFile(file)), Value());
    const auto serialized = dataWithPropertyList(Dictionary { { "a", 1 } });
    EXPECT_FALSE(serialized.data);
    ASSERT_TRUE(serialized.error);
    EXPECT_EQ(serialized.error->localizedDescription(), "no property list service");
}

} // namespace
