#include "exchange/CommandLine.h"

#include <getopt.h>

#include "exchange/ExchangeError.h"

namespace sorbel {

Arguments::Arguments(const std::vector<String>& words, const std::vector<Option>& options) {
    constexpr int firstLong = 256;  // above all letters
    String letters = ":";           // a missing value is told apart
    std::vector<option> longs;
    for (const Option& one : options) {
        longs.push_back({one.Name, one.HasValue ? required_argument : no_argument, nullptr,
                         firstLong + static_cast<int>(longs.size())});
        if (one.Letter) letters.append(1, one.Letter).append(one.HasValue ? ":" : "");
    }
    longs.push_back({});

    std::vector<String> copies = words;  // may be put into another order
    std::vector<char*> pointers;
    for (String& word : copies)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    const int count = static_cast<int>(copies.size());
    optind = 0;  // begins anew
    opterr = 0;
    for (;;) {
        const int found = getopt_long(count, pointers.data(), letters.c_str(), longs.data(), nullptr);
        if (found < 0) break;
        if (found == ':')
            throw WrongUse(String(pointers[static_cast<size_t>(optind - 1)]) + ": needs a value");
        if (found == '?')
            throw WrongUse(String(pointers[static_cast<size_t>(optind - 1)]) + ": unknown option");
        for (size_t i = 0; i < options.size(); ++i)
            if (found == firstLong + static_cast<int>(i) || found == options[i].Letter)
                mOptions.emplace_back(options[i].Name, optarg ? optarg : "");
    }
    for (int i = optind; i < count; ++i)
        mOperands.emplace_back(pointers[static_cast<size_t>(i)]);
}

std::optional<String> Arguments::Value(StringView option) const {
    const std::vector<String> all = Values(option);
    return all.empty() ? std::nullopt : std::optional(all.back());
}

std::vector<String> Arguments::Values(StringView option) const {
    std::vector<String> values;
    for (const auto& [name, value] : mOptions)
        if (name == option) values.push_back(value);
    return values;
}

}  // namespace sorbel
