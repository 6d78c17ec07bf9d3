# SPDX-License-Identifier: Apache-2.0
# Compiles the library for armhf on another machine, to see its size. libcurl and cJSON are taken from that machine by
# their headers alone (PUBSEC_SIZE_HEADERS); what would be linked are empty libraries (PUBSEC_SIZE_LIBRARIES).
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(CMAKE_C_COMPILER arm-linux-gnueabihf-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES PUBSEC_SIZE_HEADERS PUBSEC_SIZE_LIBRARIES)
set(CMAKE_DISABLE_FIND_PACKAGE_PkgConfig ON)
set(CURL_NO_CURL_CMAKE ON)
set(CURL_INCLUDE_DIR ${PUBSEC_SIZE_HEADERS})
set(CURL_LIBRARY ${PUBSEC_SIZE_LIBRARIES}/libcurl.so)
set(CJSON_INCLUDE ${PUBSEC_SIZE_HEADERS})
set(CJSON_LIBRARY ${PUBSEC_SIZE_LIBRARIES}/libcjson.so)
