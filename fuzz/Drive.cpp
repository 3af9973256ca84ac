// Goes through files without a fuzzer, for any compiler:
//   TARGET [--near BYTES] [--mutations COUNT] FILE...
// A file of at most so many BYTES also with each change of a single byte, and each file with COUNT random
// changes if the target knows how to make some. An input that ends the program is left in `TARGET.finding`.
#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

extern "C" {
int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);
size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t mostSize, unsigned seed)
    __attribute__((weak));
}

namespace {

using Bytes = std::string;

std::string findingPath;
const Bytes* current = nullptr;
size_t runs = 0;

/// Calls nothing that a handler may not.
void KeepFinding(int number) {
    const int file = open(findingPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    [[maybe_unused]] const ssize_t written =
        current ? write(file, current->data(), current->size()) : ssize_t{0};
    std::signal(number, SIG_DFL);
    std::raise(number);
}

void Run(const Bytes& bytes) {
    current = &bytes;
    const std::vector<uint8_t> own(bytes.begin(), bytes.end());  // so that a look beyond its end is seen
    LLVMFuzzerTestOneInput(own.data(), own.size());
    current = nullptr;
    ++runs;
}

/// Each bit the other way, each byte gone, each byte twice.
void RunNear(const Bytes& bytes) {
    for (size_t at = 0; at < bytes.size(); ++at) {
        for (int bit = 0; bit < 8; ++bit) {
            Bytes flipped = bytes;
            flipped[at] = static_cast<char>(flipped[at] ^ (1 << bit));
            Run(flipped);
        }
        Run(Bytes(bytes).erase(at, 1));
        Run(Bytes(bytes).insert(at, 1, bytes[at]));
    }
}

void RunMutations(const Bytes& bytes, unsigned count) {
    const size_t most = 4 * bytes.size() + 100000;
    for (unsigned seed = 0; seed < count; ++seed) {
        Bytes changed = bytes;
        changed.resize(most);
        auto* const data = reinterpret_cast<uint8_t*>(changed.data());
        changed.resize(LLVMFuzzerCustomMutator(data, bytes.size(), most, seed));
        Run(changed);
    }
}

Bytes Read(const char* path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        std::fprintf(stderr, "%s cannot be read\n", path);
        std::exit(2);
    }
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The number behind an option, which is skipped; 0 without the option.
unsigned Option(std::string_view name, int argc, char** argv, int& at) {
    if (at + 1 >= argc || argv[at] != name) return 0;
    at += 2;
    return static_cast<unsigned>(std::strtoul(argv[at - 1], nullptr, 10));
}

}  // namespace

int main(int argc, char** argv) {
    findingPath = std::string(argv[0]) + ".finding";
    for (const int number : {SIGABRT, SIGSEGV, SIGFPE, SIGILL})
        std::signal(number, KeepFinding);
    int at = 1;
    const unsigned near = Option("--near", argc, argv, at);
    const unsigned mutations = Option("--mutations", argc, argv, at);
    if (at == argc || (mutations > 0 && !LLVMFuzzerCustomMutator)) {
        std::fprintf(stderr, "usage: %s [--near BYTES] [--mutations COUNT] FILE...\n", argv[0]);
        return 2;
    }
    for (; at < argc; ++at) {
        const Bytes bytes = Read(argv[at]);
        Run(bytes);
        if (bytes.size() <= near) RunNear(bytes);
        RunMutations(bytes, mutations);
    }
    std::printf("%zu inputs\n", runs);
    return 0;
}
