#pragma once

#include <cstdint>
#include <memory>

#include "stringset/LocalizedStringSet.h"

namespace sorbel::bench {

/// A made-up document of so many strings, a fifth of them untranslated, like those of generate.py.
std::shared_ptr<LocalizedStringSet> MakeDocument(int64_t count);

/// Adds an earlier version in which one string in twenty reads differently.
void AddVersion(LocalizedStringSet& document);

/// Files for a benchmark, gone with it: the document with a version, and its strings with other translations
/// to be imported.
class BenchFiles {
  public:
    explicit BenchFiles(int64_t count);
    ~BenchFiles();
    BenchFiles(const BenchFiles&) = delete;
    BenchFiles& operator=(const BenchFiles&) = delete;

    /// The name to which ".versions.kestrum_locale" and the like are added.
    [[nodiscard]] String Base() const { return mFolder + "/document"; }

  private:
    String mFolder;
};

}  // namespace sorbel::bench
