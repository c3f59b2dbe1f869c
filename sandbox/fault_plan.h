#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace sandbox {

enum class FaultKind {
    refuse,
    silence,
    delay,
    reset,
    drop,
    status404,
    status503,
    fault,
    prefix,
    truncated,
    notXml,
    giant,
    nested
};

struct FaultForm {
    FaultKind kind;
    std::string_view name;
    std::string_view help; // what it does, and what its argument is
    std::string_view argument; // the default; empty when it takes none
    bool argumentIsNumber = false;
};

/// All kinds, in the order of the help text. [any-thread]
[[nodiscard]] const std::vector<FaultForm>& faultForms();
[[nodiscard]] const FaultForm& formOf(FaultKind kind);

/// A fault on demand.
struct Fault {
    std::int64_t id = 0; // given by the plan
    FaultKind kind = FaultKind::silence;
    std::string operation; // empty for every one
    std::optional<std::int64_t> times; // absent for always; counts down
    std::string argument;

    [[nodiscard]] std::int64_t number() const; // of the argument
};

/// A fault that cannot be understood. The text says what is wrong and what to write.
class FaultMistake : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// KIND[:OPERATION][:TIMES][:ARG]; empty parts, and * as operation, leave things at their default. Throws
/// `FaultMistake`. [any-thread]
[[nodiscard]] Fault parseFault(const std::string& text);

/// The faults that wait for requests, in the order in which they were added. [any-thread]
class FaultPlan {
public:
    std::int64_t add(Fault fault);
    [[nodiscard]] std::vector<Fault> list() const;
    /// Whether there was one.
    bool remove(std::int64_t id);
    void clear();

    /// The first fault for the operation, which has one time less from now on.
    [[nodiscard]] std::optional<Fault> take(const std::string& operation);

    [[nodiscard]] bool refusesConnections() const;

private:
    mutable std::mutex mutex;
    std::vector<Fault> faults;
    std::int64_t lastId = 0;
};

}
