# What find_package(phoneme) and pkg-config read.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/phoneme)
install(EXPORT phoneme-targets NAMESPACE qeo:: DESTINATION ${package_dir})
if(PHONEME_BUILD_NOTATION)
  install(EXPORT notation-targets NAMESPACE qeo:: DESTINATION ${package_dir})
  install(FILES ${CMAKE_CURRENT_LIST_DIR}/Findutf8proc.cmake DESTINATION ${package_dir})
endif()
configure_package_config_file(
  ${CMAKE_CURRENT_LIST_DIR}/phoneme-config.cmake.in ${PROJECT_BINARY_DIR}/phoneme-config.cmake
  INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/phoneme-config-version.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/phoneme-config.cmake
              ${PROJECT_BINARY_DIR}/phoneme-config-version.cmake DESTINATION ${package_dir})

# Relative to the .pc files themselves, so that the prefix can be moved; a folder that is not below
# the prefix is named in full.
set(pkgconfig_dir ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig)
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY ${pkgconfig_dir}
           OUTPUT_VARIABLE pkgconfig_prefix)
set(pkgconfig_libdir "\${prefix}")
cmake_path(APPEND pkgconfig_libdir ${CMAKE_INSTALL_LIBDIR})
set(pkgconfig_includedir "\${prefix}")
cmake_path(APPEND pkgconfig_includedir ${CMAKE_INSTALL_INCLUDEDIR})

# A static library brings its dependencies and its export macro along; a shared one hides them.
if(BUILD_SHARED_LIBS)
  set(phoneme_libs "-lphoneme")
  set(notation_requires_private "libutf8proc")
  set(lexicon_requires_private "notation = ${PROJECT_VERSION}")
else()
  set(phoneme_libs "-lphoneme -lxstr")
  set(phoneme_cflags "-DPHONEME_STATIC_DEFINE -DXSTR_STATIC_DEFINE")
  set(notation_requires ", libutf8proc")
  set(notation_cflags "-DNOTATION_STATIC_DEFINE")
  set(lexicon_requires "notation = ${PROJECT_VERSION}")
  set(lexicon_cflags "-DLEXICON_STATIC_DEFINE")
endif()
set(installed_packages phoneme)
if(PHONEME_BUILD_NOTATION)
  list(APPEND installed_packages notation lexicon)
endif()
foreach(package IN LISTS installed_packages)
  configure_file(${CMAKE_CURRENT_LIST_DIR}/${package}.pc.in ${PROJECT_BINARY_DIR}/${package}.pc
                 @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${package}.pc
          DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endforeach()
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})
