#include <gtest/gtest.h>

#include "qt/Text.h"

namespace sorbel {
namespace {

TEST(Uri, AnyBytesGoThereAndBack) {
    String path = "/";
    for (int byte = 1; byte < 256; ++byte)
        path += static_cast<char>(byte);
    const FolderItem file(path);
    const String uri = ToUri(file);
    for (const char byte : uri)
        EXPECT_TRUE(byte > ' ' && byte < '\x7F');
    EXPECT_EQ(*FileFromUri(uri), file);
    EXPECT_EQ(ToUri(FolderItem("/a b/%41\xC3\xA4.nvl")), "file:///a%20b/%2541%C3%A4.nvl");
}

TEST(Uri, OfOtherProgramsAreUnderstood) {
    const struct {
        const char *Uri, *Path;
    } table[] = {{"file:/a", "/a"},
                 {"FILE://LocalHost/a%2fb%C3%a4", "/a/b\xC3\xA4"},
                 {"file:///a?query#place", "/a"},
                 {"file:///100%", "/100%"},
                 {"file:///%zz%4", "/%zz%4"},
                 {"file:///\xC3\xA4", "/\xC3\xA4"},
                 {"file://elsewhere/a", nullptr},
                 {"file:a", nullptr},
                 {"http:///a", nullptr},
                 {"/a", nullptr},
                 {"", nullptr}};
    for (const auto& [uri, path] : table) {
        const auto file = FileFromUri(uri);
        EXPECT_EQ(file ? file->NativePath() : "none", path ? path : "none") << uri;
    }
}

TEST(Uri, ListsHaveALineForEach) {
    const StringView list("# file:///no\r\nfile:///a\r\nhttp://b/\r\n\nfile:///c%FF\0", 50);
    String paths;
    for (const auto& file : FilesFromUriList(list))
        paths += file->NativePath() + " ";
    EXPECT_EQ(paths, "/a /c\xFF ");
}

}  // namespace
}  // namespace sorbel
