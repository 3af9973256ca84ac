#include <algorithm>
#include <filesystem>
#include <new>

#include "exchange/Commands.h"
#include "exchange/ExchangeError.h"
#include "exchange/Output.h"
#include "platform/FileSizeSignal.h"
#include "platform/SpecialFolder.h"
#include "shell/FileTypes1.h"

namespace {

using namespace sorbel;

/// The data folder, which lies as seen from the program, and where the desktop program keeps its journals.
void SetFolders() {
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    SpecialFolder::SetResources((program.parent_path().parent_path() / "share/sorbel/Resources").native());
    SpecialFolder::SetState(SpecialFolder::UsualState());
}

String Help() {
    String text =
        "Carries locale files into the formats of other translation tools, and back, and checks them.\n\n"
        "usage:\n";
    for (const Command& command : Commands()) {
        String line = "  sorbel-exchange " + String(command.Name) + " " + String(command.Operands);
        line.resize(std::max(line.size() + 2, size_t{48}), ' ');
        text += line + String(command.Summary) + "\n";
    }
    return text +
           "  sorbel-exchange --help | --version\n\n"
           "  -o, --output OUT            another locale file to write instead of LOCALE\n"
           "  --to, --from FORMAT         po, pot, xlf, xliff, tsv or csv, whatever the name;\n"
           "                              OUT or IN may then be \"-\"\n"
           "  --source-language LANGUAGE  of the default texts in XLIFF; en if not told\n"
           "  --lossy                     leave out rows that the format can't hold\n"
           "  --strict                    leave out rows whose default text differs\n"
           "  --format text|json          of check and stats\n"
           "  --rule, --no-rule NAME      untranslated, mnemonic, placeholder, edges, ending, "
           "doubled-blank,\n"
           "                              newline, inconsistent; duplicate-mnemonic, same: only if named\n"
           "  --longest FACTOR            rule length: at most so many times the default text\n\n"
           "Exit status: 0 done, 1 findings of check, 2 wrong use, 3 a file that can't be read,\n"
           "written or understood.\n";
}

int RunCommand(const std::vector<String>& words) {
    const auto found = std::ranges::find(Commands(), StringView(words[0]), &Command::Name);
    if (found == Commands().end()) throw WrongUse(words[0] + ": no such command");
    const Arguments arguments(words, found->Options);
    const size_t count = arguments.Operands().size();
    if (count < found->LeastOperands || count > found->MostOperands)
        throw WrongUse("usage: sorbel-exchange " + words[0] + " " + String(found->Operands));
    return found->Run(arguments);
}

int Run(const std::vector<String>& words) {
    if (words.empty()) throw WrongUse("no command");
    if (words[0] != "--help" && words[0] != "--version") return RunCommand(words);
    if (words.size() > 1) throw WrongUse(words[1] + ": nothing may follow " + words[0]);
    Print(words[0] == "--help" ? Help() : "sorbel-exchange " SORBEL_VERSION "\n");
    return Done;
}

int Fail(const String& message, ExitStatus status) {
    Tell("sorbel-exchange: " + message + "\n");
    return status;
}

}  // namespace

int main(int argc, char** argv) {
    SurviveFileSizeLimit();
    _InitFileTypes();
    SetFolders();
    try {
        return Run({argv + 1, argv + argc});
    } catch (const WrongUse& wrong) {
        return Fail(wrong.Message() + "\nTry sorbel-exchange --help.", WrongUseStatus);
    } catch (const RuntimeException& failure) {
        return Fail(failure.Message(), BadFile);
    } catch (const std::bad_alloc&) {
        return Fail("not enough memory", BadFile);
    }
}
