# Every library that the tree uses. Found here and not in the folders, since imported targets are visible only below the
# folder that found them, and the tests link what the folders beside them use.

find_package(Qt6 6.4 REQUIRED COMPONENTS Core Core5Compat Gui Sql Xml)
find_package(CURL REQUIRED)
find_package(SQLite3 REQUIRED)
find_package(spdlog REQUIRED)
find_package(GTest REQUIRED)

# Debian's zint comes without a description for CMake or pkg-config.
find_path(ZINT_INCLUDE_DIR zint.h REQUIRED)
find_library(ZINT_LIBRARY zint REQUIRED)
mark_as_advanced(ZINT_INCLUDE_DIR ZINT_LIBRARY)
