#include "tests/fuzz/corpus.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace fuzz {

namespace {

    namespace files = std::filesystem;

    [[nodiscard]] std::string contentOf(const files::path& path)
    {
        std::ifstream file(path, std::ios::binary);
        return { std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>() };
    }

    void readFolder(const files::path& root, const std::string& kind, std::vector<KeptInput>& inputs)
    {
        for (const files::directory_entry& folder : files::directory_iterator(root / kind)) {
            const Target& target = targetOf(folder.path().filename().string());
            for (const files::directory_entry& file : files::directory_iterator(folder.path())) {
                const std::string name = files::relative(file.path(), root).generic_string();
                inputs.push_back({ &target, name, contentOf(file.path()) });
            }
        }
    }

    [[nodiscard]] std::vector<KeptInput> readAll()
    {
        const files::path root(VANTIRO_FUZZ_FOLDER);
        std::vector<KeptInput> inputs;
        for (const char* const kind : { "seeds", "regressions" }) {
            readFolder(root, kind, inputs);
        }
        std::ranges::sort(inputs, {}, &KeptInput::name);
        return inputs;
    }

} // namespace

const std::vector<KeptInput>& keptInputs()
{
    static const std::vector<KeptInput> all = readAll();
    return all;
}

const KeptInput& keptInput(std::string_view name)
{
    const auto found = std::ranges::find(keptInputs(), name, &KeptInput::name);
    if (found == keptInputs().end()) {
        throw std::invalid_argument("there is no input " + std::string(name));
    }
    return *found;
}

} // namespace fuzz
