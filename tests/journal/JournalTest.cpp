#include "journal/Journal.h"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <random>

#include "editing/changes/ImportChange.h"
#include "editing/changes/StringSetChange.h"
#include "editing/undo/UndoManager.h"
#include "journal/LeftJournal.h"
#include "journal/SaveRecord.h"
#include "platform/Clock.h"
#include "platform/SpecialFolder.h"
#include "shell/FileTypes1.h"
#include "support/TemporaryFolder.h"

namespace sorbel {
namespace {

namespace fs = std::filesystem;

/// A document that is edited with a journal, and the ways to look at that journal as a later start would.
class JournalTest : public testing::Test {
  protected:
    JournalTest() {
        Clock::Install(&Time);
        _InitFileTypes();
        SpecialFolder::SetState(Folder / "state");
        LocalizedStringSet first;
        first.Language = "de";
        for (const char* name : {"kOpen", "kQuit", "kSave", "kHelp"})
            first.AddEntry(PlatformAny, name, String("Default of ") + name, String("Text of ") + name);
        first.AddEntry(PlatformWindows, "kQuit", "E&xit", "");
        first.History.push_back(first.Clone());
        first.WriteFile(*File);
        Open();
    }
    ~JournalTest() override { Clock::Install(nullptr); }

    void Open() {
        Document = std::make_shared<LocalizedStringSet>();
        ASSERT_TRUE(Document->ReadFile(*File));
        Undo = std::make_unique<UndoManager>();
        Log = std::make_unique<Journal>(Document, File, Document->FileBytes().front(),
                                        [this](const String& reason) { Failures.push_back(reason); });
    }
    void Type(StringView identifier, int64_t platform, StringView text) {
        Time.Advance(60);
        Undo->Add(std::make_unique<StringSetChange>(Document, identifier, platform, text, ""), true);
    }
    std::unique_ptr<ImportChange> Import() const {
        auto change = std::make_unique<ImportChange>();
        change->Document = change->StringSet = Document;
        return change;
    }
    void AddTo(ImportChange& import, StringView identifier, int64_t platform, StringView text,
               StringView original) const {
        import.Changes.push_back(
            std::make_unique<StringSetChange>(Document, identifier, platform, text, original));
    }

    /// What a start after a sudden death finds: the journals as they are now, and the file.
    struct Later {
        size_t Journals = 0;
        std::shared_ptr<LocalizedStringSet> Document = std::make_shared<LocalizedStringSet>();
        std::optional<LeftJournal::Unsaved> Unsaved;
    };
    Later Die() {
        fs::remove_all(Folder / "copy");
        if (fs::exists(Folder / "state")) fs::copy(Folder / "state", Folder / "copy");
        return Look("copy");
    }
    Later Look(const std::string& state) {
        SpecialFolder::SetState(Folder / state);
        Later later;
        const std::vector<LeftJournal> journals = LeftJournal::Of(*File);
        later.Journals = journals.size();
        EXPECT_TRUE(later.Document->ReadFile(*File));
        const FileState file = FileState::Of(later.Document->FileBytes().front());
        if (!journals.empty()) later.Unsaved = journals.front().Compare(later.Document, file);
        SpecialFolder::SetState(Folder / "state");
        return later;
    }
    static String Restored(Later& later) {
        if (!later.Unsaved) return later.Document->ToBytes();
        later.Unsaved->Change->Perform();
        later.Document->Language = later.Unsaved->Language;
        later.Document->EditedApplication = later.Unsaved->Application;
        return later.Document->ToBytes();
    }

    ManualClock Time;
    TemporaryFolder Folder;
    std::shared_ptr<FolderItem> File = std::make_shared<FolderItem>(Folder / "strings.kestrum_locale");
    std::shared_ptr<LocalizedStringSet> Document;
    std::unique_ptr<UndoManager> Undo;
    std::vector<String> Failures;
    std::unique_ptr<Journal> Log;
};

TEST_F(JournalTest, CountsRowsThatDifferAndTellsWhen) {
    Time.SetLocalSeconds(int64_t{20000} * 86400 + 3600);
    EXPECT_FALSE(fs::exists(Folder / "state")) << "nothing to keep";
    Type("kOpen", PlatformAny, "Auf");
    Type("kOpen", PlatformAny, "Auf machen");
    Type("kQuit", PlatformLinux, "Ende");
    Type("kSave", PlatformAny, "X");
    Type("kSave", PlatformAny, "Text of kSave");
    Later later = Die();
    ASSERT_TRUE(later.Unsaved);
    EXPECT_EQ(later.Unsaved->Rows, 2);
    EXPECT_EQ(later.Unsaved->Last.SQLDateTime(), "2024-10-04 01:00:00");
    EXPECT_FALSE(later.Unsaved->FileHasChanged);
    EXPECT_EQ(later.Unsaved->Change->Description(), "Restore");
    EXPECT_EQ(Restored(later), Document->ToBytes());
    later.Unsaved->Change->Undo();
    EXPECT_EQ(later.Document->Entries.Find("kOpen")->Find(PlatformAny)->Localized.View(), "Text of kOpen");
    EXPECT_EQ(fs::status(Folder / "state").permissions(), fs::perms::owner_all);
}

TEST_F(JournalTest, IsEmptiedWhenNothingIsLeft) {
    Type("kOpen", PlatformAny, "Auf");
    EXPECT_TRUE(Die().Unsaved);
    Undo->Undo();
    EXPECT_EQ(Die().Journals, 0u);
    Undo->Redo();
    EXPECT_TRUE(Die().Unsaved);
    Log->Save(Document->ToBytes());
    EXPECT_EQ(Die().Journals, 0u);
    Undo->Undo();
    Later later = Die();
    ASSERT_TRUE(later.Unsaved);
    EXPECT_EQ(Restored(later), Document->ToBytes());
    Log->Discard();
    Log.reset();
    EXPECT_TRUE(fs::is_empty(Folder / "state"));
}

TEST_F(JournalTest, OutlivesTheWindowThatLeavesItAndNoLonger) {
    Type("kOpen", PlatformAny, "Auf");
    EXPECT_EQ(LeftJournal::All().size(), 0u) << "somebody has it";
    const String before = Document->ToBytes();
    Log.reset();
    Later later = Look("state");
    EXPECT_EQ(Restored(later), before);
    EXPECT_EQ(FilesWithUnsavedChanges().size(), 1u);
    Time.SetLocalSeconds(Time.LocalSeconds() + int64_t{91} * 86400);
    RemoveForgottenJournals();
    EXPECT_EQ(LeftJournal::All().size(), 1u) << "the file is there";
    fs::remove(Folder / "strings.kestrum_locale");
    RemoveForgottenJournals();
    EXPECT_EQ(LeftJournal::All().size(), 0u);
}

TEST_F(JournalTest, MergesIntoAFileThatOthersHaveChanged) {
    Type("kOpen", PlatformAny, "Auf");
    Type("kQuit", PlatformLinux, "Ende");
    auto import = Import();
    AddTo(*import, "kSave", PlatformAny, "Sichern", "New default");
    import->Histories.push_back(Document->Clone());
    Undo->Add(std::move(import), true);

    LocalizedStringSet other;
    ASSERT_TRUE(other.ReadFile(*File));
    other.AddEntry(PlatformAny, "kOpen", "Their default", "Theirs");
    other.AddEntry(PlatformAny, "kHelp", "Their default", "Theirs");
    other.AddEntry(PlatformLinux, "kQuit", "Their default", "");
    other.WriteFile(*File);
    Later later = Die();
    ASSERT_TRUE(later.Unsaved);
    EXPECT_TRUE(later.Unsaved->FileHasChanged);
    EXPECT_EQ(later.Unsaved->Rows, 3);
    (void)Restored(later);
    const auto values = [&](StringView identifier, int64_t platform) {
        const EntryValue& value = *later.Document->Entries.Find(identifier)->Find(platform);
        return String(value.Original.View()) + "|" + String(value.Localized.View());
    };
    EXPECT_EQ(values("kOpen", PlatformAny), "Their default|Auf");
    EXPECT_EQ(values("kQuit", PlatformLinux), "Their default|Ende");
    EXPECT_EQ(values("kSave", PlatformAny), "New default|Sichern");
    EXPECT_EQ(values("kHelp", PlatformAny), "Their default|Theirs");
    EXPECT_EQ(later.Document->History.size(), 2u);
}

TEST_F(JournalTest, CompletesAnInterruptedSaveAndNoOther) {
    Type("kOpen", PlatformAny, String(9000, 'x'));
    const String before(ReadContents(*File)->View()), after = Document->ToBytes();
    // What a journal holds while the file is being written.
    JournalFile journal;
    RecordWriter base;
    base.Put(FileState::Of(before));
    base.Put(uint64_t{1});
    base.PutRest(File->NativePath());
    Log->Discard();
    Log.reset();
    journal.Append(RecordType::Base, base.Bytes());
    const BeforeSave told(*File, after);
    journal.AppendNow(RecordType::Save, SaveRecord::Make(told, FileState::Of(after)),
                      after.substr(told.Offset()));
    fs::copy(Folder / "state", Folder / "copy");
    journal.Remove();
    fs::remove_all(Folder / "state");
    fs::rename(Folder / "copy", Folder / "state");

    EXPECT_FALSE(CompleteInterruptedSave(*File)) << "it had not begun";
    const String half = after.substr(0, BeforeSave::BlockSize);
    WriteContents(*File, half);
    EXPECT_EQ(FilesWithUnsavedChanges().size(), 1u);
    WriteContents(*File, half + "theirs");
    EXPECT_FALSE(CompleteInterruptedSave(*File));
    EXPECT_EQ(ReadContents(*File)->View(), half + "theirs");
    WriteContents(*File, half);
    EXPECT_TRUE(CompleteInterruptedSave(*File));
    EXPECT_EQ(ReadContents(*File)->View(), after);
    EXPECT_EQ(FilesWithUnsavedChanges().size(), 0u);
}

TEST_F(JournalTest, WorksOnWhereTheFolderCannotBeUsed) {
    SpecialFolder::SetState("/dev/null/state");
    Open();
    Type("kOpen", PlatformAny, "Auf");
    Log->Save(Document->ToBytes());
    EXPECT_FALSE(Failures.empty());
    EXPECT_EQ(ReadContents(*File)->View(), Document->ToBytes());
}

// --- Everything at random ---

class RandomWork : public JournalTest {
  protected:
    String AnyText() { return String(1 + mRandom() % 3, static_cast<char>('a' + mRandom() % 4)); }
    String AnyName() {
        return String("k") + String(std::array{"Open", "quit", "SAVE", "Help"}[mRandom() % 4]);
    }
    int64_t AnyPlatform() { return static_cast<int64_t>(mRandom() % 4); }

    void ImportAnything() {
        auto import = Import();
        for (auto count = mRandom() % 6; count > 0; --count)
            AddTo(*import, AnyName(), AnyPlatform(), AnyText(), mRandom() % 3 == 0 ? AnyText() : "");
        if (mRandom() % 2 == 0)
            import->StringSet = nullptr;
        else if (mRandom() % 4 == 0)
            import->Histories.push_back(std::make_shared<LocalizedStringSet>());
        else
            import->Histories.push_back(Document->Clone());
        Undo->Add(std::move(import), true);
    }
    void DoAnything() {
        switch (mRandom() % 12) {
            case 0:
            case 1:
                return ImportAnything();
            case 2:
            case 3:
            case 4:
                return Undo->Undo();
            case 5:
            case 6:
                return Undo->Redo();
            case 7:
                Document->Language = AnyText();
                return Log->NoteRest();
            case 8:
                Document->EditedApplication = std::make_shared<FolderItem>("/opt/" + AnyText());
                return Log->NoteRest();
            case 9:
                if (mRandom() % 3 == 0) Log->Save(Document->ToBytes());
                return;
            default:
                return Type(AnyName(), AnyPlatform(), AnyText());
        }
    }

    std::mt19937 mRandom{7};
};

TEST_F(RandomWork, IsThereAgainAfterEveryStep) {
    for (int run = 0; run < 20; ++run) {
        for (int step = 0; step < 25; ++step) {
            DoAnything();
            Later later = Die();
            ASSERT_LE(later.Journals, 1u);
            EXPECT_FALSE(later.Unsaved && later.Unsaved->FileHasChanged);
            ASSERT_TRUE(Restored(later) == Document->ToBytes()) << "run " << run << ", step " << step;
        }
        Log->Discard();
        Open();
    }
    EXPECT_TRUE(Failures.empty());
}

}  // namespace
}  // namespace sorbel
