#include "PlainLocale.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace sorbel::fuzz {

namespace {

constexpr StringView Magic = "nvlocale";
constexpr int MostLevels = 20;

struct PastTheEnd {};
struct NoOpinion {};

class Reader {
  public:
    Reader(StringView bytes, int level) : mBytes(bytes), mAt(Magic.size()), mLevel(level) {
        if (level > MostLevels) throw NoOpinion();
    }

    PlainLocale Read() {
        mLocale.Valid = true;
        try {
            while (mAt < mBytes.size())
                ReadChunk();
        } catch (const PastTheEnd&) {
            mLocale.Valid = false;
        }
        return std::move(mLocale);
    }

  private:
    struct Simple {
        bool IsNumber = false;
        int32_t Number = 0;
        StringView Bytes{};

        [[nodiscard]] String Text() const { return IsNumber ? std::to_string(Number) : String(Bytes); }
        [[nodiscard]] int64_t Integer() const { return IsNumber ? Number : LeadingNumber(Bytes); }
    };

    StringView Take(int64_t count) {
        if (count < 0 || count > static_cast<int64_t>(mBytes.size() - mAt)) throw PastTheEnd();
        mAt += static_cast<size_t>(count);
        return mBytes.substr(mAt - static_cast<size_t>(count), static_cast<size_t>(count));
    }
    static int32_t Number(StringView bytes) {
        uint32_t number = 0;
        for (const char byte : bytes.substr(0, 4))
            number = number << 8 | static_cast<unsigned char>(byte);
        return static_cast<int32_t>(number);
    }
    static int64_t LeadingNumber(StringView text) {
        text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
        const bool negative = text.starts_with('-');
        if (negative || text.starts_with('+')) text.remove_prefix(1);
        constexpr int64_t most = std::numeric_limits<int32_t>::max();
        int64_t number = 0;
        for (; !text.empty() && text[0] >= '0' && text[0] <= '9'; text.remove_prefix(1))
            number = std::min(10 * number + (text[0] - '0'), most + 1);
        return negative ? -number : std::min(number, most);
    }

    Simple ReadValue() {
        const StringView head = Take(8);
        const StringView type = head.substr(0, 4);
        const int64_t length = Number(head.substr(4));
        if (type == "strn" || type == "bind") return {.Bytes = Take(length)};
        if (type != "long") {
            mLocale.Valid = false;
            Take(length);
            return {};
        }
        const Simple value{.IsNumber = true, .Number = Number(Take(4))};
        if (length == 4) return value;
        mLocale.Valid = false;
        if (length < 0) throw PastTheEnd();
        mAt -= 4;
        Take(length);
        return value;
    }

    void ReadChunk() {
        const StringView head = Take(8);
        const StringView tag = head.substr(0, 4);
        const int64_t length = Number(head.substr(4));
        if (tag == "enty")
            ReadEntry(length);
        else if (tag == "vers")
            mLocale.FileVersion = ReadValue().Integer();
        else if (tag == "nvvs")
            mLocale.Tool = ReadValue().Text();
        else if (tag == "lang")
            mLocale.Language = ReadValue().Text();
        else if (tag == "appl")
            mLocale.Application = ReadValue().Text();
        else if (tag == "date")
            mLocale.Date = ReadValue().Text();
        else if (tag == "hist")
            ReadHistory(ReadValue().Bytes);
        else
            SkipUnknown(length);
    }
    void SkipUnknown(int64_t length) {
        mLocale.Valid = false;
        Take(length);
    }

    void ReadHistory(StringView bytes) {
        if (!bytes.starts_with(Magic)) return;
        PlainLocale version = Reader(bytes, mLevel + 1).Read();
        if (version.Valid) mLocale.History.push_back(std::move(version));
    }

    void ReadEntry(int64_t length) {
        if (length < 0 || length > static_cast<int64_t>(mBytes.size() - mAt)) throw PastTheEnd();
        const size_t end = mAt + static_cast<size_t>(length);
        String identifier;
        PlainDocument::Value value;
        while (mAt < end)
            ReadField(identifier, value);
        if (mAt > end) throw NoOpinion();
        mLocale.Document.Store(identifier, value);
    }
    void ReadField(String& identifier, PlainDocument::Value& value) {
        const StringView head = Take(8);
        const StringView tag = head.substr(0, 4);
        if (tag == "idnt")
            identifier = ReadValue().Text();
        else if (tag == "oval")
            value.Default = ReadValue().Text();
        else if (tag == "tval")
            value.Translated = ReadValue().Text();
        else if (tag == "plat")
            value.Platform = ReadValue().Integer();
        else if (tag == "chng")
            ReadValue();
        else
            SkipUnknown(Number(head.substr(4)));
    }

    StringView mBytes;
    size_t mAt;
    int mLevel;
    PlainLocale mLocale;
};

/// Bytes that name a file here.
bool NamesFile(const std::optional<String>& application) {
    return application && application->starts_with('/') && application->find('\0') == String::npos;
}

}  // namespace

std::optional<PlainLocale> ReadPlainly(StringView bytes) {
    if (!bytes.starts_with(Magic)) return std::nullopt;
    try {
        return Reader(bytes, 0).Read();
    } catch (const NoOpinion&) {
        return std::nullopt;
    }
}

bool Same(const PlainLocale& plain, const LocalizedStringSet& set) {
    if (plain.Document != PlainDocument(set) || plain.Language != set.Language) return false;
    if (plain.Tool != set.NorvaneVersion || plain.FileVersion != set.FileVersion) return false;
    if (!set.DateGenerated || plain.Date != set.DateGenerated->SQLDateTime()) return false;
    if (NamesFile(plain.Application) != (set.EditedApplication != nullptr)) return false;
    if (set.EditedApplication && set.EditedApplication->GetSaveInfo() != plain.Application) return false;
    return std::ranges::equal(plain.History, set.History,
                              [](const PlainLocale& a, const auto& b) { return Same(a, *b); });
}

}  // namespace sorbel::fuzz
