#pragma once

#include <QFutureWatcher>
#include <QHash>
#include <QSyntaxHighlighter>
#include <QTextCursor>
#include <QTimer>
#include <optional>

#include "qt/SpellChecker.h"

namespace sorbel {

/// Underlines the words of a document that the dictionary of its language does not know. An edit only shows
/// what is known of its words already; new words are looked up when nobody has typed for a moment, a few
/// milliseconds at a time.
class SpellHighlighter : public QSyntaxHighlighter {
  public:
    /// Marks nothing until a language is set for which there is a dictionary.
    explicit SpellHighlighter(QTextDocument& document);
    ~SpellHighlighter() override;
    SpellHighlighter(const SpellHighlighter&) = delete;
    SpellHighlighter& operator=(const SpellHighlighter&) = delete;

    /// A code such as "de"; nothing happens if it is the present one.
    void SetLanguage(const QString& code);
    /// The marked word at a position of the document, as a selection.
    [[nodiscard]] std::optional<QTextCursor> MarkedWord(int position) const;
    /// What may have been meant by a selected word, in place of which each is to be put as it is.
    [[nodiscard]] QStringList Suggestions(const QTextCursor& word) const;

  protected:
    void highlightBlock(const QString& text) override;

  private:
    void LoadForText();
    void Loaded();
    void CheckSome();
    void LookUp(QTextBlock& block);

    QTextDocument& mDocument;
    QString mLanguage;
    QString mDictionary;  ///< that is to be loaded when there is a text
    QFutureWatcher<std::shared_ptr<SpellChecker>> mLoading;
    std::shared_ptr<SpellChecker> mChecker;
    QHash<QString, bool> mKnown;  ///< whether a word is correct
    QTimer mPause;
    int mFirstPostponed = 0;  ///< no block before this number waits to be checked
    qsizetype mAllowance;     ///< characters that may still be marked in the present event
};

}  // namespace sorbel
