#pragma once

#include <chrono>
#include <string>

/// How a raw connection ended.
enum class Ending { refused, closed, reset, silent };

struct RawReply {
    Ending ending = Ending::refused;
    std::string bytes;
    std::chrono::milliseconds took {};
};

/// A whole HTTP request with the envelope, by which the server is asked to close afterwards.
[[nodiscard]] std::string rawRequest(const std::string& operation, const std::string& body);

/// Connects to the address, sends the bytes and reads until the connection ends or the time is over.
[[nodiscard]] RawReply exchangeRaw(const std::string& url, const std::string& bytes,
                                   std::chrono::milliseconds patience);
