#include "tests/disk/power/record.h"

#include <fstream>
#include <stdexcept>

namespace {

[[nodiscard]] std::string take(std::istream& stream, std::uint64_t length)
{
    std::string part(length, '\0');
    if (!stream.read(part.data(), static_cast<std::streamsize>(length))) {
        throw std::runtime_error("the record is cut off");
    }
    return part;
}

}

std::vector<Operation> readRecord(const std::string& file)
{
    std::ifstream stream(file, std::ios::binary);
    std::vector<Operation> operations;
    while (stream.peek() != std::ifstream::traits_type::eof()) {
        RecordHead head;
        const std::string bytes = take(stream, sizeof head);
        bytes.copy(reinterpret_cast<char*>(&head), sizeof head);
        Operation operation { head.kind, head.descriptor, head.flags, head.offset, take(stream, head.data), {}, {} };
        operation.path = take(stream, head.path);
        operation.newPath = take(stream, head.newPath);
        operations.push_back(operation);
    }
    return operations;
}
