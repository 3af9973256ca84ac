#include "qt/Text.h"

#include <QFile>

namespace sorbel {

namespace {

constexpr char16_t BadByteBase = 0xDC00;  // plus 0x80 to 0xFF

/// Code points that a text document takes for the end of a paragraph.
bool EndsLine(int32_t codePoint) {
    return codePoint == '\n' || codePoint == '\r' || codePoint == 0x2029 || codePoint == 0xFDD0 ||
           codePoint == 0xFDD1;
}

}  // namespace

QString ToQt(StringView text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

void EditableWalk::Step(QString* shown) {
    const StringView rest = mText.substr(mBytes);
    const Character head = FirstCharacter(rest);
    mBytes += rest.starts_with("\r\n") ? 2 : head.Bytes.size();
    mShown += head.CodePoint > 0xFFFF ? 2 : 1;
    if (!shown) return;
    if (EndsLine(head.CodePoint))
        *shown += u'\n';
    else if (head.CodePoint < 0)
        *shown += QChar(static_cast<char16_t>(BadByteBase + static_cast<unsigned char>(head.Bytes[0])));
    else
        *shown += QChar::fromUcs4(static_cast<char32_t>(head.CodePoint));
}

QString ToEditable(StringView text) {
    QString shown;
    shown.reserve(static_cast<qsizetype>(text.size()));
    for (EditableWalk walk(text); !walk.AtEnd();)
        walk.Step(&shown);
    return shown;
}

String FromQt(QStringView text) {
    String bytes;
    bytes.reserve(static_cast<size_t>(text.size()));
    for (qsizetype at = 0; at < text.size(); ++at) {
        const QChar unit = text[at];
        if (unit.isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate())
            bytes += Chr(static_cast<int32_t>(QChar::surrogateToUcs4(unit, text[++at])));
        else if (unit.unicode() >= BadByteBase + 0x80 && unit.unicode() <= BadByteBase + 0xFF)
            bytes += static_cast<char>(unit.unicode() - BadByteBase);
        else
            bytes += Chr(unit.isSurrogate() ? 0xFFFD : unit.unicode());
    }
    return bytes;
}

std::shared_ptr<FolderItem> FileFromQt(const QString& path) {
    if (path.isEmpty()) return nullptr;
    return std::make_shared<FolderItem>(QFile::encodeName(path).toStdString());
}

}  // namespace sorbel
