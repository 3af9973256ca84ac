#pragma once

#include <png.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <vector>

#include "platform/SpecialFolder.h"

namespace sorbel::test {

/// A folder of icon files in place of the program's. The program looks for its folder once, so all tests
/// share this one and use names of their own.
class IconFiles {
  public:
    static std::filesystem::path Path(const String& name) {
        static const IconFiles files;
        return files.mFolder / name;
    }
    /// Opaque red pixels.
    static void WritePng(const String& name, unsigned width, unsigned height) {
        png_image image{};
        image.version = PNG_IMAGE_VERSION;
        image.width = width;
        image.height = height;
        image.format = PNG_FORMAT_RGB;
        std::vector<uint8_t> pixels;
        for (unsigned pixel = 0; pixel < width * height; ++pixel)
            pixels.insert(pixels.end(), {255, 0, 0});
        png_image_write_to_file(&image, Path(name).c_str(), 0, pixels.data(), 0, nullptr);
    }

  private:
    IconFiles()
        : mFolder(std::filesystem::temp_directory_path() / ("sorbel-icons-" + std::to_string(getpid()))) {
        std::filesystem::create_directory(mFolder);
        SpecialFolder::SetResources(mFolder.native());
    }
    ~IconFiles() { std::filesystem::remove_all(mFolder); }

    std::filesystem::path mFolder;
};

}  // namespace sorbel::test
