#include "host/document/goods_item.h"

GoodsItem::GoodsItem() = default;
GoodsItem::~GoodsItem() = default;
