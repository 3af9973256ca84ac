#include "platform/FolderItem.h"

#include <gtest/gtest.h>

#include "platform/FileContents.h"
#include "platform/FileType.h"
#include "platform/SpecialFolder.h"
#include "support/TemporaryFolder.h"

namespace sorbel {
namespace {

namespace fs = std::filesystem;

TEST(FolderItem, PathsAreAbsoluteAndClean) {
    EXPECT_EQ(FolderItem("/a//b/./c/d/").NativePath(), "/a/b/c/d");
    EXPECT_EQ(FolderItem("//a").NativePath(), "/a");
    EXPECT_EQ(FolderItem("//").NativePath(), "/");
    EXPECT_EQ(FolderItem("/a/..b/.c").NativePath(), "/a/..b/.c");
    EXPECT_EQ(FolderItem("/usr/lib/../x").NativePath(),
              fs::is_symlink("/usr/lib") ? "/usr/lib/../x" : "/usr/x");
    EXPECT_EQ(FolderItem("/usr/..").NativePath(), "/");
    EXPECT_EQ(FolderItem("/../..").NativePath(), "/");
    EXPECT_EQ(FolderItem("x/y").NativePath(), fs::current_path().native() + "/x/y");
    EXPECT_EQ(FolderItem("").NativePath(), fs::current_path().native());
    EXPECT_EQ(FolderItem("/a/b.c").Name(), "b.c");
    EXPECT_EQ(FolderItem("/a/b").Parent()->NativePath(), "/a");
    EXPECT_EQ(FolderItem("/a").Parent()->NativePath(), "/");
    EXPECT_EQ(FolderItem("/").Parent(), nullptr);
    EXPECT_EQ(FolderItem("/").Child("a")->NativePath(), "/a");
    SpecialFolder::SetDocuments("/home/x/");
    EXPECT_EQ(*SpecialFolder::Documents(), FolderItem("/home/x"));
    EXPECT_EQ(SpecialFolder::Resources(), nullptr);
}

TEST(FolderItem, ChildrenStayInside) {
    const FolderItem folder("/a/b");
    EXPECT_EQ(folder.Child("fr.lproj")->NativePath(), "/a/b/fr.lproj");
    EXPECT_EQ(folder.Child("..mo")->NativePath(), "/a/b/..mo");
    for (const StringView name : {StringView(), StringView("."), StringView(".."), StringView("../x"),
                                  StringView("/etc"), StringView("x/../../y"), StringView("x\0.mo", 5)})
        EXPECT_EQ(folder.Child(name), nullptr) << name;
}

TEST(FolderItem, SeesTheFileSystem) {
    const TemporaryFolder temporary;
    const FolderItem folder(temporary.Path());
    for (const char* name : {"b", "B", "a", "\xff", ".hidden"})
        WriteContents(*folder.Child(name), name);
    folder.Child("sub")->CreateAsFolder();
    folder.Child("sub")->CreateAsFolder();
    FolderItem(temporary / "no/deeper").CreateAsFolder();
    String names;
    for (const auto& item : folder.Items())
        names += item->Name() + " ";
    EXPECT_EQ(names, ".hidden B a b sub \xff ");
    EXPECT_TRUE(folder.Child("sub")->Directory());
    EXPECT_TRUE(folder.Child("a")->Exists());
    EXPECT_FALSE(folder.Child("a")->Directory());
    EXPECT_FALSE(folder.Child("A")->Exists());
    EXPECT_FALSE(FolderItem(temporary / String("a\0x", 3)).Exists());
    EXPECT_TRUE(folder.Child("a")->Items().empty());
}

TEST(FolderItem, LinksAreFollowedOnDemand) {
    const TemporaryFolder temporary;
    const FolderItem folder(temporary.Path());
    folder.Child("real")->CreateAsFolder();
    fs::create_symlink("real", temporary / "link");
    fs::create_symlink("nowhere", temporary / "dangling");
    EXPECT_EQ(folder.Child("link")->Name(), "real");
    EXPECT_EQ(folder.Child("link", false)->Name(), "link");
    EXPECT_TRUE(folder.Child("link", false)->Directory());
    EXPECT_EQ(folder.Child("dangling")->Name(), "dangling");
    EXPECT_FALSE(folder.Child("dangling")->Exists());
    EXPECT_EQ(folder.ExistingChild("link")->Name(), "real");
    EXPECT_EQ(folder.ExistingChild("real")->Name(), "real");
    for (const char* none : {"dangling", "missing", "..", ""})
        EXPECT_EQ(folder.ExistingChild(none), nullptr) << none;
}

/// What follows a link is told by the system alone.
TEST(FolderItem, TheWayBackIsThatOfTheSystem) {
    const TemporaryFolder temporary;
    const auto write = [&](const String& name, StringView bytes) {
        WriteContents(FolderItem(temporary / name), bytes);
    };
    for (const char* folder : {"here", "there", "there/deep"})
        fs::create_directory(temporary / folder);
    fs::create_directory_symlink("../there/deep", temporary / "here/link");
    write("here/x", "beside the link");
    write("there/x", "beside its target");
    write("here/link/../x", "saved");
    EXPECT_EQ(ReadContents(FolderItem(temporary / "here/x"))->View(), "beside the link");
    EXPECT_EQ(ReadContents(FolderItem(temporary / "there/x"))->View(), "saved");
    const struct {
        const char *Given, *Kept;
    } ways[] = {{"there/deep/../x", "there/x"},
                {"there/./deep/..//../here/", "here"},
                {"here/link/../../x", "here/link/../../x"},
                {"here/link/.././deep/../x", "here/link/../x"},
                {"missing/../x", "missing/../x"},
                {"there/x/../y", "there/x/../y"}};
    for (const auto& [given, kept] : ways)
        EXPECT_EQ(FolderItem(temporary / given).NativePath(), temporary / kept) << given;
    const FolderItem back(temporary / "here/link/..");
    EXPECT_TRUE(fs::equivalent(back.Parent()->NativePath(), temporary.Path()));
    EXPECT_EQ(ReadContents(*back.Child("x"))->View(), "saved");
}

TEST(FolderItem, SaveInfoComesBackUnchanged) {
    for (const StringView info : {"/a//b/../c.app/", "/", "/bytes \xff\xe2\x82"})
        EXPECT_EQ(GetFolderItemFromSaveInfo(info)->GetSaveInfo(), info);
    EXPECT_EQ(GetFolderItemFromSaveInfo("/a/My.app//")->Name(), "My.app");
    EXPECT_EQ(GetFolderItemFromSaveInfo("/a/My.app//")->Parent()->NativePath(), "/a");
    EXPECT_EQ(GetFolderItemFromSaveInfo("/a/My.app/")->Child("Contents")->NativePath(), "/a/My.app/Contents");
    for (const StringView info :
         {StringView(), StringView("a/b"), StringView("\0\0", 2), StringView("/a\0b", 4)})
        EXPECT_EQ(GetFolderItemFromSaveInfo(info), nullptr);
}

FileType Type(const String& name, const String& extensions) {
    FileType type;
    type.Name = name;
    type.Extensions = extensions;
    return type;
}

TEST(FileType, KnownByTheEndOfTheName) {
    const FileType text = Type("Text", ".txt");
    const FileType program = Type("Program", ".exe;.App");
    const FileType none = Type("None", "");
    EXPECT_TRUE(program.Matches("x.tar.EXE"));
    EXPECT_TRUE(program.Matches(".app"));
    EXPECT_FALSE(program.Matches("exe"));
    EXPECT_FALSE(program.Matches("a.exe.bak"));
    EXPECT_FALSE(none.Matches("anything"));
    EXPECT_EQ(text + program + none, "Text;Program;None");
    FileType::Register({none, text, Type("Too late", ".txt")});
    EXPECT_EQ(FolderItem("/a/B.TXT").Type(), "Text");
    EXPECT_EQ(FolderItem("/a.txt/b").Type(), "");
}

}  // namespace
}  // namespace sorbel
