// The least that a program with a model does to a locale file: read it, keep each string as a record of its
// own, find records by identifier, build the file again and write it. Nothing is shared with Sorbel, so that
// it stays a fixed mark.
//
// usage: floor FILE OUT
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace {

constexpr size_t HeaderSize = 8;              // tag and length
constexpr size_t ValueSize = 2 * HeaderSize;  // with the value's type and length

struct Record {
    std::string Identifier, Default, Translation;
    uint32_t Platform = 0;
};

[[noreturn]] void Fail(const char* why) {
    std::cerr << "floor: " << why << '\n';
    std::exit(1);
}

uint32_t NumberAt(std::string_view bytes) {
    if (bytes.size() < 4) Fail("a number is cut off");
    uint32_t number;
    std::memcpy(&number, bytes.data(), 4);
    return __builtin_bswap32(number);
}

/// Takes a chunk off the head of the bytes and gives its payload.
std::string_view TakeChunk(std::string_view& bytes) {
    if (bytes.size() < HeaderSize) Fail("a chunk is cut off");
    const size_t size = NumberAt(bytes.substr(4));
    if (size > bytes.size() - HeaderSize) Fail("a payload is cut off");
    const std::string_view payload = bytes.substr(HeaderSize, size);
    bytes.remove_prefix(HeaderSize + size);
    return payload;
}

Record ReadRecord(std::string_view fields) {
    Record record;
    while (!fields.empty()) {
        const std::string_view tag = fields.substr(0, 4);
        std::string_view chunk = TakeChunk(fields);
        const std::string_view value = TakeChunk(chunk);
        if (tag == "idnt")
            record.Identifier = value;
        else if (tag == "oval")
            record.Default = value;
        else if (tag == "tval")
            record.Translation = value;
        else if (tag == "plat")
            record.Platform = NumberAt(value);
        else
            Fail("a field is unknown");
    }
    return record;
}

std::string ReadFile(const char* path) {
    std::ifstream in(path, std::ios::binary | std::ios::ate);
    if (!in) Fail("the file cannot be read");
    std::string bytes(static_cast<size_t>(in.tellg()), '\0');
    in.seekg(0);
    in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return bytes;
}

/// Writes into a buffer of the right size from the start.
class Writer {
  public:
    explicit Writer(size_t size) : mBytes(size, '\0') {}
    void Put(std::string_view bytes) {
        std::memcpy(mBytes.data() + mAt, bytes.data(), bytes.size());
        mAt += bytes.size();
    }
    void PutNumber(size_t number) {
        const uint32_t swapped = __builtin_bswap32(static_cast<uint32_t>(number));
        Put({reinterpret_cast<const char*>(&swapped), 4});
    }
    void PutText(std::string_view tag, std::string_view text) {
        Put(tag);
        PutNumber(HeaderSize + text.size());
        Put("strn");
        PutNumber(text.size());
        Put(text);
    }
    [[nodiscard]] const std::string& Bytes() const { return mBytes; }

  private:
    std::string mBytes;
    size_t mAt = 0;
};

size_t FieldsSize(const Record& record) {
    return 4 * ValueSize + 4 + record.Identifier.size() + record.Default.size() + record.Translation.size();
}

Writer Serialise(std::string_view head, const std::vector<Record>& records) {
    size_t size = head.size();
    for (const Record& record : records)
        size += HeaderSize + FieldsSize(record);
    Writer writer(size);
    writer.Put(head);
    for (const Record& record : records) {
        writer.Put("enty");
        writer.PutNumber(FieldsSize(record));
        writer.PutText("idnt", record.Identifier);
        writer.PutText("oval", record.Default);
        writer.PutText("tval", record.Translation);
        writer.Put("plat");
        writer.PutNumber(HeaderSize + 4);
        writer.Put("long");
        writer.PutNumber(4);
        writer.PutNumber(record.Platform);
    }
    return writer;
}

}  // namespace

int main(int count, char** words) {
    if (count != 3) Fail("usage: floor FILE OUT");
    const std::string bytes = ReadFile(words[1]);
    if (!bytes.starts_with("nvlocale")) Fail("this is no locale file");
    std::string_view rest = std::string_view(bytes).substr(HeaderSize);
    std::string_view head = bytes;
    std::vector<Record> records;
    while (!rest.empty()) {
        const bool entry = rest.starts_with("enty");
        if (entry && records.empty()) head = head.substr(0, bytes.size() - rest.size());
        const std::string_view payload = TakeChunk(rest);
        if (entry) records.push_back(ReadRecord(payload));
    }
    std::unordered_map<std::string_view, size_t> places;
    places.reserve(records.size());
    for (const Record& record : records)
        places.emplace(record.Identifier, places.size());
    const Writer writer = Serialise(head, records);
    std::ofstream out(words[2], std::ios::binary);
    out.write(writer.Bytes().data(), static_cast<std::streamsize>(writer.Bytes().size()));
    out.close();
    if (!out || writer.Bytes() != bytes || places.empty()) Fail("the round trip failed");
    return 0;
}
