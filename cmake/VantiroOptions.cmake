# What a build can be told, and the settings that hold for every target of the tree.

set(VANTIRO_SERVICE_NAMESPACE "http://tempuri.org/" CACHE STRING
    "Target namespace of the loyalty service; ends in a slash")
set(VANTIRO_SANITIZE "" CACHE STRING "Sanitizers to build with: address,undefined or thread")
option(VANTIRO_COVERAGE "Count the lines and branches that run" OFF)
option(VANTIRO_FUZZ "Build the fuzzers; needs Clang" OFF)
option(VANTIRO_BENCH "Build the benchmarks; needs Google Benchmark" ON)
option(VANTIRO_PRECOMPILE "Precompile the headers that most files include, and compile test files several at a time" OFF)
option(VANTIRO_OPTIMIZE_TESTS "Compile the tests as the product is; without, under sanitizers, in half the time" ON)
option(VANTIRO_WERROR "Treat warnings as errors" ON)

# The name of the service follows the namespace directly: without the slash every request would carry a wrong action.
if(NOT VANTIRO_SERVICE_NAMESPACE MATCHES "/$")
    message(FATAL_ERROR
        "VANTIRO_SERVICE_NAMESPACE must end in a slash, but is \"${VANTIRO_SERVICE_NAMESPACE}\"")
endif()
if(VANTIRO_FUZZ AND NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    message(FATAL_ERROR "VANTIRO_FUZZ needs Clang, but the compiler is ${CMAKE_CXX_COMPILER_ID}")
endif()

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "Build type" FORCE)
endif()

# These are for the whole tree and not for single targets, so that no static part of a shared library can miss them:
# one object with default visibility would export its symbols from the plug-in.
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

find_program(VANTIRO_CCACHE ccache)
mark_as_advanced(VANTIRO_CCACHE)
if(VANTIRO_CCACHE AND NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${VANTIRO_CCACHE})
endif()
