#include <gtest/gtest.h>

#include "platform/BinaryStream.h"
#include "platform/Dictionary.h"
#include "platform/SharedText.h"

namespace sorbel {
namespace {

TEST(Dictionary, KeepsOrderPlaceAndFirstSpelling) {
    Dictionary<String, int> numbers;
    for (int i = 0; i < 1000; ++i)
        numbers.Set("Key" + std::to_string(i), i);
    numbers.Set("KEY7", 700);
    EXPECT_EQ(numbers.Count(), 1000);
    EXPECT_EQ(numbers.KeyAt(7), "Key7");
    EXPECT_EQ(numbers.ValueAt(7), 700);
    for (int i = 0; i < 1000; i += 2)
        ASSERT_TRUE(numbers.Remove("kEY" + std::to_string(i)));
    EXPECT_FALSE(numbers.Remove("Key0"));
    EXPECT_EQ(numbers.Count(), 500);
    for (int i = 0; i < 1000; ++i)
        ASSERT_EQ(numbers.HasKey("key" + std::to_string(i)), i % 2 == 1) << i;
    EXPECT_EQ(numbers.Keys()[1], "Key3");
    EXPECT_EQ(numbers.At("key999"), 999);
    EXPECT_EQ(numbers.Lookup("none", -1), -1);
    EXPECT_THROW((void)numbers.At("none"), KeyNotFoundException);
    EXPECT_THROW((void)numbers.KeyAt(500), OutOfBoundsException);
    EXPECT_THROW((void)numbers.ValueAt(-1), OutOfBoundsException);
    numbers.Clear();
    EXPECT_FALSE(numbers.HasKey("Key1"));
    numbers.Set("Key1", 1);
    EXPECT_EQ(numbers.Count(), 1);
}

TEST(Dictionary, TakesNumbersAddressesAndSharedTexts) {
    Dictionary<int, Dictionary<int, SharedText>> platforms;
    platforms.FindOrAdd(-3, [] { return -3; }).Set(1, SharedText("one"));
    EXPECT_EQ(platforms.At(-3).At(1).View(), "one");
    EXPECT_EQ(platforms.Find(3), nullptr);
    int targets[100] = {};
    Dictionary<int*, int> byAddress;
    byAddress.Reserve(100);
    for (int& target : targets)
        byAddress.Set(&target, static_cast<int>(&target - targets));
    EXPECT_EQ(byAddress.At(&targets[42]), 42);
    Dictionary<SharedText, int> texts;
    const String bytes = "Borrowed";
    texts.FindOrAdd("borrowed", [&] { return SharedText::Borrow(bytes); }) = 5;
    const auto copy = texts;
    EXPECT_EQ(copy.At("BORROWED"), 5);
    EXPECT_EQ(copy.KeyAt(0).View().data(), bytes.data());
}

TEST(Dictionary, AWrongGuessFindsTheSamePlace) {
    Dictionary<String, int> numbers;
    EXPECT_EQ(numbers.PlaceOf("a", 0), -1);
    for (const char* key : {"a", "b", "c"})
        numbers.Set(key, key[0]);
    for (const int64_t guess : {-1, 0, 1, 2, 3}) {
        EXPECT_EQ(numbers.PlaceOf("B", guess), 1) << guess;
        EXPECT_EQ(numbers.PlaceOf("d", guess), -1) << guess;
        EXPECT_EQ(numbers.FindOrAdd(
                      "C", [] { return "C"; }, guess),
                  'c')
            << guess;
    }
    numbers.FindOrAdd(
        "d", [] { return "d"; }, 1) = 'd';
    EXPECT_EQ(numbers.ItemAt(3).First, "d");
    EXPECT_EQ(numbers.At("b"), 'b');
}

TEST(SharedText, CopiesShareOneBlock) {
    SharedText copy;
    const char* bytes = nullptr;
    {
        SharedText original(String("a text that outlives its maker"));
        bytes = original.View().data();
        copy = original;
        copy = *&copy;
        SharedText moved = std::move(original);
        EXPECT_TRUE(original.Empty());  // NOLINT(bugprone-use-after-move): it is empty by promise
        EXPECT_EQ(moved.View().data(), bytes);
    }
    EXPECT_EQ(copy.View(), "a text that outlives its maker");
    EXPECT_EQ(copy.View().data(), bytes);
    copy = SharedText(copy.View().substr(2, 4));
    EXPECT_EQ(copy.View(), "text");
    EXPECT_TRUE(SharedText(StringView()).Empty());
    EXPECT_EQ(SharedText::Borrow({}).View(), "");
    const StringView tooLong("x", (size_t{1} << 31) + 1);  // only its size is looked at
    EXPECT_THROW(SharedText{tooLong}, OutOfBoundsException);
    EXPECT_THROW(SharedText::Borrow(tooLong), OutOfBoundsException);
}

TEST(BinaryStream, ReadsWithinItsBounds) {
    BinaryStream stream(StringView("\x00\x00\x01\x02\xfe\xff\xff\xffxy", 10));
    EXPECT_EQ(stream.ReadInt32(), 0x102);
    stream.LittleEndian = true;
    EXPECT_EQ(stream.ReadInt32(), -2);
    EXPECT_THROW(stream.ReadInt32(), OutOfBoundsException);
    EXPECT_THROW(stream.Read(INT64_MAX), OutOfBoundsException);
    EXPECT_THROW(stream.Read(-1), OutOfBoundsException);
    EXPECT_THROW(stream.SetPosition(11), OutOfBoundsException);
    EXPECT_THROW(stream.SetPosition(-1), OutOfBoundsException);
    EXPECT_EQ(stream.Position(), 8);
    EXPECT_EQ(stream.Read(2), "xy");
    EXPECT_TRUE(stream.EndOfFile());
    EXPECT_THROW(stream.Write("x"), IOException);
}

TEST(BinaryStream, WritesOverAndBehind) {
    MemoryBlock block;
    BinaryStream stream(block);
    stream.WriteInt32(1);
    stream.Write("name");
    stream.SetPosition(6);
    stream.Write("more");
    stream.SetPosition(0);
    stream.LittleEndian = true;
    stream.WriteInt32(0x41424344);
    EXPECT_EQ(block.Bytes, "DCBAnamore");
    stream.SetPosition(stream.Length());
    stream.WriteUInt8(0xFF);
    EXPECT_EQ(block.Bytes, "DCBAnamore\xff");
    stream.SetPosition(4);
    EXPECT_EQ(stream.Read(2), "na");
}

}  // namespace
}  // namespace sorbel
