#include "qt/SpellChecker.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QLocale>
#include <QPromise>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QStringDecoder>
#include <QStringEncoder>
#include <QThreadPool>
#include <algorithm>
#include <hunspell.hxx>

namespace sorbel {

namespace {

QByteArray EncodingName(const char* name) {
    return QByteArray(name).replace("microsoft-cp", "windows-");
}

/// Without extension; letter case is ignored, since codes are written in every way.
QString DictionaryAt(const QDir& folder, const QString& pattern) {
    for (const QString& file :
         folder.entryList({pattern + QStringLiteral(".dic")}, QDir::Files, QDir::Name)) {
        const QString path = folder.filePath(file.chopped(4));
        if (QFile::exists(path + QStringLiteral(".aff"))) return path;
    }
    return {};
}

}  // namespace

SpellChecker::SpellChecker(const QString& path)
    : mHunspell(std::make_unique<Hunspell>(QFile::encodeName(path + QStringLiteral(".aff")).constData(),
                                           QFile::encodeName(path + QStringLiteral(".dic")).constData())),
      mEncoding(EncodingName(mHunspell->get_dic_encoding())) {}

SpellChecker::~SpellChecker() = default;

/// Empty for a word with characters that the dictionary cannot hold.
std::string SpellChecker::Encoded(const QString& word) const {
    QStringEncoder encoder(mEncoding.constData());
    QStringDecoder decoder(mEncoding.constData());
    if (!encoder.isValid()) return {};
    const QByteArray bytes = encoder.encode(word);
    const QString back = decoder.decode(bytes);
    return back == word ? bytes.toStdString() : std::string();
}

bool SpellChecker::IsCorrect(const QString& word) const {
    const std::string bytes = Encoded(word);
    return !bytes.empty() && mHunspell->spell(bytes);
}

QStringList SpellChecker::Suggestions(const QString& word) const {
    const std::string bytes = Encoded(word);
    if (bytes.empty()) return {};
    QStringDecoder decoder(mEncoding.constData());
    QStringList words;
    for (const std::string& suggestion : mHunspell->suggest(bytes))
        words += QString(decoder.decode(QByteArray::fromStdString(suggestion)));
    return words;
}

QStringList DictionaryFolders() {
    QStringList folders = qEnvironmentVariable("DICPATH").split(QDir::listSeparator(), Qt::SkipEmptyParts);
    for (const auto& name :
         {QStringLiteral("hunspell"), QStringLiteral("myspell"), QStringLiteral("myspell/dicts")})
        folders += QStandardPaths::locateAll(QStandardPaths::GenericDataLocation, name,
                                             QStandardPaths::LocateDirectory);
    return folders;
}

QString FindDictionary(const QString& code, const QStringList& folders) {
    static const QRegularExpression form(QStringLiteral("^[A-Za-z]+([_-][A-Za-z0-9]+)*$"));
    if (!form.match(code).hasMatch()) return {};
    const QString name = QString(code).replace(u'-', u'_');
    const QString main = QLocale(name.section(u'_', 0, 0)).name();  // "C" for an unknown language
    const QString language = main == u"C" ? name.section(u'_', 0, 0) : main.section(u'_', 0, 0);
    for (const QString& pattern : {name, main, language, language + QStringLiteral("_*")})
        for (const QString& folder : folders)
            if (const QString path = DictionaryAt(QDir(folder), pattern); !path.isEmpty()) return path;
    return {};
}

QFuture<std::shared_ptr<SpellChecker>> LoadSpellChecker(const QString& path) {
    static QHash<QString, QFuture<std::shared_ptr<SpellChecker>>> loaded;
    auto& future = loaded[path];
    if (future.isValid()) return future;
    const auto promise = std::make_shared<QPromise<std::shared_ptr<SpellChecker>>>();
    future = promise->future();
    promise->start();
    QThreadPool::globalInstance()->start([promise, path] {
        promise->addResult(std::make_shared<SpellChecker>(path));
        promise->finish();
    });
    return future;
}

/// What is to be passed over comes before words, so that a word inside it is none. An apostrophe or the mark
/// of a mnemonic belongs to a word only between letters; "&&" is a character that stands for itself.
std::vector<Word> WordsIn(const QString& line) {
    static const QRegularExpression parts(
        QStringLiteral(R"((?:[A-Za-z][A-Za-z0-9+.-]*://|www\.)\S+|[\p{L}\p{N}._+-]+@[\p{L}\p{N}.-]+|)"
                       R"(%(?:\d+\$)?[-+ #0-9.]*(?:hh|h|ll|l|q|z)?[A-Za-z@]\b|\{[^{}\s]*\}|)"
                       R"(([\p{L}\p{N}_](?:[\p{L}\p{M}\p{N}_\x{AD}\x{200C}\x{200D}]|)"
                       R"((?<!&)&(?=\p{L})|['\x{2019}](?=\p{L}))*))"));
    std::vector<Word> words;
    for (auto found = parts.globalMatch(line); found.hasNext();) {
        const QRegularExpressionMatch match = found.next();
        QString text = match.captured(1).remove(u'&').remove(QChar(0xAD)).replace(QChar(0x2019), u'\'');
        const auto isNoLetter = [](QChar unit) {
            return unit.isDigit() || unit == u'_';
        };
        if (text.isEmpty() || std::ranges::any_of(text, isNoLetter)) continue;
        words.push_back({match.capturedStart(1), match.capturedLength(1), std::move(text)});
    }
    return words;
}

}  // namespace sorbel
