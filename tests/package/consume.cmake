# SPDX-License-Identifier: Apache-2.0
# Run by CTest: installs the build, then consumes the prefix with CMake and with pkg-config.
function(run)
    execute_process(COMMAND ${ARGN} COMMAND_ECHO STDOUT RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "failed with ${result}: ${ARGN}")
    endif()
endfunction()

set(prefix ${WORK_DIR}/prefix)
set(consumer ${WORK_DIR}/consumer)
file(REMOVE_RECURSE ${WORK_DIR})
run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})

run(${CMAKE_COMMAND} -S ${CONSUMER_DIR} -B ${consumer} -D CMAKE_PREFIX_PATH=${prefix}
    -D CMAKE_C_COMPILER=${C_COMPILER} -D CMAKE_CXX_COMPILER=${CXX_COMPILER})
run(${CMAKE_COMMAND} --build ${consumer})
foreach(program c_shared c_static cxx_shared cxx_static)
    run(${consumer}/${program})
endforeach()

# pkg-config with the prefix moved to where it was installed.
set(ENV{PKG_CONFIG_PATH} ${prefix}/${LIBDIR}/pkgconfig)
execute_process(COMMAND pkg-config --define-variable=prefix=${prefix} --cflags --libs pubsecstack pubsecplatform_posix
    OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
separate_arguments(flags UNIX_COMMAND "${flags}")
run(${C_COMPILER} -std=c99 ${CONSUMER_DIR}/consumer.c -o ${consumer}/with_pkg_config ${flags}
    -Wl,-rpath,${prefix}/${LIBDIR})
run(${consumer}/with_pkg_config)
