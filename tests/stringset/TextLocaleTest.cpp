#include <gtest/gtest.h>

#include <fstream>

#include "LocaleBytes.h"
#include "shell/FileTypes1.h"
#include "support/TemporaryFolder.h"

namespace sorbel::testing {

class TextLocale : public ::testing::Test {
  protected:
    void SetUp() override { _InitFileTypes(); }

    bool ReadText(const String& text) {
        std::ofstream(mPath, std::ios::binary) << text;
        return Set.ReadFile(FolderItem(mPath));
    }

    LocalizedStringSet Set;
    TemporaryFolder Folder;
    String mPath = Folder / "text.TXT";
};

TEST_F(TextLocale, FillsTheSetAndIsNeverADocument) {
    EXPECT_FALSE(
        ReadText("a\tany\tA\\n\t1\tmore\nb\twINDOWS\tB\t\r\nb\tLinux\tB\t3\nb\tMac "
                 "OS\tB\t4\nc\tAmiga\tC\t5\nA\t\tA2\\n\t6"));
    EXPECT_EQ(Values(Set, "b", 2) + Values(Set, "b", 3) + Values(Set, "b", 1), "B|B|3B|4");
    EXPECT_EQ(Values(Set, "c"), "C|5") << "an unknown platform is any";
    EXPECT_EQ(Values(Set, "a"), "A2\\n|6") << "no escapes here";
    EXPECT_EQ(Set.Language, "");
    EXPECT_FALSE(ReadText("nvlocale\t\t\t")) << "the name decides, not the contents";
    EXPECT_EQ(Values(Set, "nvlocale"), "|");
    LocalizedStringSet::CheckTextFile(FolderItem(mPath));
    LocalizedStringSet::CheckTextFile(FolderItem(mPath + ".missing"));
}

TEST_F(TextLocale, AMarkIsNoPartOfTheFirstRow) {
    const String mark = "\xEF\xBB\xBF";
    (void)ReadText(mark + "a\tAny\tA\t1\n" + mark + "b\tAny\tB\t2");
    EXPECT_EQ(Values(Set, "a"), "A|1");
    EXPECT_EQ(Values(Set, mark + "b"), "B|2");
}

TEST_F(TextLocale, AShortLineFailsBehindTheLinesBefore) {
    for (const char* shortLine : {"b\tAny\tB", "b", "", "b\tAny"}) {
        EXPECT_THROW(ReadText("a\tAny\tA\t1\n" + String(shortLine) + "\nc\tAny\tC\t3\n"),
                     OutOfBoundsException);
        EXPECT_EQ(Values(Set, "a") + Values(Set, "b") + Values(Set, "c"), "A|1--");
        EXPECT_THROW(LocalizedStringSet::CheckTextFile(FolderItem(mPath)), OutOfBoundsException);
    }
}

}  // namespace sorbel::testing
