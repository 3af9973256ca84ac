#pragma once

#include <QFuture>
#include <QStringList>
#include <memory>
#include <vector>

class Hunspell;

namespace sorbel {

/// The words of one language, from a dictionary of the system.
class SpellChecker {
  public:
    /// The dictionary at a path without its extension. Takes as long as its file is large.
    explicit SpellChecker(const QString& path);
    ~SpellChecker();
    SpellChecker(const SpellChecker&) = delete;
    SpellChecker& operator=(const SpellChecker&) = delete;

    /// A word as `WordsIn` gives it.
    [[nodiscard]] bool IsCorrect(const QString& word) const;
    /// The best first; none if the dictionary knows nothing like it.
    [[nodiscard]] QStringList Suggestions(const QString& word) const;

  private:
    [[nodiscard]] std::string Encoded(const QString& word) const;

    std::unique_ptr<Hunspell> mHunspell;
    QByteArray mEncoding;
};

/// Where dictionaries lie: the folders in the environment variable DICPATH, then those of the system.
[[nodiscard]] QStringList DictionaryFolders();

/// Path without extension of the dictionary for a language code such as "de", "de-AT" or "deu": that of the
/// code itself, else of the language's main country, else of any country. Empty if there is none.
[[nodiscard]] QString FindDictionary(const QString& code, const QStringList& folders);

/// Reads a dictionary beside the event loop. It stays for as long as the program runs, for all windows.
[[nodiscard]] QFuture<std::shared_ptr<SpellChecker>> LoadSpellChecker(const QString& path);

/// A word in a text and what is to be checked of it: without the mark of a mnemonic.
struct Word {
    qsizetype Start;
    qsizetype Length;
    QString Text;
};

/// The words of a line that can be checked: none in addresses and placeholders, none with digits.
[[nodiscard]] std::vector<Word> WordsIn(const QString& line);

}  // namespace sorbel
