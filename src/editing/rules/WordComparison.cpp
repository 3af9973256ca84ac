#include "editing/rules/WordComparison.h"

#include <cstdint>
#include <unordered_map>

namespace sorbel {

namespace {

constexpr StringView Separators = " .,[]()*^/\\+-\"'=><@:|";

/// The words of one version by number, with the places where each word stands.
class WordList {
  public:
    WordList(StringView text, std::unordered_map<StringView, uint32_t>& numbers)
        : mWords(SplitIntoWords(text)) {
        mNumbers.reserve(mWords.size());
        for (const StringView word : mWords)
            mNumbers.push_back(
                numbers.try_emplace(word, static_cast<uint32_t>(numbers.size())).first->second);
    }

    /// To be called once both lists have numbered their words. Links each place to the next one of its word.
    void LinkPlaces(size_t wordCount) {
        mFirstPlace.assign(wordCount, End());
        mNextPlace.resize(mNumbers.size());
        for (size_t place = mNumbers.size(); place-- > 0;) {
            mNextPlace[place] = mFirstPlace[mNumbers[place]];
            mFirstPlace[mNumbers[place]] = place;
        }
    }

    [[nodiscard]] bool Empty() const { return mHead == mWords.size(); }
    [[nodiscard]] uint32_t Head() const { return mNumbers[mHead]; }

    /// How far behind the head a word stands, -1 if it does not. Places that the head has passed are skipped
    /// for good, which keeps all searches together linear.
    [[nodiscard]] int64_t DistanceTo(uint32_t word) {
        size_t& place = mFirstPlace[word];
        while (place != End() && place <= mHead)
            place = mNextPlace[place];
        return place == End() ? -1 : static_cast<int64_t>(place - mHead);
    }

    /// Takes the head off and adds it to the runs.
    void Emit(bool common, std::vector<WordRun>& runs) {
        const StringView word = mWords[mHead++];
        if (!runs.empty() && runs.back().Common == common)
            runs.back().Text = {runs.back().Text.data(), runs.back().Text.size() + word.size()};
        else
            runs.push_back({word, common});
    }

  private:
    [[nodiscard]] static size_t End() { return SIZE_MAX; }

    std::vector<StringView> mWords;
    std::vector<uint32_t> mNumbers;
    std::vector<size_t> mFirstPlace;  // by word
    std::vector<size_t> mNextPlace;   // by place
    size_t mHead = 0;
};

enum class Mode { Undecided, Current, Older };

/// Which list to take words from until the heads meet again; `alternating` for a pair without a counterpart.
Mode Decide(WordList& current, WordList& older, bool& alternating) {
    if (older.Empty()) return Mode::Current;
    if (current.Empty()) return Mode::Older;
    const int64_t inOlder = older.DistanceTo(current.Head());
    const int64_t inCurrent = current.DistanceTo(older.Head());
    // Found in one list only counts as nearer in neither: the words of `current` are new until the heads
    // meet.
    if (inOlder >= 0 && inOlder < inCurrent) return Mode::Older;
    if (inOlder < 0 && inCurrent < 0) alternating = true;
    return Mode::Current;
}

}  // namespace

std::vector<StringView> SplitIntoWords(StringView text) {
    std::vector<StringView> words;
    size_t start = 0;
    for (size_t at = text.find_first_of(Separators); at != StringView::npos;
         at = text.find_first_of(Separators, start)) {
        words.push_back(text.substr(start, at - start));
        words.push_back(text.substr(at, 1));
        start = at + 1;
    }
    if (start < text.size()) words.push_back(text.substr(start));
    return words;
}

WordComparison CompareWords(StringView currentText, StringView olderText) {
    std::unordered_map<StringView, uint32_t> numbers;
    WordList current(currentText, numbers);
    WordList older(olderText, numbers);
    current.LinkPlaces(numbers.size());
    older.LinkPlaces(numbers.size());

    WordComparison result;
    Mode mode = Mode::Undecided;
    bool alternating = false;
    while (!current.Empty() || !older.Empty()) {
        if (alternating) {
            alternating = mode == Mode::Current;
            mode = mode == Mode::Current ? Mode::Older : Mode::Undecided;
        }
        if (!current.Empty() && !older.Empty() && current.Head() == older.Head()) {
            mode = Mode::Undecided;
            alternating = false;
            current.Emit(true, result.Current);
            older.Emit(true, result.Older);
            continue;
        }
        const bool exhausted =
            (mode == Mode::Current && current.Empty()) || (mode == Mode::Older && older.Empty());
        if (mode == Mode::Undecided || exhausted) mode = Decide(current, older, alternating);
        if (mode == Mode::Current)
            current.Emit(false, result.Current);
        else
            older.Emit(false, result.Older);
    }
    return result;
}

}  // namespace sorbel
