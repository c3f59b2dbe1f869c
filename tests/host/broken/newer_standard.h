#pragma once

/// Must be refused as C++17, which has no concepts.
template <typename T>
concept NewerStandard = sizeof(T) > 1;
