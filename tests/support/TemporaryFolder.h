#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

namespace sorbel {

/// An empty folder for one test, removed with all that is in it.
class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::string path = (std::filesystem::temp_directory_path() / "sorbel-XXXXXX").native();
        if (mkdtemp(path.data())) mPath = std::filesystem::canonical(path).native();
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        if (!mPath.empty()) std::filesystem::remove_all(mPath, ignored);
    }
    [[nodiscard]] std::string operator/(const std::string& name) const { return mPath + "/" + name; }
    [[nodiscard]] const std::string& Path() const { return mPath; }

  private:
    std::string mPath;
};

}  // namespace sorbel
