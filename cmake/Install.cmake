# Headers keep their folders below include/wq; CMake and pkg-config both find the library.

include(CMakePackageConfigHelpers)

set(WQ_PRIVATE_HEADERS platform/Faces.h dom/Binding.h common/core/css/AttributeText.h common/core/css/NameTables.h)  # for the files of their own folder
foreach(header IN LISTS WQ_HEADERS)
  file(RELATIVE_PATH relative ${CMAKE_CURRENT_SOURCE_DIR} ${header})
  if(relative IN_LIST WQ_PRIVATE_HEADERS)
    continue()
  endif()
  get_filename_component(folder ${relative} DIRECTORY)
  install(FILES ${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/wq/${folder})
endforeach()

install(FILES docs/notices.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES wq/wq.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/wq)
install(FILES common/core/css/Properties.def DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/wq/common/core/css)
install(FILES ${WQ_GENERATED}/common/core/css/ScannerBase.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/wq/common/core/css)

install(DIRECTORY resources/ DESTINATION ${CMAKE_INSTALL_DATADIR}/wq)
install(TARGETS wq EXPORT wqTargets)
install(EXPORT wqTargets NAMESPACE wq:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/wq)

configure_package_config_file(cmake/wqConfig.cmake.in ${CMAKE_CURRENT_BINARY_DIR}/wqConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/wq)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/wqConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/wqConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/wqConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/wq)

# The installed tree can be moved, and a static library brings what it needs.
file(RELATIVE_PATH WQ_PREFIX_FROM_PC /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
set(WQ_PC_REQUIRES libxml-2.0)
if(NOT BUILD_SHARED_LIBS)  # pkg-config looks for private ones, too, and a shared library needs none of their headers
  list(APPEND WQ_PC_REQUIRES icu-uc libcurl liburiparser fontconfig fmt)
endif()
if(NOT WQ_HARD_ASSERTIONS)
  set(WQ_PC_DEFINITIONS " -DWQ_NO_HARD_ASSERTIONS")  # headers of the engine look at it
endif()
list(JOIN WQ_PC_REQUIRES " " WQ_PC_REQUIRES)
configure_file(cmake/wq.pc.in ${CMAKE_CURRENT_BINARY_DIR}/wq.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/wq.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
