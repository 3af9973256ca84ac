#pragma once

#include <memory>
#include <unordered_map>
#include <vector>

#include "journal/EntryRecord.h"
#include "journal/Records.h"
#include "stringset/LocalizedStringSet.h"

namespace sorbel {

/// Makes the changes of a journal once more, on a copy of a document.
class Replay {
  public:
    /// `sameFile`: the document is what the journal begins with, so that its versions are those of the
    /// journal.
    Replay(const LocalizedStringSet& document, bool sameFile);

    /// Makes the changes up to the end or to a record that makes no sense.
    void Run(const std::vector<Record>& records);

    struct Row {
        SharedText Identifier;
        int64_t Platform;
    };
    /// The rows that were set, each once.
    [[nodiscard]] const std::vector<Row>& Rows() const { return mRows; }
    /// The document with the changes.
    [[nodiscard]] const LocalizedStringSet& Result() const { return *mResult; }

  private:
    struct Step {
        size_t Row;
        SharedText Before, After;  // translations
        SharedText Default;
        bool ChangesDefault;
    };
    struct Batch {
        std::vector<Step> Steps;
        std::unordered_map<size_t, size_t> FirstOfRow;  // a row may be in it more than once
        bool IsRun = true;
    };

    void Run(const Record& record);
    void TakeBase(RecordReader record);
    void SetEntries(RecordReader record, Batch* batch);
    Step Set(const EntryRecord& entry);
    void Turn(uint64_t index);
    void Put(const Step& step, const SharedText& localized);
    void AddVersion(StringView bytes);
    void TakeVersions(RecordReader record);
    void AddVersionsOf(const std::vector<uint64_t>& numbers);
    size_t IndexOfRow(StringView identifier, int64_t platform);

    const LocalizedStringSet& mDocument;
    bool mSameFile;
    std::shared_ptr<LocalizedStringSet> mResult;
    std::vector<Row> mRows;
    Dictionary<SharedText, std::vector<size_t>> mRowsByIdentifier;
    std::vector<Batch> mBatches;
    uint64_t mBaseVersions = 0;
    std::vector<std::shared_ptr<LocalizedStringSet>> mVersions;  // told in the journal
};

}  // namespace sorbel
