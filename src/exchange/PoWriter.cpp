#include "exchange/Po.h"
#include "exchange/RowKey.h"
#include "interchange/Escapes.h"

namespace sorbel {

namespace {

/// A text with line breaks takes a line of the file for each of its own, as gettext has it.
void AppendText(StringView keyword, StringView text, String& to) {
    to.append(keyword).append(" \"");
    const size_t firstBreak = text.find('\n');
    if (firstBreak != StringView::npos && firstBreak + 1 < text.size()) {
        to += "\"\n\"";
        for (size_t end = firstBreak; end != StringView::npos && end + 1 < text.size();
             end = text.find('\n')) {
            EscapeCStyle(text.substr(0, end + 1), to);
            to += "\"\n\"";
            text.remove_prefix(end + 1);
        }
    }
    EscapeCStyle(text, to);
    to += "\"\n";
}

void AppendHeader(const Rows& rows, StringView name, String& to) {
    const LocalizedStringSet& set = rows.Set();
    const String date = set.DateGenerated ? Left(set.DateGenerated->SQLDateTime(), 16) + "+0000" : "";
    const String header =
        "Project-Id-Version: " + String(name) + "\nPO-Revision-Date: " + date +
        "\nLast-Translator: \nLanguage-Team: \nLanguage: " + (IsXmlText(set.Language) ? set.Language : "") +
        "\nMIME-Version: 1.0\nContent-Type: text/plain; charset=UTF-8\n"
        "Content-Transfer-Encoding: 8bit\nX-Generator: sorbel-exchange\n";
    AppendText("msgid", "", to);
    AppendText("msgstr", header, to);
}

}  // namespace

void WritePo(const Rows& rows, StringView name, bool isTemplate, Output& output) {
    AppendHeader(rows, name, output.Text());
    String key;
    rows.ForEach([&](const Row& row) {
        String& text = output.Text();
        const StringView original = row.Value.Original;
        RowKey(row.Identifier, row.Platform, key);
        text.append("\n#. Platform: ").append(PlatformWord(row.Platform)).append("\n");
        if (original.empty()) text += "#. (empty default text)\n";
        AppendText("msgctxt", key, text);
        AppendText("msgid", original.empty() ? StringView(key) : original, text);
        AppendText("msgstr", isTemplate ? StringView() : row.Value.Localized.View(), text);
    });
}

}  // namespace sorbel
