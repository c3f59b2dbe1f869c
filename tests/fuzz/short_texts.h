#pragma once

#include <functional>
#include <string>
#include <vector>

namespace fuzz {

using Pieces = std::vector<std::string>;

/// Calls with every sequence of up to so many of the pieces, the empty one among them. What `begin` holds stands before
/// each.
inline void eachText(const Pieces& pieces, int most, const std::function<void(const std::string&)>& call,
                     const std::string& begin = {})
{
    call(begin);
    if (most > 0) {
        for (const std::string& piece : pieces) {
            eachText(pieces, most - 1, call, begin + piece);
        }
    }
}

} // namespace fuzz
