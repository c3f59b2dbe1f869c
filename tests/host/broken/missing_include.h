#pragma once

/// Must be refused: what it needs is not included.
struct MissingInclude {
    std::string text;
};
