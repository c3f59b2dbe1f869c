#include "host/document/coupon.h"

Coupon::Coupon() = default;
Coupon::~Coupon() = default;
