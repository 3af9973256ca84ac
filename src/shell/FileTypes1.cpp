#include "shell/FileTypes1.h"

namespace sorbel {

namespace FileTypes1 {

namespace {

constexpr const char* KestrumLocaleIdentifier = "org.sorbel.kestrum-locale";

const FileType& Type(size_t index) {
    return pAllFileTypes()[index];
}

}  // namespace

const std::vector<FileType>& pAllFileTypes() {
    static const std::vector<FileType> types = {
        {"Norvane Locale",
         ".nvl",
         "NvLC",
         "Srbl",
         "",
         true,
         "org.sorbel.norvane-locale",
         {"public.data", KestrumLocaleIdentifier}},
        {"Tab Delimited", ".txt", "TEXT", "Srbl", "", true, "", {"public.text"}},
        {"KestrumLocale",
         ".kestrum_locale",
         "NvLc",
         "NVv2",
         "",
         true,
         KestrumLocaleIdentifier,
         {"public.data"}},
        {"Application", ".exe;.app", "", "", "", true, "", {}},
        {"Sorbel Script File",
         ".sorbel_script",
         "TEXT",
         "",
         "text/plain",
         false,
         "org.sorbel.script",
         {"public.text"}},
    };
    return types;
}

const FileType& NorvaneLocale() {
    return Type(0);
}
const FileType& TabDelimited() {
    return Type(1);
}
const FileType& KestrumLocale() {
    return Type(2);
}
const FileType& Application() {
    return Type(3);
}
const FileType& SorbelScript() {
    return Type(4);
}

}  // namespace FileTypes1

void _InitFileTypes() {
    FileType::Register(FileTypes1::pAllFileTypes());
}

}  // namespace sorbel
