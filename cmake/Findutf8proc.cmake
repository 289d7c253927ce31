# Finds utf8proc and defines the target utf8proc::utf8proc. UTF8PROC_LIBRARY and UTF8PROC_INCLUDE_DIR
# name other places than those that are searched.
find_library(UTF8PROC_LIBRARY utf8proc)
find_path(UTF8PROC_INCLUDE_DIR utf8proc.h)
mark_as_advanced(UTF8PROC_LIBRARY UTF8PROC_INCLUDE_DIR)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(utf8proc REQUIRED_VARS UTF8PROC_LIBRARY UTF8PROC_INCLUDE_DIR)
if(utf8proc_FOUND AND NOT TARGET utf8proc::utf8proc)
  # Global: what links a static library needs the libraries that it links, in any folder.
  add_library(utf8proc::utf8proc UNKNOWN IMPORTED GLOBAL)
  set_target_properties(
    utf8proc::utf8proc PROPERTIES IMPORTED_LOCATION ${UTF8PROC_LIBRARY}
                                  INTERFACE_INCLUDE_DIRECTORIES ${UTF8PROC_INCLUDE_DIR})
endif()
