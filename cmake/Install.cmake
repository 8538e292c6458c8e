# Headers, library, package config and pkg-config file.

include(CMakePackageConfigHelpers)

file(GLOB public_headers ${PROJECT_SOURCE_DIR}/include/*.h)
install(FILES ${public_headers} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/libimage)
install(TARGETS image EXPORT libimageTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
if(TARGET lximage)
  install(TARGETS lximage RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/libimage)
install(EXPORT libimageTargets NAMESPACE libimage:: DESTINATION ${package_dir})
configure_package_config_file(cmake/libimageConfig.cmake.in
    ${PROJECT_BINARY_DIR}/libimageConfig.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/libimageConfigVersion.cmake
    COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/libimageConfig.cmake
              ${PROJECT_BINARY_DIR}/libimageConfigVersion.cmake
        DESTINATION ${package_dir})

# Relative, so that an installed tree can be moved.
file(RELATIVE_PATH libimage_prefix_from_pc /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/libimage.pc.in ${PROJECT_BINARY_DIR}/libimage.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/libimage.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
