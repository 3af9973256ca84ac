// Two versions of a text, compared word by word and by a walk that searches both lists for each decision.
//   CURRENT|older|OLDER
#include <algorithm>

#include "Target.h"
#include "editing/rules/WordComparison.h"

namespace sorbel::fuzz {

namespace {

using Words = std::vector<StringView>;

Words PlainWords(StringView text) {
    Words words;
    size_t start = 0;
    for (size_t at = 0; at < text.size(); ++at) {
        if (StringView(" .,[]()*^/\\+-\"'=><@:|").find(text[at]) == StringView::npos) continue;
        words.push_back(text.substr(start, at - start));
        words.push_back(text.substr(at, 1));
        start = at + 1;
    }
    if (start < text.size()) words.push_back(text.substr(start));
    return words;
}

/// Where a word stands behind the head, -1 if it does not.
ptrdiff_t Find(const Words& words, size_t head, StringView word) {
    const auto found = std::find(words.begin() + static_cast<ptrdiff_t>(head) + 1, words.end(), word);
    return found == words.end() ? -1 : found - words.begin() - static_cast<ptrdiff_t>(head);
}

/// For each word of both versions whether the other one has it too.
class Walk {
  public:
    Walk(Words current, Words older) : mCurrent(std::move(current)), mOlder(std::move(older)) {
        while (!CurrentEmpty() || !OlderEmpty())
            Step();
    }
    std::vector<bool> CommonInCurrent, CommonInOlder;

  private:
    enum class Mode { Undecided, Current, Older };

    [[nodiscard]] bool CurrentEmpty() const { return CommonInCurrent.size() == mCurrent.size(); }
    [[nodiscard]] bool OlderEmpty() const { return CommonInOlder.size() == mOlder.size(); }
    [[nodiscard]] StringView CurrentHead() const { return mCurrent[CommonInCurrent.size()]; }
    [[nodiscard]] StringView OlderHead() const { return mOlder[CommonInOlder.size()]; }

    void Step() {
        if (mAlternating) {
            mAlternating = mMode == Mode::Current;
            mMode = mMode == Mode::Current ? Mode::Older : Mode::Undecided;
        }
        if (!CurrentEmpty() && !OlderEmpty() && CurrentHead() == OlderHead()) {
            mMode = Mode::Undecided;
            mAlternating = false;
            CommonInCurrent.push_back(true);
            CommonInOlder.push_back(true);
            return;
        }
        if (mMode == Mode::Undecided || (mMode == Mode::Current ? CurrentEmpty() : OlderEmpty())) Decide();
        (mMode == Mode::Current ? CommonInCurrent : CommonInOlder).push_back(false);
    }
    void Decide() {
        if (CurrentEmpty() || OlderEmpty()) {
            mMode = OlderEmpty() ? Mode::Current : Mode::Older;
            return;
        }
        const ptrdiff_t inOlder = Find(mOlder, CommonInOlder.size(), CurrentHead());
        const ptrdiff_t inCurrent = Find(mCurrent, CommonInCurrent.size(), OlderHead());
        mMode = inOlder >= 0 && inOlder < inCurrent ? Mode::Older : Mode::Current;
        if (inOlder < 0 && inCurrent < 0) mAlternating = true;
    }

    Words mCurrent, mOlder;
    Mode mMode = Mode::Undecided;
    bool mAlternating = false;
};

void CheckRuns(StringView text, const Words& words, const std::vector<bool>& common,
               const std::vector<WordRun>& runs) {
    String joined, expected;
    for (const WordRun& run : runs) {
        joined += run.Text;
        expected.append(run.Text.size(), run.Common ? '+' : '-');
    }
    Require(joined == text, "the runs put together are the text");
    String marks;
    for (size_t i = 0; i < words.size(); ++i)
        marks.append(words[i].size(), common[i] ? '+' : '-');
    Require(marks == expected, "the words are marked as by hand");
    const auto same = [](const WordRun& a, const WordRun& b) {
        return a.Common == b.Common;
    };
    Require(std::ranges::adjacent_find(runs, same) == runs.end(), "runs side by side differ in their mark");
}

String CommonText(const std::vector<WordRun>& runs) {
    String text;
    for (const WordRun& run : runs)
        if (run.Common) text += run.Text;
    return text;
}

}  // namespace

void CheckInput(StringView input) {
    const Pair texts = SplitInput(input, "|older|");
    const Words current = PlainWords(texts.First), older = PlainWords(texts.Second);
    Require(SplitIntoWords(texts.First) == current && SplitIntoWords(texts.Second) == older,
            "texts are split at each separator");
    const WordComparison words = CompareWords(texts.First, texts.Second);
    const Walk walk(current, older);
    CheckRuns(texts.First, current, walk.CommonInCurrent, words.Current);
    CheckRuns(texts.Second, older, walk.CommonInOlder, words.Older);
    Require(CommonText(words.Current) == CommonText(words.Older), "what is common is the same on both sides");
}

}  // namespace sorbel::fuzz
