#pragma once

/// The place that a new coupon attaches to. A plain value.
struct Position {
    static constexpr int present = 1;

    int state = 0; // `present` when there is a position; any other value means that there is none
    int number = 0; // what `GoodsItem::getPosnum` gives for it
};
