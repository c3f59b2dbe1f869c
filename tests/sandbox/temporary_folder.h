#pragma once

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

/// A folder that goes away with all it holds.
class TemporaryFolder {
public:
    TemporaryFolder()
    {
        std::string name = (std::filesystem::temp_directory_path() / "vantiro-sandbox-XXXXXX").string();
        if (::mkdtemp(name.data()) == nullptr) {
            throw std::runtime_error("no temporary folder");
        }
        folder = name;
    }
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] std::filesystem::path file(const std::string& name) const
    {
        return folder / name;
    }

    [[nodiscard]] std::filesystem::path write(const std::string& name, const std::string& text) const
    {
        std::ofstream(file(name)) << text;
        return file(name);
    }

private:
    std::filesystem::path folder;
};
