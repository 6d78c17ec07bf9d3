# SPDX-License-Identifier: Apache-2.0
execute_process(COMMAND ${PROGRAM} OUTPUT_FILE ${OUTPUT} COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${OUTPUT} ${PAGE} RESULT_VARIABLE different)
if(different)
    message(FATAL_ERROR "${PAGE} is stale: build the target \"pages\"")
endif()
