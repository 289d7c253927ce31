# What find_package(phoneme) and pkg-config read.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/phoneme)
install(EXPORT phoneme-targets NAMESPACE qeo:: DESTINATION ${package_dir})
configure_package_config_file(
  ${CMAKE_CURRENT_LIST_DIR}/phoneme-config.cmake.in ${PROJECT_BINARY_DIR}/phoneme-config.cmake
  INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/phoneme-config-version.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/phoneme-config.cmake
              ${PROJECT_BINARY_DIR}/phoneme-config-version.cmake DESTINATION ${package_dir})

# A static library brings its dependencies and its export macro along; a shared one hides them.
if(BUILD_SHARED_LIBS)
  set(pkgconfig_libs "-lphoneme")
  set(pkgconfig_cflags "")
else()
  set(pkgconfig_libs "-lphoneme -lxstr")
  set(pkgconfig_cflags " -DPHONEME_STATIC_DEFINE -DXSTR_STATIC_DEFINE")
endif()
configure_file(${CMAKE_CURRENT_LIST_DIR}/phoneme.pc.in ${PROJECT_BINARY_DIR}/phoneme.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/phoneme.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})
