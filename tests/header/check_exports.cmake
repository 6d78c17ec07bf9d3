# SPDX-License-Identifier: Apache-2.0
# cmake -DNM=nm -DLIBRARY=libpubsecstack.so -DEXPECTED=exports.txt -P check_exports.cmake
# What the shared library exports is exactly the list.
execute_process(COMMAND ${NM} -D --defined-only ${LIBRARY} OUTPUT_VARIABLE lines RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "${NM} cannot read ${LIBRARY}")
endif()
string(REPLACE "\n" ";" lines "${lines}")
set(found)
foreach(line IN LISTS lines)
    # the version's own name is no function
    if(line MATCHES "^[0-9a-f]+ ([A-Za-z]) ([^@]+)" AND NOT CMAKE_MATCH_1 STREQUAL "A")
        list(APPEND found ${CMAKE_MATCH_2})
    endif()
endforeach()
file(STRINGS ${EXPECTED} expected)
set(unexpected ${found})
list(REMOVE_ITEM unexpected ${expected})
set(missing ${expected})
list(REMOVE_ITEM missing ${found})
if(unexpected OR missing)
    message(FATAL_ERROR "not in the list, but exported: ${unexpected}\nin the list, but not exported: ${missing}")
endif()
