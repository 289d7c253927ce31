# What the project's libraries have in common: C++17, hidden symbols, version, and the export that
# installs them.
function(phoneme_library_settings target macro_prefix export)
  target_compile_features(${target} PUBLIC cxx_std_17)
  target_link_libraries(${target} PRIVATE $<BUILD_INTERFACE:phoneme_warnings>)
  set_target_properties(
    ${target}
    PROPERTIES CXX_EXTENSIONS OFF
               CXX_VISIBILITY_PRESET hidden
               VISIBILITY_INLINES_HIDDEN ON
               POSITION_INDEPENDENT_CODE ON
               VERSION ${PROJECT_VERSION}
               SOVERSION ${PROJECT_VERSION_MAJOR}
               INSTALL_RPATH "$ORIGIN")  # libphoneme finds libxstr beside it
  if(NOT BUILD_SHARED_LIBS)
    target_compile_definitions(${target} PUBLIC ${macro_prefix}_STATIC_DEFINE)
  elseif(UNIX AND NOT APPLE)
    set(exports ${PROJECT_SOURCE_DIR}/cmake/exports.map)
    target_link_options(${target} PRIVATE LINKER:--version-script=${exports})
    set_target_properties(${target} PROPERTIES LINK_DEPENDS ${exports})
  endif()
  phoneme_show_branches(${target})
  install(
    TARGETS ${target}
    EXPORT ${export}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
endfunction()

# Lets the fuzzing engine, where there is one, see which branches a target takes.
function(phoneme_show_branches target)
  if(PHONEME_LIBFUZZER)
    target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
  endif()
endfunction()
