#include "platform/WordCounter.h"

#include <unicode/ubrk.h>
#include <unicode/utext.h>

#include "platform/Exceptions.h"

namespace sorbel {

namespace {

void CheckStatus(UErrorCode status) {
    if (U_FAILURE(status))
        throw RuntimeException(String("words can't be told apart: ") + u_errorName(status));
}

}  // namespace

/// The iterator reads the text where it is; both are used again for each text, since to open one takes longer
/// than to count a few words.
struct WordCounter::Iterator {
    Iterator() {
        UErrorCode status = U_ZERO_ERROR;
        Breaks = ubrk_open(UBRK_WORD, "", nullptr, 0, &status);
        CheckStatus(status);
    }
    ~Iterator() {
        ubrk_close(Breaks);
        utext_close(&Text);
    }
    Iterator(const Iterator&) = delete;
    Iterator& operator=(const Iterator&) = delete;

    UBreakIterator* Breaks = nullptr;
    UText Text = UTEXT_INITIALIZER;
};

WordCounter::WordCounter() : mIterator(std::make_unique<Iterator>()) {}
WordCounter::~WordCounter() = default;

int64_t WordCounter::Count(StringView text) {
    if (text.empty()) return 0;
    UErrorCode status = U_ZERO_ERROR;
    utext_openUTF8(&mIterator->Text, text.data(), static_cast<int64_t>(text.size()), &status);
    ubrk_setUText(mIterator->Breaks, &mIterator->Text, &status);
    CheckStatus(status);
    int64_t count = 0;
    while (ubrk_next(mIterator->Breaks) != UBRK_DONE)
        if (ubrk_getRuleStatus(mIterator->Breaks) >= UBRK_WORD_NONE_LIMIT) ++count;
    return count;
}

}  // namespace sorbel
