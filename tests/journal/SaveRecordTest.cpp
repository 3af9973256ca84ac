#include "journal/SaveRecord.h"

#include <gtest/gtest.h>

#include <random>

#include "platform/Exceptions.h"
#include "platform/FileContents.h"
#include "support/TemporaryFolder.h"

namespace sorbel {
namespace {

using Found = SaveRecord::Found;
constexpr size_t Block = BeforeSave::BlockSize;

String AnyBytes(std::mt19937& random, size_t size) {
    String bytes(size, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random());
    return bytes;
}

/// What a journal keeps of the save of a file that holds `before`, which must be told right.
String Kept(const String& before, const String& after) {
    const TemporaryFolder folder;
    const FolderItem file(folder / "file");
    if (!before.empty()) WriteContents(file, before);
    const BeforeSave told(file, after);
    EXPECT_TRUE(told.Bytes() == before);
    return SaveRecord::Make(told, FileState::Of(after)) + after.substr(told.Offset());
}

/// The file when so many bytes of the new ones have been written, and maybe cut to the new length.
String Torn(const String& before, const String& after, size_t written) {
    String file = after.substr(0, written);
    if (file.size() < before.size()) file += before.substr(file.size());
    return file;
}

/// Sizes around the ends of blocks, where the two overlap in a block in all ways.
const size_t Sizes[] = {0, 1, Block - 1, Block, Block + 1, 2 * Block + 7, 3 * Block, 3 * Block + 100};

TEST(SaveRecord, KnowsEveryStageOfASave) {
    std::mt19937 random(1);
    for (const size_t sizeBefore : Sizes) {
        for (const size_t sizeAfter : Sizes) {
            const String before = AnyBytes(random, sizeBefore), after = AnyBytes(random, sizeAfter);
            const String kept = Kept(before, after);
            const SaveRecord record(kept);
            for (size_t written = 0; written < sizeAfter + Block; written += Block) {
                const String file = Torn(before, after, written);
                const Found expected = file == after    ? Found::After
                                       : file == before ? Found::Before
                                                        : Found::HalfWritten;
                EXPECT_EQ(record.Compare(file), expected) << sizeBefore << " " << sizeAfter << " " << written;
                EXPECT_EQ(record.After(file), after);
            }
        }
    }
}

TEST(SaveRecord, TakesBlocksInAnyOrderButNoneOfOthers) {
    std::mt19937 random(2);
    const String before = AnyBytes(random, 5 * Block + 9), after = AnyBytes(random, 5 * Block + 2000);
    const String kept = Kept(before, after);
    const SaveRecord record(kept);
    String mixed = before.substr(0, Block) + after.substr(Block, Block) + before.substr(2 * Block, Block) +
                   after.substr(3 * Block, 2 * Block + 500);
    EXPECT_EQ(record.Compare(mixed), Found::HalfWritten);
    for (const size_t at : {size_t{0}, Block + 1, 2 * Block, mixed.size() - 1}) {
        String foreign = mixed;
        foreign[at] = static_cast<char>(foreign[at] ^ 1);
        EXPECT_EQ(record.Compare(foreign), Found::Foreign) << at;
    }
    EXPECT_EQ(record.Compare(after + "x"), Found::Foreign);
    EXPECT_THROW(SaveRecord(StringView(kept).substr(0, 20)), OutOfBoundsException);
}

TEST(SaveRecord, KeepsOnlyWhatDiffers) {
    std::mt19937 random(3);
    const String before = AnyBytes(random, 700 * Block + 77);  // more than is read at once
    for (const size_t at : {size_t{0}, 2 * Block, 300 * Block + 5, before.size()}) {
        for (const size_t removed : {size_t{0}, size_t{3}, 400 * Block}) {
            String after = before;
            after.replace(at, removed, "inserted");
            const String kept = Kept(before, after);
            const SaveRecord record(kept);
            EXPECT_LE(kept.size(), before.size() - at + 9 * 700 + 3 * Block);
            EXPECT_EQ(record.Compare(before), Found::Before);
            String half = Torn(before, after, (at / Block + 2) * Block);
            if (half == after) continue;
            EXPECT_EQ(record.Compare(half), Found::HalfWritten) << at << " " << removed;
            EXPECT_TRUE(record.After(half) == after);
            half[at / 2] = static_cast<char>(half[at / 2] ^ 1);
            EXPECT_EQ(record.Compare(half), Found::Foreign);
        }
    }
    const String kept = Kept(before, before);
    EXPECT_EQ(SaveRecord(kept).Compare(before), Found::After);
}

}  // namespace
}  // namespace sorbel
