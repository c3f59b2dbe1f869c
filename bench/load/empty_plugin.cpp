#include "bench/load/empty_plugin.h"
