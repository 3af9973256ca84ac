#include "editing/InternalChange.h"
#include "editing/MainWindow.h"
#include "journal/Journal.h"
#include "journal/LeftJournal.h"
#include "platform/SpecialFolder.h"
#include "ui/toolkit/Application.h"
#include "ui/toolkit/Dialogs.h"

namespace sorbel {

namespace {

String ExplanationOf(const LeftJournal::Unsaved& unsaved, StringView name) {
    const String quoted = "“" + String(name) + "”";
    const String date = unsaved.Last.LongDate() + ", " + unsaved.Last.ShortTime() + ".";
    String text;
    if (unsaved.Rows == 1)
        text = "A change to " + quoted + " was not saved when Sorbel last ended, on " + date;
    else if (unsaved.Rows == 0)
        text = "Changes to " + quoted + " were not saved when Sorbel last ended, on " + date;
    else
        text = "Changes to " + quoted + " were not saved when Sorbel last ended, " +
               std::to_string(unsaved.Rows) + " in all, the last on " + date;
    return unsaved.FileHasChanged ? text + String(EndOfLine) + "The file has been changed since." : text;
}

}  // namespace

void MainWindow::StartJournal() {
    mJournal = std::make_unique<Journal>(StringSet, mDiskFile, StringSet->FileBytes().front(),
                                         [this](const String& reason) { TellUnprotected(reason); });
}

/// Once in a run for each folder: every further change would say the same.
void MainWindow::TellUnprotected(const String& reason) {
    static String told;
    const String& folder = SpecialFolder::State()->NativePath();
    if (std::exchange(told, folder) != folder)
        App().Desktop().Notify("Unsaved changes are not protected", reason + ".");
}

void MainWindow::SaveSafely(StringView bytes) {
    try {
        mJournal->Save(bytes);
    } catch (const IOException& failure) {
        App().Desktop().Notify(
            "“" + mDiskFile->DisplayName() + "” could not be saved",
            failure.Message() + ". Your changes are kept and can be restored when it is opened again.");
    }
}

/// For a change of the document that no change object makes.
void MainWindow::NoteUnsaved() {
    if (mJournal) mJournal->NoteRest();
}

void MainWindow::OfferRestore() {
    const std::shared_ptr<Window> held = shared_from_this();  // the user may close it instead of an answer
    for (LeftJournal& left : LeftJournal::Of(*mDiskFile)) {
        if (!IsOpen()) return;
        switch (AskWhetherToRestore(left)) {
            case Answer::Restore:
                Restore(left);
                if (mJournal->FlushNow()) left.Remove();  // this window's journal has the changes now
                break;
            case Answer::Discard:
                left.Remove();
                break;
            case Answer::NotNow:
                break;
        }
    }
}

MainWindow::Answer MainWindow::AskWhetherToRestore(const LeftJournal& left) {
    const auto unsaved = left.Compare(StringSet, mJournal->Base());
    if (!unsaved) return Answer::Discard;
    MessageDialog dialog;
    dialog.Message = "Restore unsaved changes?";
    dialog.Explanation = ExplanationOf(*unsaved, mDiskFile->DisplayName());
    dialog.ActionButton.Caption = "Restore";
    dialog.CancelButton.Caption = "Not Now";
    dialog.CancelButton.Visible = true;
    dialog.AlternateActionButton.Caption = "Discard";
    dialog.AlternateActionButton.Visible = true;
    const MessageDialogButton* pressed = dialog.ShowModalWithin(*this);
    if (pressed == &dialog.ActionButton && IsOpen()) return Answer::Restore;
    return pressed == &dialog.AlternateActionButton ? Answer::Discard : Answer::NotNow;
}

/// Onto the document as it is now: it may have gone on while the question was up.
void MainWindow::Restore(const LeftJournal& left) {
    auto unsaved = left.Compare(StringSet, mJournal->Base());
    if (!unsaved) return;
    StringSet->Language = unsaved->Language;
    StringSet->EditedApplication = unsaved->Application;
    {
        const InternalChange guard(IsInternalChange);
        undoManager->Add(std::move(unsaved->Change), true);
    }
    RefreshAfterImport();
}

}  // namespace sorbel
