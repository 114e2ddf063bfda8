# SPDX-License-Identifier: GPL-3.0-or-later
# Build settings every target of the project shares, through the interface target quill_common.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE RelWithDebInfo)
endif()

option(QUILL_WERROR "Treat compiler warnings as errors" OFF)

add_library(quill_common INTERFACE)
target_compile_definitions(quill_common INTERFACE
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_USE_QSTRINGBUILDER
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    QT_NO_URL_CAST_FROM_STRING
    QT_NO_FOREACH)
target_compile_options(quill_common INTERFACE -Wall -Wextra -Wpedantic)
if(QUILL_WERROR)
    target_compile_options(quill_common INTERFACE -Werror)
endif()

# quill_add_test(NAME SOURCES... LIBS... [GUI]): one QtTest executable registered with CTest.
# Every test runs headless; QUILL_TEST_DATA points at the shared test files beside the checkout.
function(quill_add_test name)
    cmake_parse_arguments(T "GUI" "TIMEOUT" "SOURCES;LIBS" ${ARGN})
    add_executable(${name} ${T_SOURCES})
    target_link_libraries(${name} PRIVATE quill_common Qt6::Test ${T_LIBS})
    add_test(NAME ${name} COMMAND ${name})
    if(NOT T_TIMEOUT)
        set(T_TIMEOUT 120)
    endif()
    set_tests_properties(${name} PROPERTIES TIMEOUT ${T_TIMEOUT}
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;QUILL_TEST_DATA=${PROJECT_SOURCE_DIR}/../shared/testdata;QUILL_BUILD_DIR=${PROJECT_BINARY_DIR}")
endfunction()

# quill_add_bench(NAME SOURCES... LIBS...): one Google Benchmark executable.
function(quill_add_bench name)
    cmake_parse_arguments(B "" "" "SOURCES;LIBS" ${ARGN})
    add_executable(${name} ${B_SOURCES})
    target_link_libraries(${name} PRIVATE quill_common benchmark::benchmark ${B_LIBS})
    set_property(GLOBAL APPEND PROPERTY QUILL_BENCHES ${name})
endfunction()
