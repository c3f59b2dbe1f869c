#include "tests/fuzz/judge.h"

#include <typeinfo>

namespace fuzz {

namespace {

    [[nodiscard]] std::vector<std::size_t> seams(std::string_view input)
    {
        constexpr std::string_view signs = "<{[\"&,";
        std::vector<std::size_t> found;
        for (std::size_t at = input.find_first_of(signs); at != std::string_view::npos;
             at = input.find_first_of(signs, at + 1)) {
            found.push_back(at);
        }
        return found;
    }

    [[nodiscard]] double secondsOf(const Target& target, std::string_view input)
    {
        static_cast<void>(takeLongest());
        static_cast<void>(takeMade());
        try {
            target.read(input);
        } catch (const BrokenPromise&) {
            throw;
        } catch (const std::exception& stray) {
            throw BrokenPromise(std::string("an exception that nobody was told of: ") + typeid(stray).name() + ": "
                                + stray.what());
        } catch (...) {
            throw BrokenPromise("an exception that is none of the standard's");
        }
        return takeLongest();
    }

} // namespace

void judge(const Target& target, std::string_view input)
{
    // What else the machine does costs processor time, too, but not at every attempt.
    constexpr int attempts = 3;
    double seconds = 0.0;
    std::size_t bytes = 0;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        seconds = secondsOf(target, input);
        bytes = input.size() + takeMade();
        if (seconds <= patience(bytes)) {
            return;
        }
    }
    throw BrokenPromise(std::to_string(seconds) + " s for " + std::to_string(bytes) + " bytes");
}

double patience(std::size_t bytes)
{
    constexpr double mebibyte = 1024.0 * 1024.0;
    constexpr double perMebibyte = 0.25;
    constexpr double costOfSanitizers = 8.0; // Clang's, on a core that has other things to do
    constexpr double noise = 0.2;
    return noise + costOfSanitizers * perMebibyte * static_cast<double>(bytes) / mebibyte;
}

std::string swollen(std::string_view input, std::size_t bytes, std::size_t choice)
{
    const std::vector<std::size_t> ends = seams(input);
    if (ends.size() < 2 || input.size() >= bytes) {
        return std::string(input);
    }
    const std::size_t first = choice % (ends.size() - 1);
    const std::size_t last = first + 1 + choice / ends.size() % (ends.size() - 1 - first);
    const std::string_view piece = input.substr(ends[first], ends[last] - ends[first]);
    std::string text(input.substr(0, ends[first]));
    text.reserve(bytes + piece.size() + input.size());
    while (text.size() < bytes) {
        text += piece;
    }
    text += input.substr(ends[first]);
    return text;
}

} // namespace fuzz
