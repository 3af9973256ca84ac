#include "journal/Records.h"

#include "journal/FileState.h"

namespace sorbel {

namespace {

struct Header {
    uint64_t Generation;
    uint64_t Size, SizeChecked;
    int64_t Time;
    uint64_t Type;
    uint64_t Checksum;
};

uint64_t ChecksumOf(Header header, StringView payload) {
    header.Checksum = Hash64(payload.substr(0, static_cast<size_t>(header.SizeChecked)));
    return Hash64({reinterpret_cast<const char*>(&header), sizeof header});
}

}  // namespace

String RecordHeader(uint64_t generation, RecordType type, int64_t time, StringView payload, size_t more) {
    Header header{generation, payload.size() + more, payload.size(), time, static_cast<uint64_t>(type), 0};
    header.Checksum = ChecksumOf(header, payload);
    return {reinterpret_cast<const char*>(&header), sizeof header};
}

std::vector<Record> ReadRecords(StringView journal) {
    std::vector<Record> records;
    uint64_t generation = 0;
    while (journal.size() >= sizeof(Header)) {
        Header header;
        std::memcpy(&header, journal.data(), sizeof header);
        if (records.empty()) generation = header.Generation;
        if (header.Generation != generation || header.Size > journal.size() - sizeof header) break;
        const StringView payload = journal.substr(sizeof header, static_cast<size_t>(header.Size));
        if (header.Checksum != ChecksumOf(header, payload)) break;
        records.push_back({static_cast<RecordType>(header.Type), header.Time, payload});
        journal.remove_prefix(sizeof header + payload.size());
    }
    return records;
}

}  // namespace sorbel
