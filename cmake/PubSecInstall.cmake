# SPDX-License-Identifier: Apache-2.0
# What "cmake --install" puts in place: headers, libraries, and the means to find them with CMake and pkg-config.
include(CMakePackageConfigHelpers)

set_target_properties(pubsecstack_static PROPERTIES EXPORT_NAME pubsecstack_static)
install(TARGETS pubsecstack pubsecstack_static pubsecplatform_posix pubsec_cjson EXPORT PubSecStackTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY include/pubsecstack DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES platform/include/pubsecplatform.h platform/posix/include/pubsecplatform_posix.h
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/PubSecStack)
configure_package_config_file(cmake/PubSecStackConfig.cmake.in PubSecStackConfig.cmake
    INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(PubSecStackConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/PubSecStackConfig.cmake ${PROJECT_BINARY_DIR}/PubSecStackConfigVersion.cmake
    DESTINATION ${package_dir})
install(EXPORT PubSecStackTargets NAMESPACE PubSecStack:: DESTINATION ${package_dir})

foreach(module pubsecstack pubsecplatform_posix)
    configure_file(cmake/${module}.pc.in ${module}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/${module}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endforeach()
