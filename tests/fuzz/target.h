#pragma once

#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

/// Readers of text from outside, each let loose on whatever a fuzzer or a folder of seeds holds. What a reader makes of
/// a text is held against a reading by other means, so that a text which is taken must really say what was taken from
/// it. None of this needs GoogleTest: the same functions run under libFuzzer and in the suite.
namespace fuzz {

/// What a reader was held to and did not keep.
class BrokenPromise : public std::logic_error {
public:
    using std::logic_error::logic_error;
};

/// Throws `BrokenPromise` of that text unless it is kept.
void require(bool kept, const std::string& promise);

/// Runs the call of a reader. Its time alone counts as that of the reading: what a target does to check it is not the
/// product's. Each call reads the input once. Not nested.
void timed(const std::function<void()>& call);
/// Tells of a text that the last call has made of the input, in bytes: a print form is many times as long as the slip
/// that asks for it, and takes time by its own length.
void made(std::size_t bytes);
/// The most of that since the last question.
[[nodiscard]] std::size_t takeMade();
/// Seconds of the processor that the longest of the calls since the last question has taken.
[[nodiscard]] double takeLongest();

/// One reader. A plain value.
struct Target {
    std::string_view name; // also that of its folder of seeds
    /// Reads the input. Returns when the outcome was a value that the input really holds, or a refusal of a class that
    /// the reader tells of; throws `BrokenPromise`, or what the reader has thrown, when it was neither. [cheque-thread]
    void (*read)(std::string_view input);
};

/// All of them.
[[nodiscard]] const std::vector<Target>& targets();
/// The one of that name; throws `std::invalid_argument` when there is none.
[[nodiscard]] const Target& targetOf(std::string_view name);

// In the order of the list.
void readExchange(std::string_view input);
void readDiscounts(std::string_view input);
void readMessages(std::string_view input);
void readSubtraction(std::string_view input);
void readBalance(std::string_view input);
void readReport(std::string_view input);
void readStoredState(std::string_view input);
void readQueueRecord(std::string_view input);
void readSandboxRequest(std::string_view input);

} // namespace fuzz
