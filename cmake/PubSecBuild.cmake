# SPDX-License-Identifier: Apache-2.0
# How every target of the tree is compiled, and where what it makes is put.

set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

find_program(PUBSEC_CCACHE ccache)
mark_as_advanced(PUBSEC_CCACHE)
if(PUBSEC_CCACHE)
    set(CMAKE_C_COMPILER_LAUNCHER ${PUBSEC_CCACHE})
    set(CMAKE_CXX_COMPILER_LAUNCHER ${PUBSEC_CCACHE})
endif()

function(pubsec_sanitize target)
    if(PUBSEC_SANITIZE)
        target_compile_options(${target} PRIVATE -fsanitize=${PUBSEC_SANITIZE} -fno-omit-frame-pointer
            -fno-sanitize-recover=all -g
            # gcc sees uninitialised reads that are none where it instruments, in its own <regex> for one.
            $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
        target_link_options(${target} PUBLIC -fsanitize=${PUBSEC_SANITIZE})
    endif()
endfunction()

# Inlined code has no branches of its own, so nothing is optimised.
function(pubsec_count_runs target)
    if(PUBSEC_COVERAGE)
        target_compile_options(${target} PRIVATE --coverage -fprofile-update=atomic -O0)
        target_link_options(${target} PUBLIC --coverage)
    endif()
endfunction()

# Warnings and language levels for any target of the tree.
function(pubsec_options target)
    target_compile_features(${target} PRIVATE cxx_std_17)
    set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF C_STANDARD 99 C_EXTENSIONS OFF)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
        $<$<BOOL:${PUBSEC_WERROR}>:-Werror>)
    pubsec_sanitize(${target})
endfunction()

# The library adds: no exceptions, no type information, nothing visible that the headers do not export.
function(pubsec_library_options target)
    pubsec_options(${target})
    set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON
        CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
    target_compile_options(${target} PRIVATE -fno-exceptions -fno-rtti -fno-threadsafe-statics
        -ffunction-sections -fdata-sections)
endfunction()
