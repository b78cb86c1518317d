#include "formats/FileIo.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <functional>
#include <iterator>

#include "document/text/DrawingError.h"
#include "formats/FileError.h"

namespace holdfast::formats {
namespace {

namespace fs = std::filesystem;

std::string messageOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const DrawingError& error) {
        return error.what();
    }
    return "no error";
}

/// A folder of its own for every test, gone with it.
class Files : public testing::Test {
public:
    Files() {
        std::string name = (fs::temp_directory_path() / "drawing-XXXXXX").string();
        folder = ::mkdtemp(name.data());
    }
    ~Files() override {
        fs::permissions(folder, fs::perms::owner_all);
        fs::remove_all(folder);
    }

protected:
    void put(const char* name, const std::string& text) const { std::ofstream(folder / name) << text; }
    std::string got(const char* name) const {
        std::ifstream in(folder / name);
        return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    }
    std::ptrdiff_t fileCount() const { return std::distance(fs::directory_iterator(folder), fs::directory_iterator()); }

    fs::path folder;
};

/// Acts without the rights of the super-user, which ignores permissions, while it lives.
class OrdinaryUser {
public:
    OrdinaryUser() : m_before(::geteuid()) {
        if (m_before == 0)
            m_changed = ::seteuid(65534) == 0;
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;
    ~OrdinaryUser() {
        if (m_changed && ::seteuid(m_before) != 0)
            std::abort();
    }

private:
    uid_t m_before;
    bool m_changed = false;
};

/// Lets no file grow beyond a size while it lives, as a full disk would.
class FullDisk {
public:
    explicit FullDisk(rlim_t bytes) : m_handler(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{bytes, m_before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;
    ~FullDisk() {
        ::setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }

private:
    rlimit m_before{};
    void (*m_handler)(int);
};

TEST_F(Files, AreReadWhole) {
    const std::string text(200000, 'x');
    put("a.json", text);
    EXPECT_TRUE(readFile(folder / "a.json") == text);
}

TEST_F(Files, ThatAreMissingAreNamedWithOneThatIsMeant) {
    put("plate.json", "");
    EXPECT_THAT(messageOf([&] { readFile(folder / "palte.json"); }),
                testing::EndsWith("palte.json: found no such file; expected the name of a file; did you mean "
                                  "\"plate.json\"?"));
    EXPECT_THAT(messageOf([&] { readFile(folder / "nowhere" / "a.json"); }), testing::HasSubstr("found no such file"));
}

TEST_F(Files, ThatAreFoldersAreNotReadOrWritten) {
    EXPECT_THAT(messageOf([&] { readFile(folder); }), testing::HasSubstr("found a folder; expected a file"));
    EXPECT_THAT(messageOf([&] { writeFile(folder, "text"); }), testing::HasSubstr("found a folder"));
}

TEST_F(Files, ThatMayNotBeReadSaySo) {
    put("secret.json", "{}");
    fs::permissions(folder, fs::perms::all);
    fs::permissions(folder / "secret.json", fs::perms::none);
    const OrdinaryUser user;
    EXPECT_THAT(messageOf([&] { readFile(folder / "secret.json"); }),
                testing::HasSubstr("found Permission denied; expected a file that may be read"));
}

TEST_F(Files, AreMadeAndReplacedWithNothingLeftBeside) {
    writeFile(folder / "a.json", "first");
    writeFile(folder / "a.json", "second");
    EXPECT_EQ(got("a.json"), "second");
    EXPECT_EQ(fileCount(), 1);
}

TEST_F(Files, KeepTheirPermissionsWhenReplaced) {
    put("a.json", "old");
    ASSERT_EQ(::chmod((folder / "a.json").c_str(), 0640), 0);
    writeFile(folder / "a.json", "new");
    EXPECT_EQ(fs::status(folder / "a.json").permissions(), static_cast<fs::perms>(0640));
}

TEST_F(Files, ThatAreNewHaveThePermissionsOfAnyNewFile) {
    put("plain", "");
    writeFile(folder / "a.json", "new");
    EXPECT_EQ(fs::status(folder / "a.json").permissions(), fs::status(folder / "plain").permissions());
}

TEST_F(Files, AreAsTheyWereWhenTheDiskIsFull) {
    put("a.json", "old");
    std::string message;
    {
        const FullDisk disk(1000);
        message = messageOf([&] { writeFile(folder / "a.json", std::string(5000, 'x')); });
    }
    EXPECT_THAT(message, testing::HasSubstr("expected room for 5000 bytes; the file is as it was"));
    EXPECT_EQ(got("a.json"), "old");
    EXPECT_EQ(fileCount(), 1);
}

TEST_F(Files, AreAsTheyWereWhenTheirFolderMayNotBeChanged) {
    put("a.json", "old");
    fs::permissions(folder, fs::perms::owner_read | fs::perms::owner_exec | fs::perms::others_all,
                    fs::perm_options::replace);
    fs::permissions(folder, fs::perms::others_write, fs::perm_options::remove);
    std::string message;
    {
        const OrdinaryUser user;
        message = messageOf([&] { writeFile(folder / "a.json", "new"); });
    }
    EXPECT_THAT(message, testing::HasSubstr("found Permission denied; expected a folder in which files may be made"));
    EXPECT_EQ(got("a.json"), "old");
}

TEST_F(Files, NeedAFolderThatExists) {
    EXPECT_THAT(messageOf([&] { writeFile(folder / "out" / "a.json", "x"); }),
                testing::AllOf(testing::HasSubstr("found no folder"), testing::HasSubstr("create it first")));
    put("plain", "");
    EXPECT_THAT(messageOf([&] { writeFile(folder / "plain" / "a.json", "x"); }),
                testing::HasSubstr("a file where its folder should be"));
    EXPECT_THAT(messageOf([&] { writeFile("", "x"); }), testing::HasSubstr("an empty file name"));
}

TEST_F(Files, BehindASymbolicLinkAreReplacedAndTheLinkStays) {
    put("real.json", "old");
    fs::create_symlink("real.json", folder / "link.json");
    writeFile(folder / "link.json", "new");
    EXPECT_TRUE(fs::is_symlink(folder / "link.json"));
    EXPECT_EQ(got("real.json"), "new");
}

TEST_F(Files, BehindASymbolicLinkAreMadeWhereItLeads) {
    fs::create_directory(folder / "out");
    fs::create_symlink("out/real.json", folder / "link.json");
    writeFile(folder / "link.json", "new");
    EXPECT_TRUE(fs::is_symlink(folder / "link.json"));
    EXPECT_EQ(got("out/real.json"), "new");
    fs::create_symlink("nowhere/real.json", folder / "lost.json");
    EXPECT_THAT(messageOf([&] { writeFile(folder / "lost.json", "x"); }), testing::HasSubstr("found no folder"));
    fs::create_symlink("circle.json", folder / "circle.json");
    EXPECT_THAT(messageOf([&] { writeFile(folder / "circle.json", "x"); }), testing::HasSubstr("leads in a circle"));
    EXPECT_TRUE(fs::is_symlink(folder / "circle.json"));
}

TEST_F(Files, ThatMayNotBeWrittenAreNotReplaced) {
    put("a.json", "old");
    fs::permissions(folder, fs::perms::all);
    fs::permissions(folder / "a.json", fs::perms::owner_read | fs::perms::others_read);
    std::string message;
    {
        const OrdinaryUser user;
        message = messageOf([&] { writeFile(folder / "a.json", "new"); });
    }
    EXPECT_THAT(message, testing::HasSubstr("found Permission denied; expected a file that may be written"));
    EXPECT_EQ(got("a.json"), "old");
}

TEST_F(Files, ThatBelongTogetherAreWrittenAllOrNone) {
    put("a.json", "old");
    const std::vector<NamedText> files = {{folder / "a.json", "new"}, {folder / "nowhere" / "a.html", "page"}};
    EXPECT_THAT(messageOf([&] { writeFiles(files); }), testing::HasSubstr("found no folder"));
    EXPECT_EQ(got("a.json"), "old");
    EXPECT_EQ(fileCount(), 1);
    writeFiles(std::vector<NamedText>{{folder / "a.json", "new"}, {folder / "a.html", "page"}});
    EXPECT_EQ(got("a.json") + got("a.html"), "newpage");
    EXPECT_EQ(fileCount(), 2);
}

TEST_F(Files, ThatBelongTogetherArePutBackWhenOneCannotArrive) {
    put("a.json", "old");
    fs::create_directory(folder / "gone");
    const std::vector<NamedText> files = {
        {folder / "a.json", "new"}, {folder / "b.json", "new"}, {folder / "gone" / "c.json", "new"}};
    EXPECT_THAT(messageOf([&] { writeFiles(files, [&] { fs::remove_all(folder / "gone"); }); }),
                testing::HasSubstr("c.json: found No such file or directory"));
    EXPECT_EQ(got("a.json"), "old");
    EXPECT_EQ(fileCount(), 1);
}

TEST_F(Files, StayAsTheyWereWhenWhatBelongsToThemFails) {
    put("a.json", "old");
    const std::vector<NamedText> files = {{folder / "a.json", "new"}, {folder / "b.json", "new"}};
    EXPECT_THROW(writeFiles(files, [] { throw std::runtime_error("no room on standard output"); }), std::runtime_error);
    EXPECT_EQ(got("a.json"), "old");
    EXPECT_EQ(fileCount(), 1);
}

TEST_F(Files, ThatTookThePlaceOfOthersLeaveNothingOfThemBehind) {
    put("a.json", "old");
    put("b.json", "old");
    writeFiles(std::vector<NamedText>{{folder / "a.json", "new"}, {folder / "b.json", "newer"}});
    EXPECT_EQ(got("a.json") + got("b.json"), "newnewer");
    EXPECT_EQ(fileCount(), 2);
}

TEST_F(Files, TellWhetherTheyCouldNotBeReadOrNotBeWritten) {
    const auto workOf = [](const std::function<void()>& action) {
        try {
            action();
        } catch (const FileError& error) {
            return error.work();
        }
        throw std::logic_error("no error");
    };
    EXPECT_EQ(workOf([&] { readFile(folder / "none.json"); }), FileError::Work::reading);
    EXPECT_EQ(workOf([&] { writeFile(folder / "nowhere" / "a.json", "x"); }), FileError::Work::writing);
}

TEST_F(Files, ThatAreDevicesAreWrittenToDirectly) {
    EXPECT_EQ(messageOf([] { writeFile("/dev/null", "text"); }), "no error");
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
    EXPECT_THAT(messageOf([] { writeFile("/dev/full", "text"); }), testing::HasSubstr("a place that takes 4 bytes"));
}

TEST_F(Files, HoldTheDrawingThatWasWritten) {
    Document document;
    document.name = "plate";
    document.entities.push_back({"g0", LineShape{{0, 0}, {1, 2}}});
    writeDrawing(document, folder / "plate.json");
    EXPECT_EQ(readDrawing(folder / "plate.json"), document);
}

TEST_F(Files, ThatHoldNoDrawingAreNamedInTheError) {
    put("bad.json", "{");
    EXPECT_THAT(messageOf([&] { readDrawing(folder / "bad.json"); }),
                testing::StartsWith((folder / "bad.json").string() + ": line 1, column 1: found the end of the text"));
}

TEST_F(Files, StayAsTheyWereWhenADrawingCannotBeWritten) {
    put("a.json", "old");
    Document document;
    document.entities.push_back({"g0", CircleShape{{0, 0}, -1}});
    EXPECT_THROW(writeDrawing(document, folder / "a.json"), DrawingError);
    EXPECT_EQ(got("a.json"), "old");
}

}  // namespace
}  // namespace holdfast::formats
