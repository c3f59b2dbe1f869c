#pragma once

/// Flags by which a loyalty system tells the host what it does; each value is one bit. The meanings are the host's:
/// plug-ins hand over the numbers that they were told to switch on.
enum class LoyaltySystemOption : int {};
