#include "qt/SpellHighlighter.h"

#include <QElapsedTimer>
#include <QSignalBlocker>
#include <QTextDocument>
#include <algorithm>
#include <utility>

namespace sorbel {

namespace {

constexpr int PauseMilliseconds = 250;  // a word is not called wrong while it is being typed
constexpr int SliceMilliseconds = 4;
constexpr qsizetype LongestLine = 5'000;  // a longer one is no text that a person writes
constexpr qsizetype AllowanceForEvent = 20'000;
constexpr qsizetype MostKnown = 100'000;
constexpr qsizetype MostSuggestions = 6;

/// On a block that waits to be checked. A block's state would not do: a new one makes the next block be
/// looked at as well.
class Postponed : public QTextBlockUserData {};

}  // namespace

SpellHighlighter::SpellHighlighter(QTextDocument& document)
    : QSyntaxHighlighter(static_cast<QObject*>(nullptr)), mDocument(document), mAllowance(AllowanceForEvent) {
    mPause.setSingleShot(true);
    connect(&mPause, &QTimer::timeout, this, [this] { CheckSome(); });
    connect(&mLoading, &QFutureWatcherBase::finished, this, [this] { Loaded(); });
    connect(&mDocument, &QTextDocument::contentsChanged, this, [this] { LoadForText(); });
}

/// The base class takes its marks away last, which is a change of the document.
SpellHighlighter::~SpellHighlighter() {
    mDocument.disconnect(this);
}

void SpellHighlighter::SetLanguage(const QString& code) {
    if (code == mLanguage) return;
    mLanguage = code;
    mChecker.reset();
    mKnown.clear();
    mPause.stop();
    mFirstPostponed = 0;
    setDocument(nullptr);  // takes the marks away
    mLoading.setFuture({});
    mDictionary = FindDictionary(code, DictionaryFolders());
    LoadForText();
}

/// Reading a dictionary takes as long as all else at the start of the program, so it waits for a text.
void SpellHighlighter::LoadForText() {
    if (mDictionary.isEmpty() || mDocument.isEmpty()) return;
    mLoading.setFuture(LoadSpellChecker(std::exchange(mDictionary, {})));
}

void SpellHighlighter::Loaded() {
    if (mLoading.future().resultCount() == 0) return;  // there is no dictionary
    mChecker = mLoading.result();
    setDocument(&mDocument);
}

void SpellHighlighter::highlightBlock(const QString& text) {
    setCurrentBlockUserData(nullptr);
    mFirstPostponed = std::min(mFirstPostponed, currentBlock().blockNumber());
    mPause.start(PauseMilliseconds);
    if (text.size() > LongestLine) return;
    mAllowance -= text.size();
    if (mAllowance < 0) return setCurrentBlockUserData(new Postponed);
    QTextCharFormat wrong;
    wrong.setUnderlineStyle(QTextCharFormat::SpellCheckUnderline);
    wrong.setUnderlineColor(QColor(0xE0, 0x30, 0x30));
    bool unknown = false;
    for (const Word& word : WordsIn(text)) {
        const auto known = mKnown.constFind(word.Text);
        if (known == mKnown.constEnd())
            unknown = true;
        else if (!*known)
            setFormat(static_cast<int>(word.Start), static_cast<int>(word.Length), wrong);
    }
    if (unknown) setCurrentBlockUserData(new Postponed);
}

void SpellHighlighter::CheckSome() {
    QElapsedTimer time;
    time.start();
    QTextBlock block = mDocument.findBlockByNumber(mFirstPostponed);
    for (; block.isValid() && time.elapsed() < SliceMilliseconds; block = block.next())
        if (block.userData()) LookUp(block);
    mAllowance = AllowanceForEvent;
    mFirstPostponed = block.isValid() ? block.blockNumber() : mDocument.blockCount();
    if (block.isValid()) mPause.start(0);
}

/// Most blocks have nothing to be marked, and marking costs more than looking up.
void SpellHighlighter::LookUp(QTextBlock& block) {
    if (mKnown.size() > MostKnown) mKnown.clear();
    block.setUserData(nullptr);
    bool wrong = false;
    for (const Word& word : WordsIn(block.text())) {
        auto known = mKnown.find(word.Text);
        if (known == mKnown.end()) known = mKnown.insert(word.Text, mChecker->IsCorrect(word.Text));
        if (!*known) wrong = true;
    }
    if (!wrong) return;
    mAllowance = block.length();
    const QSignalBlocker quiet(mDocument);  // marks are no change of the text
    rehighlightBlock(block);
}

std::optional<QTextCursor> SpellHighlighter::MarkedWord(int position) const {
    const QTextBlock block = mDocument.findBlock(position);
    if (!mChecker || !block.isValid()) return std::nullopt;
    for (const Word& word : WordsIn(block.text())) {
        const auto start = block.position() + static_cast<int>(word.Start);
        const auto end = start + static_cast<int>(word.Length);
        if (position < start || position > end || mKnown.value(word.Text, true)) continue;
        QTextCursor cursor(block);
        cursor.setPosition(start);
        cursor.setPosition(end, QTextCursor::KeepAnchor);
        return cursor;
    }
    return std::nullopt;
}

QStringList SpellHighlighter::Suggestions(const QTextCursor& word) const {
    const QString marked = word.selectedText();
    const qsizetype mnemonic = marked.indexOf(u'&');
    const std::vector<Word> words = WordsIn(marked);
    if (!mChecker || words.empty()) return {};
    QStringList suggestions = mChecker->Suggestions(words.front().Text).mid(0, MostSuggestions);
    if (mnemonic > 0)
        for (QString& suggestion : suggestions)
            suggestion.insert(std::min(mnemonic, suggestion.size()), u'&');
    return suggestions;
}

}  // namespace sorbel
